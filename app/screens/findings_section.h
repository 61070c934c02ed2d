#pragma once

#include <optional>

#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/findings_list.h"
#include "app/screens/selection_bar.h"
#include "app/screens/selection_card.h"
#include "app/theme/segmented_control.h"

class QMenu;

namespace gruk {

/// "Worth a look": the findings in the order and of the kind that the user picks.
class FindingsSection : public QWidget {
    Q_OBJECT

public:
    FindingsSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);
    ~FindingsSection() override;

    /// Tells what part of this widget is in view.
    void showWithin(int top, int bottom);
    /// How much of the view's end the selection's card takes from `control`: 0 for one that is not
    /// in the list.
    [[nodiscard]] int coveredBelow(const QWidget* control) const;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QWidget* makeControls();
    [[nodiscard]] QMenu* makeFilterMenu();
    [[nodiscard]] QWidget* makeNothing();
    void setFilter(std::optional<ReviewFinding::Reason> reason);
    void layOut();
    void tellListWhatIsInView();
    void placeCard();
    void connectSelection();
    void toggle(std::size_t index, Qt::KeyboardModifiers modifiers);
    void selectShown();
    void selectAllOfKind();
    void clearSelection();
    void pruneSelection();
    void showSelection();
    [[nodiscard]] SelectionState selectionState() const;
    void askToTrashSelected();
    void showModel();
    void showNothing();
    QCoro::Task<> present();
    void setFindings(FindingsList::Findings findings);
    QCoro::Task<> lookForGoneItems();

    AppModel& model_;
    Theme& theme_;
    SegmentedControl* sort_;
    Button* filter_;
    IconLabel* nothingSymbol_;
    Label* nothingText_;
    QWidget* nothing_;
    Label* cutOff_;
    SelectionBar* bar_;
    FindingsList* list_;
    SelectionCard* card_;
    /// Where the card lies when the end of the list is in view.
    QWidget* roomForCard_;
    FindingsSelection selection_;
    /// The row that was ticked last, from which a Shift extends; by the finding's id.
    std::string anchor_;
    FindingsSort findingsSort_ = FindingsSort::size;
    std::optional<ReviewFinding::Reason> reasonFilter_;
    /// Tells a presentation that a later one was asked for.
    int generation_ = 0;
    bool isLooking_ = false;
    bool looksAgain_ = false;
    int viewTop_ = 0;
    int viewBottom_ = 0;
};

}  // namespace gruk
