#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include <QWidget>

#include "app/screens/finding_row.h"
#include "app/screens/findings_geometry.h"
#include "core/patrol/findings_selection.h"

class QVariantAnimation;

namespace gruk {

/// The findings, of which there may be a hundred thousand: as tall as all of them, but only those
/// in view have a row of their own. Its owner says what is in view.
class FindingsList : public QWidget {
    Q_OBJECT

public:
    using Findings = std::shared_ptr<const std::vector<ReviewFinding>>;
    /// A widget cannot be taller than some 16 million pixels, so that a longer list ends here.
    static constexpr std::size_t mostRows = 150'000;

    explicit FindingsList(Theme& theme, QWidget* parent = nullptr);

    /// Shows these, never null, in their order; open ones stay open. The focus stays with its
    /// finding, or goes to the one that took its place; with none left it is lost. Returns the
    /// former ones, for the caller to let go of.
    [[nodiscard]] Findings setFindings(Findings findings);
    /// Takes the findings away, for an end in which nobody is to be told.
    [[nodiscard]] Findings takeFindings();
    [[nodiscard]] const Findings& findings() const { return findings_; }
    /// Those that have a place in the list: all but what is beyond `mostRows`.
    [[nodiscard]] std::span<const ReviewFinding> shown() const;

    /// What is ticked, by id; never null, and read again at each `showSelection`.
    void setSelection(const FindingsSelection* selection);
    void showSelection();
    void setReviewOnly(bool reviewOnly);

    /// After which control the Tab key comes to the first row; it must be one that takes the focus.
    void setControlBefore(QWidget* control) { controlBefore_ = control; }
    [[nodiscard]] bool holdsFocus() const { return isAncestorOf(window()->focusWidget()); }

    /// Makes the rows between two heights of this widget, and drops the others.
    void showWithin(int top, int bottom);

    /// Where the findings with a row are.
    [[nodiscard]] std::vector<FileURL> shownURLs() const;
    /// Marks the rows of those of `asked` that are in `gone`, and unmarks those of the others.
    void showGone(const std::vector<FileURL>& asked, const std::vector<FileURL>& gone);

    /// How many rows there are as widgets.
    [[nodiscard]] std::size_t rowCount() const { return rows_.size(); }

Q_SIGNALS:
    /// Findings were set, or others than before have rows.
    void shownChanged();
    /// Of the row at `index`.
    void selectionToggled(std::size_t index, Qt::KeyboardModifiers modifiers);
    void revealRequested(std::size_t index);
    void trashRequested(std::size_t index);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    using Rows = std::map<std::size_t, FindingRow*>;

    /// Which control has the focus: that one in the row of that finding, the row at that place.
    struct FocusPlace {
        std::string id;
        std::size_t index = 0;
        std::size_t control = 0;
    };

    [[nodiscard]] std::optional<FocusPlace> focusPlace() const;
    void restoreFocus(const FocusPlace& place);
    /// Moves the rows of `former`, made for `findings`, whose finding is still the same.
    void reuseRows(Rows& former, const std::vector<ReviewFinding>& findings);
    /// Says whether other findings than before have rows.
    bool makeRowsWithin(int top, int bottom);
    void dropRow(FindingRow& row);
    void dropRows();
    FindingRow* makeRow(std::size_t index);
    [[nodiscard]] std::size_t indexOf(const FindingRow* row) const;
    void setOpen(std::size_t index, bool isOpen);
    void setExtra(std::size_t index, int extra);
    void stopMoving();
    void measureOpenRows();
    void placeRows();

    Theme& theme_;
    Findings findings_;
    FindingsGeometry geometry_;
    Rows rows_;
    /// Ids of the findings whose panel is open.
    std::unordered_set<std::string> open_;
    /// The panels that are growing or shrinking, by row.
    std::map<std::size_t, QVariantAnimation*> moving_;
    const FindingsSelection* selection_ = nullptr;
    QWidget* controlBefore_ = nullptr;
    bool reviewOnly_ = true;
    int viewTop_ = 0;
    int viewBottom_ = 0;
};

}  // namespace gruk
