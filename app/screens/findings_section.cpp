#include "app/screens/findings_section.h"

#include <algorithm>
#include <utility>

#include <QActionGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QPointer>
#include <QVBoxLayout>

#include "app/screens/patrol_text.h"
#include "app/screens/repaint_once.h"
#include "app/screens/review_only_panel.h"
#include "app/screens/section_title.h"
#include "app/screens/trash_questions.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

const QStringList& sortLabels()
{
    static const QStringList labels = {QStringLiteral("Size"), QStringLiteral("Name"),
                                       QStringLiteral("Reason")};
    return labels;
}

QString filterLabel(std::optional<ReviewFinding::Reason> reason)
{
    return reason ? PatrolText::reasonLabel(*reason) : QStringLiteral("All kinds");
}

}  // namespace

FindingsSection::FindingsSection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme),
      sort_(new SegmentedControl(theme, sortLabels(), QStringLiteral("Sort findings by"))),
      filter_(new Button(theme, Button::Kind::secondary, filterLabel({}))), nothing_(makeNothing()),
      cutOff_(sectionNote(theme, {})), bar_(new SelectionBar(theme)), list_(new FindingsList(theme))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addWidget(sectionTitle(theme, QStringLiteral("Worth a look")));
    column->addWidget(sectionNote(theme, QStringLiteral("Suggestions, not verdicts. Gruk shows its "
                                                        "evidence and waits for you.")));
    column->addWidget(makeControls());
    column->addWidget(bar_);
    column->addWidget(nothing_);
    column->addWidget(list_);
    column->addWidget(cutOff_);

    connect(sort_, &SegmentedControl::currentChanged, this, [this](int index) {
        findingsSort_ = static_cast<FindingsSort>(index);
        present();
    });
    connect(list_, &FindingsList::shownChanged, this, [this] { lookForGoneItems(); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::findingsChanged);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    connect(&model_, &AppModel::reviewOnlyModeChanged, this, [this] {
        list_->setReviewOnly(model_.reviewOnlyMode());
        showSelection();
    });
    list_->setReviewOnly(model_.reviewOnlyMode());
    connectSelection();
    showModel();
}

void FindingsSection::connectSelection()
{
    list_->setSelection(&selection_);
    connect(list_, &FindingsList::selectionToggled, this, &FindingsSection::toggle);
    connect(list_, &FindingsList::revealRequested, this,
            [this](std::size_t index) { model_.reveal({(*list_->findings())[index].url}); });
    connect(list_, &FindingsList::trashRequested, this, [this](std::size_t index) {
        TrashQuestions::askToTrash(model_, theme_, (*list_->findings())[index], *this);
    });
    connect(bar_, &SelectionBar::selectAllRequested, this, [this] {
        selection_.selectAll(*list_->findings());
        showSelection();
    });
    connect(bar_, &SelectionBar::selectAllOfKindRequested, this, &FindingsSection::selectAllOfKind);
    connect(bar_, &SelectionBar::clearRequested, this, [this] {
        selection_.clear();
        showSelection();
    });
    connect(bar_, &SelectionBar::trashRequested, this, &FindingsSection::askToTrashSelected);
    connect(bar_, &SelectionBar::unlockRequested, this,
            [this] { askToEnableTrashActions(model_, theme_, this); });
}

void FindingsSection::toggle(std::size_t index, Qt::KeyboardModifiers modifiers)
{
    const std::vector<ReviewFinding>& shown = *list_->findings();
    const ReviewFinding& finding = shown[index];
    const auto anchor = std::ranges::find(shown, anchor_, &ReviewFinding::id);
    if (modifiers.testFlag(Qt::ShiftModifier) && anchor != shown.end()) {
        const auto from = static_cast<std::size_t>(anchor - shown.begin());
        for (std::size_t at = std::min(from, index); at <= std::max(from, index); ++at) {
            selection_.ids.insert(shown[at].id);
        }
    } else {
        selection_.toggle(finding.id);
        anchor_ = finding.id;
    }
    showSelection();
}

void FindingsSection::selectAllOfKind()
{
    if (reasonFilter_) {
        selection_.selectAll(model_.findings(), *reasonFilter_);
        showSelection();
    }
}

void FindingsSection::pruneSelection()
{
    if (selection_.ids.empty()) {
        return;
    }
    FindingsSelection left;
    for (const ReviewFinding& finding : selection_.selected(model_.findings())) {
        left.ids.insert(finding.id);
    }
    selection_ = std::move(left);
}

void FindingsSection::showSelection()
{
    const std::size_t shown = selection_.selected(*list_->findings()).size();
    SelectionBar::State state;
    state.reviewOnly = model_.reviewOnlyMode();
    state.hasRows = !list_->findings()->empty();
    state.hasFilter = reasonFilter_.has_value();
    state.selected = selection_.ids.size();
    state.notShown = state.selected - std::min(shown, state.selected);
    state.bytes = selection_.selectedBytes(model_.findings());
    bar_->setState(state);
    list_->showSelection();
}

void FindingsSection::askToTrashSelected()
{
    const QPointer<FindingsSection> self = this;
    TrashQuestions::askToTrash(model_, theme_, selection_.selected(model_.findings()), *this,
                               [self] {
                                   if (self) {
                                       self->selection_.clear();
                                       self->showSelection();
                                   }
                               });
}

FindingsSection::~FindingsSection()
{
    model_.discard(list_->takeFindings());
}

QWidget* FindingsSection::makeControls()
{
    filter_->setSymbol(Icon::filter);
    filter_->setObjectName(QStringLiteral("findingsFilter"));
    filter_->setAccessibleDescription(QStringLiteral("Show findings of one kind"));
    QMenu* menu = makeFilterMenu();
    connect(filter_, &QPushButton::clicked, this, [this, menu] {
        menu->setPalette(theme_.windowPalette());
        menu->popup(filter_->mapToGlobal(QPoint(0, filter_->height())));
    });

    auto* controls = new QWidget;
    auto* row = new QHBoxLayout(controls);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(sort_);
    row->addWidget(filter_);
    row->addStretch();
    return controls;
}

QMenu* FindingsSection::makeFilterMenu()
{
    auto* menu = new QMenu(this);
    auto* group = new QActionGroup(menu);
    const auto add = [&](std::optional<ReviewFinding::Reason> reason) {
        QAction* action = menu->addAction(filterLabel(reason));
        action->setCheckable(true);
        action->setChecked(!reason);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, reason] { setFilter(reason); });
    };
    add(std::nullopt);
    for (const ReviewFinding::Reason reason : ReviewFinding::allReasons) {
        add(reason);
    }
    return menu;
}

QWidget* FindingsSection::makeNothing()
{
    auto* nothing = new QWidget;
    auto* row = new QHBoxLayout(nothing);
    row->setContentsMargins(0, Measure::small, 0, Measure::small);
    row->setSpacing(Measure::small);
    auto* sentence = new Label(theme_, TextStyle::body);
    sentence->setText(QStringLiteral("Nothing meets the current review rules."));
    row->addWidget(new IconLabel(theme_, Icon::sparkles, Measure::largeIconSize));
    row->addWidget(sentence, 1);
    return nothing;
}

void FindingsSection::setFilter(std::optional<ReviewFinding::Reason> reason)
{
    reasonFilter_ = reason;
    filter_->setText(filterLabel(reason));
    filter_->updateGeometry();
    present();
}

void FindingsSection::showModel()
{
    setVisible(model_.latestSnapshot() != nullptr);
    pruneSelection();
    present();
}

QCoro::Task<> FindingsSection::present()
{
    const int generation = ++generation_;
    const QPointer<FindingsSection> self = this;
    AppModel& model = model_;
    const Lifetime::Watch modelLives = model.watch();
    FindingsList::Findings presented =
        co_await model_.presentFindings(findingsSort_, reasonFilter_);
    if (!self || generation_ != generation) {
        if (modelLives) {
            model.discard(std::move(presented));
        }
        co_return;
    }
    const std::size_t count = presented->size();
    nothing_->setVisible(count == 0);
    cutOff_->setVisible(count > FindingsList::mostRows);
    cutOff_->setText(
        QStringLiteral("The first %1 of %2 are shown.")
            .arg(groupedNumber(FindingsList::mostRows), groupedNumber(static_cast<qint64>(count))));
    model_.discard(list_->setFindings(std::move(presented)));
    tellListWhatIsInView();
    showSelection();
}

void FindingsSection::showWithin(int top, int bottom)
{
    viewTop_ = top;
    viewBottom_ = bottom;
    tellListWhatIsInView();
}

void FindingsSection::tellListWhatIsInView()
{
    list_->showWithin(viewTop_ - list_->y(), viewBottom_ - list_->y());
}

QCoro::Task<> FindingsSection::lookForGoneItems()
{
    // One look at a time: a disk that does not answer holds up this look and nothing else.
    looksAgain_ = true;
    if (isLooking_) {
        co_return;
    }
    isLooking_ = true;
    const QPointer<FindingsSection> self = this;
    while (looksAgain_) {
        looksAgain_ = false;
        std::vector<FileURL> urls = list_->shownURLs();
        const std::vector<FileURL> gone = co_await model_.missingItems(std::move(urls));
        if (!self) {
            co_return;
        }
        list_->showGone(gone);
    }
    isLooking_ = false;
}

}  // namespace gruk
