#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/foundation/checked_arithmetic.h"

#include "core/patrol/patrol_coordinator.h"
#include "platform/foundation/file_url.h"

/// The sentences of the model: what happened, what did not, and what goes to the system's log.
/// UTF-8; names that are not are written for the eye.
namespace gruk::ModelCopy {

/// What the open panel of a grant says.
inline constexpr std::string_view openPanelMessage =
    "Choose a disk or folder for Gruk to patrol. You stay in control of every Trash action.";
inline constexpr std::string_view grantAccessPrompt = "Grant Access";
inline constexpr std::string_view grantDesktopPrompt = "Grant the Desktop";

/// Of a file called `name` that was dropped on a window.
[[nodiscard]] std::string notAFolder(std::string_view name);

inline constexpr std::string_view noAccessToPatrol =
    "Gruk no longer has access to this location. Grant access again to patrol it.";
inline constexpr std::string_view patrolStopped = "Patrol stopped. No partial snapshot was saved.";

/// Of the realm called `name`: whether there was a snapshot before, and how many paths changed.
[[nodiscard]] std::string firstPatrolComplete(std::string_view name);
[[nodiscard]] std::string patrolComplete(std::string_view name, std::size_t changes);
[[nodiscard]] std::string patrolFailed(std::string_view description);

/// The description of a patrol that the damaged memory in `folder` ended.
[[nodiscard]] std::string damagedMemory(std::string_view folder);
inline constexpr std::string_view memoryIsSound =
    "The file of past patrols can be read again. Nothing was changed.";
inline constexpr std::string_view memoryNotForgotten =
    "That place is one of your realms. Nothing was forgotten.";
[[nodiscard]] std::string memorySetAside(std::string_view name);
[[nodiscard]] std::string memoryNotSetAside(std::string_view description);
[[nodiscard]] std::string forgotten(std::string_view name);
[[nodiscard]] std::string couldNotForget(std::string_view description);

// Realms.
[[nodiscard]] std::string grantFailed(std::string_view description);
/// Of one that holds until the program ends.
[[nodiscard]] std::string grantNotSaved(std::string_view name, std::string_view description);
[[nodiscard]] std::string realmRenamed(std::string_view from, std::string_view to);
[[nodiscard]] std::string realmNotRenamed(std::string_view description);
[[nodiscard]] std::string renamingUnfinished(std::string_view to, std::string_view description);

/// Of an item in `folder`.
[[nodiscard]] std::string noFileManager(std::string_view folder);

/// After a patrol of all realms, of which some had no access.
[[nodiscard]] std::string patrolledRealms(std::size_t patrolled, std::size_t skipped);
/// After a patrol of the realm called `name` that nobody asked for.
[[nodiscard]] std::string automaticPatrolFinished(std::string_view name, std::int64_t findings);

// The Trash.
inline constexpr std::string_view reviewOnlyIsOn =
    "Review Only is on. Gruk cannot move anything to Trash.";
inline constexpr std::string_view trashActionsAreEnabled =
    "Trash actions are enabled. Every item still requires a separate confirmation.";
inline constexpr std::string_view stoppedByReviewOnly =
    "Review Only stopped that Trash action. Nothing was changed.";
inline constexpr std::string_view outsideActiveRealm =
    "Gruk stopped because that item is outside the active realm. Nothing was changed.";
inline constexpr std::string_view changedSinceReview =
    "Gruk stopped because that item changed after you reviewed it. Patrol again before deciding. "
    "Nothing was changed.";
inline constexpr std::string_view couldNotTrash =
    "Gruk could not move that item to Trash. Nothing was changed.";
inline constexpr std::string_view someCouldNotMove =
    "One or more selected items could not be moved. Nothing else was changed.";
inline constexpr std::string_view someCouldNotBeRestored =
    "Some items could not be restored because their original path is occupied or the Trash item is "
    "gone.";
/// Of another item, which took the place of the one called `name` in the moment of its move and
/// lies at `place` now, that one or the next of several.
[[nodiscard]] std::string strayed(std::string_view name, std::string_view place);
inline constexpr std::string_view nothingElseWasChanged = "Nothing else was changed.";
[[nodiscard]] std::string movedToTrash(std::string_view name);
[[nodiscard]] std::string movedCountToTrash(std::size_t count);
[[nodiscard]] std::string movedBatchToTrash(std::size_t moved, std::size_t total, Bytes bytes,
                                            std::size_t notMoved);
[[nodiscard]] std::string restoredFromTrash(std::size_t count);

// The Desktop and loose files.
inline constexpr std::string_view noAccessToDesktop =
    "Gruk no longer has access to the Desktop. Grant access again to tidy it.";
inline constexpr std::string_view nothingToTidy =
    "There was nothing to tidy — your Desktop is already clear.";
inline constexpr std::string_view couldNotTidy =
    "Gruk could not tidy the Desktop. Nothing was changed.";
inline constexpr std::string_view noAccessToOrganise =
    "Gruk no longer has access to this realm. Grant access again to organise it.";
inline constexpr std::string_view couldNotOrganise =
    "Gruk could not organise this realm. Nothing was changed.";
inline constexpr std::string_view everythingIsBack = "Put everything back.";
inline constexpr std::string_view someCouldNotBePutBack =
    "Some items could not be put back because their original path is occupied again.";
[[nodiscard]] std::string desktopIsClear(std::size_t moved);
[[nodiscard]] std::string desktopIsPartlyClear(std::size_t moved);
[[nodiscard]] std::string realmIsTidied(std::size_t files, std::size_t folders);
[[nodiscard]] std::string realmIsPartlyTidied(std::size_t files, std::size_t folders);
[[nodiscard]] std::string itemsNotMoved(std::size_t count);
[[nodiscard]] std::string itemsPutBack(std::size_t count);

// Shields.
inline constexpr std::string_view shieldNotSaved =
    "Gruk could not save that shield. Nothing was changed.";
inline constexpr std::string_view shieldNotReset =
    "Gruk could not reset that shield. Nothing was changed.";

// For the log.
/// `verb` is "register" or "unregister".
[[nodiscard]] std::string launchAtLoginFailedLog(std::string_view verb, std::string_view error);
/// Of one item, with the path and the system's words in `message`.
[[nodiscard]] std::string notMovedLog(std::string_view message);
[[nodiscard]] std::string settingNotSavedLog(std::string_view error);
[[nodiscard]] std::string grantFailedLog(std::string_view path, std::string_view error);
[[nodiscard]] std::string regrantFailedLog(std::string_view path, std::string_view error);

}  // namespace gruk::ModelCopy
