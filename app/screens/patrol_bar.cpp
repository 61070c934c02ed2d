#include "app/screens/patrol_bar.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/screens/patrol_text.h"
#include "app/screens/repaint_once.h"
#include "app/theme/accessible.h"
#include "app/theme/card.h"
#include "app/theme/text.h"
#include "app/theme/work_mark.h"

namespace gruk {

PatrolBar::PatrolBar(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), start_(new Button(theme, Button::Kind::primary, QString())),
      running_(new Card(theme)), elsewhere_(new Card(theme)),
      elsewhereLine_(new Label(theme, TextStyle::bodyStrong)),
      elsewhereNote_(new Label(theme, TextStyle::detail))
{
    start_->setSymbol(Icon::hiking);
    start_->setObjectName(QStringLiteral("startPatrol"));
    for (QWidget* card : {running_, elsewhere_}) {
        setAccessibleRole(*card, QAccessible::Notification);
    }
    buildRunning(theme);

    elsewhereLine_->setWordWrap(true);
    elsewhereNote_->setWordWrap(true);
    elsewhereNote_->setColour(Role::ink, Strength::quiet);
    stopElsewhere_ = new Button(theme, Button::Kind::secondary, QStringLiteral("Stop patrol"));
    stopElsewhere_->setSymbol(Icon::stop);
    stopElsewhere_->setObjectName(QStringLiteral("stopOtherPatrol"));
    auto* elsewhereWords = new QVBoxLayout;
    elsewhereWords->setSpacing(Measure::hair);
    elsewhereWords->addWidget(elsewhereLine_);
    elsewhereWords->addWidget(elsewhereNote_);
    auto* elsewhereRow = new QHBoxLayout(elsewhere_);
    elsewhereRow->setContentsMargins(0, 0, 0, 0);
    elsewhereRow->setSpacing(Measure::medium);
    elsewhereRow->addLayout(elsewhereWords, 1);
    elsewhereRow->addWidget(stopElsewhere_, 0, Qt::AlignVCenter);
    connect(stopElsewhere_, &QPushButton::clicked, this, [this] { model_.cancelPatrol(); });

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(start_, 0, Qt::AlignLeft);
    column->addWidget(running_);
    column->addWidget(elsewhere_);

    connect(start_, &QPushButton::clicked, this, [this] { model_.patrolActiveRealm(); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::isPatrollingChanged);
    repaint->on(model_, &AppModel::patrollingRootURLChanged);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    repaint->on(model_, &AppModel::isLoadingRealmHistoryChanged);
    repaint->on(model_, &AppModel::territorySummariesChanged);
    auto* reported = new RepaintOnce([this] { showProgress(); }, this);
    reported->on(model_, &AppModel::patrolProgressChanged);
    showModel();
}

void PatrolBar::buildRunning(Theme& theme)
{
    auto* title = new Label(theme, TextStyle::bodyStrong);
    title->setText(QStringLiteral("Patrolling…"));
    running_->setAccessibleName(title->text());
    progress_ = new ElidedLabel(theme, TextStyle::detail, Qt::ElideMiddle);
    progress_->setColour(Role::ink, Strength::quiet);
    stop_ = new Button(theme, Button::Kind::secondary, QStringLiteral("Stop patrol"));
    stop_->setSymbol(Icon::stop);
    stop_->setObjectName(QStringLiteral("stopPatrol"));

    auto* words = new QVBoxLayout;
    words->setSpacing(Measure::hair);
    words->addWidget(title);
    words->addWidget(progress_);
    auto* row = new QHBoxLayout(running_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(new WorkMark(theme));
    row->addLayout(words, 1);
    row->addWidget(stop_);

    connect(stop_, &QPushButton::clicked, this, [this] { model_.cancelPatrol(); });
}

bool PatrolBar::isPatrollingHere() const
{
    return model_.isPatrolling() && model_.patrollingRootURL() == model_.activeRootURL();
}

void PatrolBar::showModel()
{
    start_->setText(model_.isActiveRealmMapped() ? QStringLiteral("Patrol again")
                                                 : QStringLiteral("Map this realm"));
    handFocusOver();
    start_->setVisible(!model_.isPatrolling());
    running_->setVisible(isPatrollingHere());
    elsewhere_->setVisible(model_.isPatrolling() && !isPatrollingHere());
    showProgress();
}

void PatrolBar::handFocusOver()
{
    // Before what had it goes: the toolkit would pass it on to a neighbour, where a second press
    // does something else.
    const QWidget* focused = window()->focusWidget();
    if (isPatrollingHere() && focused == start_) {
        running_->show();
        stop_->setFocus(Qt::OtherFocusReason);
    } else if (!model_.isPatrolling() && (focused == stop_ || focused == stopElsewhere_)) {
        start_->show();
        start_->setFocus(Qt::OtherFocusReason);
    }
}

void PatrolBar::showProgress()
{
    if (isPatrollingHere()) {
        progress_->setFullText(PatrolText::progress(model_.patrolProgress()));
    } else if (model_.patrollingRootURL()) {
        const std::string_view name = model_.patrollingRootURL()->lastPathComponent();
        elsewhereLine_->setText(PatrolText::otherRealm(name, model_.patrolProgress()));
        elsewhereNote_->setText(PatrolText::otherRealmNote(name));
        elsewhere_->setAccessibleName(elsewhereLine_->text());
        stopElsewhere_->setAccessibleDescription(displayName(name));
    }
}

}  // namespace gruk
