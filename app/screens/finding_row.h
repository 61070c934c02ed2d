#pragma once

#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/row.h"
#include "core/patrol/review_finding.h"

namespace gruk {

/// One finding: what it is, how large, why it is here, and on request the evidence.
class FindingRow : public Row {
    Q_OBJECT

public:
    FindingRow(Theme& theme, const ReviewFinding& finding, bool isOpen, QWidget* parent);

    /// The height of every row that is closed.
    [[nodiscard]] static int closedHeight(const Theme& theme);
    /// How much more an open row of that width takes.
    [[nodiscard]] static int openExtra(const Theme& theme, const ReviewFinding& finding, int width);

    /// Says that nothing is at the finding's path any more.
    void showGone();

    [[nodiscard]] QWidget* disclosure() const { return disclosure_; }

Q_SIGNALS:
    void openChanged(bool isOpen);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void build(const ReviewFinding& finding);
    void buildPanel(const ReviewFinding& finding);
    void showPanel();
    [[nodiscard]] QRect panelRect() const;

    ElidedLabel* path_;
    DisclosureButton* disclosure_;
    QWidget* head_;
    QWidget* panel_;
};

}  // namespace gruk
