#pragma once

#include <optional>

#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/findings_list.h"
#include "app/screens/selection_bar.h"
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

private:
    [[nodiscard]] QWidget* makeControls();
    [[nodiscard]] QMenu* makeFilterMenu();
    [[nodiscard]] QWidget* makeNothing();
    void setFilter(std::optional<ReviewFinding::Reason> reason);
    void tellListWhatIsInView();
    void connectSelection();
    void toggle(std::size_t index, Qt::KeyboardModifiers modifiers);
    void selectAllOfKind();
    void pruneSelection();
    void showSelection();
    void askToTrashSelected();
    void showModel();
    QCoro::Task<> present();
    QCoro::Task<> lookForGoneItems();

    AppModel& model_;
    Theme& theme_;
    SegmentedControl* sort_;
    Button* filter_;
    QWidget* nothing_;
    Label* cutOff_;
    SelectionBar* bar_;
    FindingsList* list_;
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
