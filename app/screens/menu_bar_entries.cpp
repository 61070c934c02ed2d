#include "app/screens/menu_bar_entries.h"

#include "app/screens/patrol_text.h"
#include "app/screens/repaint_once.h"
#include "app/theme/text.h"
#include "core/patrol/patrol_copy.h"

namespace gruk {

namespace {

QString progressLine(const MenuBarState& state)
{
    if (!state.patrollingRootURL || state.patrollingRootURL == state.activeRootURL) {
        return PatrolText::progress(state.progress);
    }
    return PatrolText::otherRealm(state.patrollingRootURL->lastPathComponent(), state.progress);
}

}  // namespace

MenuBarState MenuBarState::of(const AppModel& model)
{
    MenuBarState state;
    state.activeRootURL = model.activeRootURL();
    if (const AppModel::Snapshot& latest = model.latestSnapshot()) {
        state.hasLatestSnapshot = true;
        state.issueCount = static_cast<std::int64_t>(latest->issues.size());
        state.isComplete = latest->isComplete;
    } else {
        state.isLoadingHistory = model.isActiveRealmMapped();
    }
    state.hasPreviousSnapshot = model.previousSnapshot() != nullptr;
    state.changes = model.deltas().size();
    state.grants = model.grants().size();
    state.isPatrolling = model.isPatrolling();
    state.patrollingRootURL = model.patrollingRootURL();
    state.progress = model.patrolProgress();
    return state;
}

void requestOnMenuBarChange(RepaintOnce& repaint, const AppModel& model)
{
    for (const auto changed :
         {&AppModel::activeRootURLChanged, &AppModel::latestSnapshotChanged,
          &AppModel::previousSnapshotChanged, &AppModel::deltasChanged, &AppModel::grantsChanged,
          &AppModel::isPatrollingChanged, &AppModel::patrollingRootURLChanged,
          &AppModel::patrolProgressChanged, &AppModel::isLoadingRealmHistoryChanged,
          &AppModel::territorySummariesChanged}) {
        repaint.on(model, changed);
    }
}

QString menuBarStatus(const MenuBarState& state)
{
    if (!state.activeRootURL) {
        return QStringLiteral("Choose a realm in the app");
    }
    if (!state.hasLatestSnapshot) {
        return state.isLoadingHistory ? PatrolText::loadingHistory()
                                      : QStringLiteral("Ready for a first patrol");
    }
    if (const auto note = PatrolCopy::coverageNote(state.issueCount, state.isComplete)) {
        return displayString(*note);
    }
    if (!state.hasPreviousSnapshot) {
        return QStringLiteral("Baseline mapped");
    }
    if (state.changes == 0) {
        return QStringLiteral("No change on the last patrol");
    }
    return QStringLiteral("%1 changes last patrol")
        .arg(groupedNumber(static_cast<qint64>(state.changes)));
}

std::vector<MenuBarEntry> menuBarEntries(const MenuBarState& state)
{
    std::vector<MenuBarEntry> entries = {{MenuBarItem::status, menuBarStatus(state), false}};
    if (state.grants >= 2) {
        entries.push_back({MenuBarItem::patrolAllRealms, QStringLiteral("Patrol all realms"),
                           !state.isPatrolling});
    }
    if (state.activeRootURL) {
        entries.push_back(
            {MenuBarItem::patrolNow,
             state.isPatrolling ? QStringLiteral("Patrolling…") : QStringLiteral("Patrol now"),
             !state.isPatrolling});
    }
    if (state.isPatrolling) {
        entries.push_back({MenuBarItem::progress, progressLine(state), false});
        entries.push_back({MenuBarItem::stopPatrol, QStringLiteral("Stop patrol"), true});
    }
    entries.push_back({MenuBarItem::tidyDesktop, QStringLiteral("Tidy my Desktop"), true});
    entries.push_back({MenuBarItem::settings, QStringLiteral("Settings…"), true});
    entries.push_back({MenuBarItem::openGruk, QStringLiteral("Open Gruk"), true});
    entries.push_back({MenuBarItem::divider});
    entries.push_back({MenuBarItem::quit, QStringLiteral("Quit Gruk"), true});
    return entries;
}

}  // namespace gruk
