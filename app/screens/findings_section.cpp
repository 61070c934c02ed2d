#include "app/screens/findings_section.h"

#include <algorithm>
#include <utility>

#include <QActionGroup>
#include <QEvent>
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
#include "core/patrol/outermost_findings.h"

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
      filter_(new Button(theme, Button::Kind::secondary, filterLabel({}))),
      nothingSymbol_(new IconLabel(theme, Icon::sparkles, Measure::largeIconSize)),
      nothingText_(new Label(theme, TextStyle::body)), nothing_(makeNothing()),
      cutOff_(sectionNote(theme, {})), bar_(new SelectionBar(theme)),
      list_(new FindingsList(theme)), card_(new SelectionCard(theme)), roomForCard_(new QWidget)
{
    layOut();
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

void FindingsSection::layOut()
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addWidget(sectionTitle(theme_, QStringLiteral("Worth a look")));
    column->addWidget(sectionNote(theme_, QStringLiteral("Suggestions, not verdicts. Gruk shows "
                                                         "its evidence and waits for you.")));
    column->addWidget(makeControls());
    column->addWidget(bar_);
    column->addWidget(nothing_);
    column->addWidget(list_);
    column->addWidget(cutOff_);
    column->addWidget(roomForCard_);
    // Between the moment at which a row goes and the one at which the page gives this less room,
    // what is left over lies at the end, and nothing here moves.
    column->addStretch(1);
    card_->setParent(this);
    list_->setControlBefore(card_->lastControl());
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
    connect(bar_, &SelectionBar::selectAllRequested, this, &FindingsSection::selectShown);
    connect(bar_, &SelectionBar::selectAllOfKindRequested, this, &FindingsSection::selectAllOfKind);
    connect(bar_, &SelectionBar::clearRequested, this, &FindingsSection::clearSelection);
    connect(card_, &SelectionCard::trashRequested, this, &FindingsSection::askToTrashSelected);
    connect(card_, &SelectionCard::unlockRequested, this,
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

void FindingsSection::selectShown()
{
    for (const ReviewFinding& finding : list_->shown()) {
        selection_.ids.insert(finding.id);
    }
    showSelection();
}

void FindingsSection::clearSelection()
{
    selection_.clear();
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
    for (const ReviewFinding& finding : model_.findings()) {
        if (selection_.ids.contains(finding.id)) {
            left.ids.insert(finding.id);
        }
    }
    selection_ = std::move(left);
}

SelectionState FindingsSection::selectionState() const
{
    const auto shown = std::ranges::count_if(list_->shown(), [this](const ReviewFinding& finding) {
        return selection_.ids.contains(finding.id);
    });
    SelectionState state;
    state.reviewOnly = model_.reviewOnlyMode();
    state.hasRows = !list_->findings()->empty();
    state.hasFilter = reasonFilter_.has_value();
    state.selected = selection_.ids.size();
    state.notShown = state.selected - static_cast<std::size_t>(shown);
    state.bytes =
        OutermostFindings::among(selection_, model_.findings()).selectedBytes(model_.findings());
    return state;
}

void FindingsSection::showSelection()
{
    // The rows are those of before until the pool has answered: what they offer may be gone.
    pruneSelection();
    const QWidget* focused = window()->focusWidget();
    const bool hadFocus = bar_->isAncestorOf(focused) || card_->isAncestorOf(focused);
    const SelectionState state = selectionState();
    bar_->setState(state);
    card_->setState(state);
    roomForCard_->setFixedHeight(card_->sizeHint().height());
    roomForCard_->setVisible(state.selected > 0);
    placeCard();
    if (hadFocus && !focused->isVisibleTo(this)) {
        QWidget* const next = state.selected > 0 ? card_->action() : bar_->selectAllButton();
        (next->isVisibleTo(this) ? next : filter_)->setFocus(Qt::OtherFocusReason);
    }
    list_->showSelection();
}

void FindingsSection::placeCard()
{
    const int height = card_->sizeHint().height();
    const int lowest = std::max(this->height() - height, list_->y());
    const int place = std::clamp(viewBottom_ - height, list_->y(), lowest);
    card_->setGeometry(0, place, width(), height);
    card_->raise();
}

int FindingsSection::coveredBelow(const QWidget* control) const
{
    const bool isUnderIt = card_->isVisible() && list_->isAncestorOf(control);
    return isUnderIt ? viewBottom_ - card_->y() : 0;
}

void FindingsSection::askToTrashSelected()
{
    const QPointer<FindingsSection> self = this;
    TrashQuestions::askToTrash(model_, theme_, selection_.selected(model_.findings()), *this,
                               [self] {
                                   if (self) {
                                       self->clearSelection();
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
    row->addWidget(nothingSymbol_);
    row->addWidget(nothingText_, 1);
    nothing->hide();
    return nothing;
}

void FindingsSection::showNothing()
{
    const bool hasNone = model_.findings().empty();
    nothing_->setVisible(list_->findings()->empty());
    nothingSymbol_->setVisible(hasNone);
    nothingText_->setText(hasNone ? QStringLiteral("Nothing meets the current review rules.")
                                  : QStringLiteral("None of this kind."));
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
    showSelection();
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
    setFindings(std::move(presented));
}

void FindingsSection::setFindings(FindingsList::Findings findings)
{
    const std::size_t count = findings->size();
    cutOff_->setVisible(count > FindingsList::mostRows);
    cutOff_->setText(
        QStringLiteral("The first %1 of %2 are shown.")
            .arg(groupedNumber(FindingsList::mostRows), groupedNumber(static_cast<qint64>(count))));
    const bool losesFocus = count == 0 && list_->holdsFocus();
    model_.discard(list_->setFindings(std::move(findings)));
    if (losesFocus) {
        filter_->setFocus(Qt::OtherFocusReason);
    }
    showNothing();
    tellListWhatIsInView();
    showSelection();
}

bool FindingsSection::event(QEvent* event)
{
    // Whoever comes back to the window may have deleted something meanwhile, or put it back.
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::Show) {
        lookForGoneItems();
    }
    return QWidget::event(event);
}

void FindingsSection::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeCard();
}

void FindingsSection::showWithin(int top, int bottom)
{
    viewTop_ = top;
    viewBottom_ = bottom;
    tellListWhatIsInView();
    placeCard();
}

void FindingsSection::tellListWhatIsInView()
{
    list_->showWithin(viewTop_ - list_->y(), viewBottom_ - list_->y());
}

QCoro::Task<> FindingsSection::lookForGoneItems()
{
    // One look at a time: a disk that does not answer holds up this look and nothing else.
    looksAgain_ = true;
    if (isLooking_ || list_->rowCount() == 0) {
        co_return;
    }
    isLooking_ = true;
    const QPointer<FindingsSection> self = this;
    while (looksAgain_) {
        looksAgain_ = false;
        const std::vector<FileURL> urls = list_->shownURLs();
        const std::vector<FileURL> gone = co_await model_.missingItems(urls);
        if (!self) {
            co_return;
        }
        list_->showGone(urls, gone);
    }
    isLooking_ = false;
}

}  // namespace gruk
