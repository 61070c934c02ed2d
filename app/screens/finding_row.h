#pragma once

#include <vector>

#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/row.h"
#include "core/patrol/review_finding.h"

namespace gruk {

class GrukTactileGroupPress;
class SelectionBox;

/// One finding: what it is, how large, why it is here, on request the evidence, and what can be
/// done about it. A click anywhere on it, where its controls are not, presses it and ticks its box.
class FindingRow : public Row {
    Q_OBJECT

public:
    FindingRow(Theme& theme, const ReviewFinding& finding, bool isOpen, QWidget* parent);

    /// In Review Only there is no box, and nothing can be moved.
    void setReviewOnly(bool reviewOnly);
    void setSelected(bool isSelected);

    /// The height of every row that is closed.
    [[nodiscard]] static int closedHeight(const Theme& theme);
    /// How much more an open row of that width takes.
    [[nodiscard]] static int openExtra(const Theme& theme, const ReviewFinding& finding, int width);

    /// Says that nothing is at the finding's path any more, or that there is something again.
    void setGone(bool isGone);

    [[nodiscard]] DisclosureButton* disclosure() const { return disclosure_; }
    /// What can have the focus, from the left; as many in every row.
    [[nodiscard]] std::vector<QWidget*> controls() const;
    /// Gives the focus to one of them, or to the disclosure where that one cannot take it now.
    void focusControl(std::size_t control);

Q_SIGNALS:
    void openChanged(bool isOpen);
    /// The user ticked or unticked the box; with Shift, all from the row before to this one.
    void selectionToggled(Qt::KeyboardModifiers modifiers);
    void revealRequested();
    void trashRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void build(const ReviewFinding& finding);
    [[nodiscard]] QLayout* makeActions();
    void describeControls();
    void buildPanel(const ReviewFinding& finding);
    void showPanel();
    [[nodiscard]] QRect panelRect() const;

    SelectionBox* box_;
    QString pathText_;
    ElidedLabel* path_;
    DisclosureButton* disclosure_;
    Button* reveal_ = nullptr;
    Button* trash_ = nullptr;
    QWidget* head_;
    GrukTactileGroupPress* press_;
    QWidget* panel_;
};

}  // namespace gruk
