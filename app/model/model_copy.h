#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/patrol/patrol_coordinator.h"
#include "platform/foundation/file_url.h"

/// The sentences of the model: what happened, what did not, and what goes to the system's log.
/// UTF-8; names that are not are written for the eye.
namespace gruk::ModelCopy {

/// What the open panel of a grant says.
inline constexpr std::string_view openPanelMessage =
    "Choose a disk or folder for Gruk to patrol. You stay in control of every Trash action.";
inline constexpr std::string_view grantAccessPrompt = "Grant Access";

inline constexpr std::string_view noAccessToPatrol =
    "Gruk no longer has access to this location. Grant access again to patrol it.";
inline constexpr std::string_view patrolStopped = "Patrol stopped. No partial snapshot was saved.";

/// Of the realm called `name`: whether there was a snapshot before, and how many paths changed.
[[nodiscard]] std::string firstPatrolComplete(std::string_view name);
[[nodiscard]] std::string patrolComplete(std::string_view name, std::size_t changes);
[[nodiscard]] std::string patrolFailed(std::string_view description);

[[nodiscard]] std::string grantFailedLog(std::string_view path, std::string_view error);
[[nodiscard]] std::string regrantFailedLog(std::string_view path, std::string_view error);

}  // namespace gruk::ModelCopy
