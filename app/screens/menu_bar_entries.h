#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <QString>

#include "app/model/app_model.h"

namespace gruk {

class RepaintOnce;

/// Everything that the tray item's panel and menu can hold, in its order. Each stands there at most
/// once, so that it also names its place while others come and go.
enum class MenuBarItem : std::uint8_t {
    status,
    patrolAllRealms,
    patrolNow,
    progress,
    stopPatrol,
    tidyDesktop,
    settings,
    openGruk,
    divider,
    quit,
};

/// One line of the panel or menu. A plain value.
struct MenuBarEntry {
    MenuBarItem item = MenuBarItem::divider;
    /// Empty for the divider.
    QString text = {};
    /// False also for a line that only tells something.
    bool isEnabled = false;

    friend bool operator==(const MenuBarEntry&, const MenuBarEntry&) = default;
};

/// What of the model the tray item shows. A plain value.
struct MenuBarState {
    std::optional<FileURL> activeRootURL = {};
    bool hasLatestSnapshot = false;
    /// Whether there is one, which is still to be read.
    bool isLoadingHistory = false;
    /// Of the latest snapshot.
    std::int64_t issueCount = 0;
    bool isComplete = true;
    bool hasPreviousSnapshot = false;
    std::size_t changes = 0;
    std::size_t grants = 0;
    bool isPatrolling = false;
    std::optional<FileURL> patrollingRootURL = {};
    std::optional<PatrolProgress> progress = {};

    [[nodiscard]] static MenuBarState of(const AppModel& model);
};

/// Asks for a repaint at every change of what `MenuBarState::of(model)` gives.
void requestOnMenuBarChange(RepaintOnce& repaint, const AppModel& model);

/// The one line on how things stand.
[[nodiscard]] QString menuBarStatus(const MenuBarState& state);

/// What there is to choose and to read now, in order; the status line is the first. Pure.
[[nodiscard]] std::vector<MenuBarEntry> menuBarEntries(const MenuBarState& state);

}  // namespace gruk
