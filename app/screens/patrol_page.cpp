#include "app/screens/patrol_page.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QHBoxLayout>
#include <QMoveEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include "app/screens/automations_section.h"
#include "app/screens/changes_section.h"
#include "app/screens/findings_section.h"
#include "app/screens/first_run_panel.h"
#include "app/screens/heavy_section.h"
#include "app/screens/messages_section.h"
#include "app/screens/metrics_row.h"
#include "app/screens/organise_entry.h"
#include "app/screens/patrol_bar.h"
#include "app/screens/patrol_text.h"
#include "app/screens/repaint_once.h"
#include "app/screens/review_only_panel.h"
#include "app/screens/section_title.h"
#include "app/screens/shield_button.h"
#include "app/theme/paper_backdrop.h"
#include "app/theme/text.h"

namespace gruk {

GrukPatrolView::GrukPatrolView(AppModel& model, Theme& theme, QWidget* parent)
    : QScrollArea(parent), model_(model), theme_(theme), column_(new QWidget),
      findings_(new FindingsSection(model, theme)),
      messages_(new MessagesSection(model, theme, MessagesSection::Place::realmPage)),
      lookForMessages_(new RepaintOnce([this] { tellWhetherMessagesAreInView(); }, this))
{
    setObjectName(QStringLiteral("patrolPage"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Its place is kept, so that nothing jumps when there comes to be something to scroll.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    // The focus goes to what is on the page; the page itself scrolls by keys all the same.
    setFocusPolicy(Qt::NoFocus);

    column_->setMaximumWidth(Measure::columnWidth);
    auto* rows = new QVBoxLayout(column_);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(Measure::rowGap);
    fill(*rows);
    rows->addStretch(1);

    auto* paper = new PaperBackdrop(theme);
    auto* centred = new QHBoxLayout(paper);
    centred->setContentsMargins(Measure::pageMargin, Measure::pageMargin, Measure::pageMargin,
                                Measure::pageMargin);
    centred->addStretch(1);
    centred->addWidget(column_, 1000);
    centred->addStretch(1);
    setWidget(paper);

    connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
            &GrukPatrolView::tellWhatIsInView);
    findings_->installEventFilter(this);
    messages_->installEventFilter(this);
    connect(messages_, &MessagesSection::shown, lookForMessages_, &RepaintOnce::request);
}

void GrukPatrolView::fill(QVBoxLayout& column)
{
    column.addWidget(makeHeader());
    column.addWidget(new PatrolBar(model_, theme_));
    column.addWidget(new OrganiseEntry(model_, theme_));
    column.addWidget(new AutomationsSection(model_, theme_));
    column.addWidget(messages_);
    column.addWidget(new FirstRunPanel(model_, theme_));
    column.addWidget(new MetricsRow(model_, theme_));
    column.addWidget(new BaselineNote(model_, theme_));
    column.addWidget(new ReviewOnlyPanel(model_, theme_));
    column.addWidget(new ChangesSection(model_, theme_));
    column.addWidget(findings_);
    column.addWidget(new HeavySection(model_, theme_));
    column.addWidget(sectionNote(
        theme_, QStringLiteral("Review Only is on until you say otherwise. Nothing is ever deleted "
                               "— the most the Gruk can do is move things to the system Trash, one "
                               "confirmation at a time.")));
}

QWidget* GrukPatrolView::makeHeader()
{
    auto* header = new QWidget;
    auto* eyebrow = new Label(theme_, TextStyle::eyebrow);
    eyebrow->setText(QStringLiteral("THE REALM OF"));
    eyebrow->setColour(Role::ink, Strength::quiet);
    auto* name = new ElidedLabel(theme_, TextStyle::pageTitle, Qt::ElideMiddle);
    name->setObjectName(QStringLiteral("realmName"));
    name->setFullText(model_.activeRootURL()
                          ? displayName(model_.activeRootURL()->lastPathComponent())
                          : QStringLiteral("Selected location"));
    auto* date = new Label(theme_, TextStyle::detail);
    date->setObjectName(QStringLiteral("lastPatrolled"));
    date->setColour(Role::ink, Strength::quiet);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(eyebrow);
    words->addWidget(name);
    words->addWidget(date);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::large);
    row->addWidget(new ShieldButton(model_, theme_), 0, Qt::AlignVCenter);
    row->addLayout(words, 1);

    const auto showDate = [this, date] {
        const ScanSnapshot* latest = model_.latestSnapshot().get();
        const bool isToCome = latest == nullptr && model_.isActiveRealmMapped();
        date->setText(isToCome ? PatrolText::loadingHistory() : PatrolText::lastPatrolled(latest));
    };
    auto* repaint = new RepaintOnce(showDate, this);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    repaint->on(model_, &AppModel::isLoadingRealmHistoryChanged);
    repaint->on(model_, &AppModel::territorySummariesChanged);
    showDate();
    return header;
}

void GrukPatrolView::moveEvent(QMoveEvent* event)
{
    QScrollArea::moveEvent(event);
    if (isVisible()) {
        movedBy_ += event->pos().y() - event->oldPos().y();
    }
}

void GrukPatrolView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    // What comes and goes over the page takes its room and moves nothing that is being read; but at
    // its top the page keeps its head in view.
    if (const int by = std::exchange(movedBy_, 0); verticalScrollBar()->value() > 0) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + by);
    }
    tellWhatIsInView();
}

bool GrukPatrolView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == findings_ && event->type() == QEvent::Move) {
        const auto* move = static_cast<QMoveEvent*>(event);
        followFindings(move->pos().y() - move->oldPos().y());
    }
    if (watched == findings_
        && (event->type() == QEvent::Move || event->type() == QEvent::Resize
            || event->type() == QEvent::LayoutRequest)) {
        tellWhatIsInView();
    }
    if (watched == messages_
        && (event->type() == QEvent::Move || event->type() == QEvent::Resize)) {
        lookForMessages_->request();
    }
    return QScrollArea::eventFilter(watched, event);
}

bool GrukPatrolView::focusNextPrevChild(bool next)
{
    const QWidget* leaving = window()->focusWidget();
    if (leaving != nullptr && (!leaving->isVisible() || !leaving->isEnabled())) {
        // What had the focus is gone. Nobody asked to go anywhere, so the page stays where it is.
        return QWidget::focusNextPrevChild(next);
    }
    if (!QScrollArea::focusNextPrevChild(next)) {
        return false;
    }
    if (const QWidget* reached = window()->focusWidget()) {
        uncover(*reached);
    }
    return true;
}

void GrukPatrolView::bringIntoView(QWidget& control)
{
    ensureWidgetVisible(&control);
    uncover(control);
}

QWidget* GrukPatrolView::mapButton() const
{
    auto* start = findChild<QWidget*>(QStringLiteral("startPatrol"));
    const bool isOffered = start != nullptr && start->isEnabled() && start->isVisibleTo(this);
    return isOffered && !model_.isActiveRealmMapped() ? start : nullptr;
}

void GrukPatrolView::followFindings(int by)
{
    // Who reads the findings is not moved by a message that comes or goes above them, out of view.
    const int topBefore = findings_->mapTo(viewport(), QPoint(0, 0)).y() - by;
    if (by == 0 || topBefore >= 0) {
        return;
    }
    // The page has its new height, and hears of it only when everything on it has its place.
    QScrollBar* bar = verticalScrollBar();
    bar->setMaximum(std::max(widget()->height() - viewport()->height(), 0));
    bar->setValue(bar->value() + by);
}

void GrukPatrolView::uncover(const QWidget& control)
{
    if (const int covered = findings_->coveredBelow(&control)) {
        const int bottom = control.mapTo(viewport(), QPoint(0, control.height())).y();
        const int hidden = bottom + Measure::small - (viewport()->height() - covered);
        verticalScrollBar()->setValue(verticalScrollBar()->value() + std::max(hidden, 0));
    }
}

void GrukPatrolView::tellWhatIsInView()
{
    const int top = findings_->mapFrom(viewport(), QPoint(0, 0)).y();
    findings_->showWithin(top, top + viewport()->height());
    lookForMessages_->request();
}

void GrukPatrolView::tellWhetherMessagesAreInView()
{
    const QRect told = messages_->whatHappened();
    const int top = messages_->mapTo(viewport(), told.topLeft()).y();
    const bool areInView =
        told.isNull() || (top >= 0 && top + told.height() <= viewport()->height());
    if (areInView != hasMessagesInView_) {
        hasMessagesInView_ = areInView;
        Q_EMIT messagesCameIntoView(areInView);
    }
}

}  // namespace gruk
