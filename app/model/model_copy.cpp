#include "app/model/model_copy.h"

#include "core/patrol/byte_format.h"
#include "core/patrol/count_format.h"
#include "platform/foundation/utf8.h"

namespace gruk::ModelCopy {

std::string notAFolder(std::string_view name)
{
    return "“" + displayText(name) + "” is a file. Only a folder can be a realm.";
}

std::string firstPatrolComplete(std::string_view name)
{
    return "First patrol of " + displayText(name) + " complete.";
}

std::string patrolComplete(std::string_view name, std::size_t changes)
{
    const std::string complete = "Patrol of " + displayText(name) + " complete. ";
    return changes == 0
               ? complete + "No size changes since the last map."
               : complete + "Gruk found " + CountFormat::string(changes) + " changed items.";
}

std::string patrolFailed(std::string_view description)
{
    return "The patrol could not finish: " + displayText(description);
}

std::string damagedMemory(std::string_view folder)
{
    return "The file of past patrols, snapshots.json in " + displayText(folder)
           + ", is damaged. It was left as it is; set it aside, and the next patrol begins a new "
             "one.";
}

std::string memorySetAside(std::string_view name)
{
    return "The damaged file is called " + displayText(name)
           + " now. The next patrol begins a new one.";
}

std::string memoryNotSetAside(std::string_view description)
{
    return "Gruk could not set the damaged file aside: " + displayText(description)
           + ". Nothing was changed.";
}

std::string forgotten(std::string_view name)
{
    return "Gruk forgot the patrols of " + displayText(name) + ".";
}

std::string couldNotForget(std::string_view description)
{
    return "Gruk could not forget that: " + displayText(description) + ". Nothing was changed.";
}

std::string grantFailed(std::string_view description)
{
    return "Gruk could not make a realm of that: " + displayText(description)
           + ". Nothing was changed.";
}

std::string grantNotSaved(std::string_view name, std::string_view description)
{
    return displayText(name)
           + " is a realm only until Gruk ends, since the list of realms could not be saved: "
           + displayText(description) + ".";
}

std::string realmRenamed(std::string_view from, std::string_view to)
{
    return displayText(from) + " is now called " + displayText(to)
           + ". All that is known about it came along.";
}

std::string realmNotRenamed(std::string_view description)
{
    return "Gruk could not carry that realm over to its new name: " + displayText(description)
           + ". Nothing was changed.";
}

std::string renamingUnfinished(std::string_view to, std::string_view description)
{
    return "Gruk could not finish carrying a realm over to " + displayText(to) + ": "
           + displayText(description) + ". It tries again at its next start.";
}

std::string noFileManager(std::string_view folder)
{
    return "There is no file manager that could show it. It lies in " + displayText(folder) + ".";
}

std::string patrolledRealms(std::size_t patrolled, std::size_t skipped)
{
    std::string text = "Patrolled " + CountFormat::string(patrolled) + " realm(s).";
    if (skipped > 0) {
        text += " " + CountFormat::string(skipped)
                + " disconnected realm(s) skipped — regrant them from the sidebar.";
    }
    return text;
}

std::string automaticPatrolFinished(std::string_view name, std::int64_t findings)
{
    return "Automatic patrol of " + displayText(name) + " finished — "
           + (findings == 0 ? "nothing needs you."
                            : CountFormat::string(findings) + " findings waiting.");
}

std::string strayed(std::string_view name, std::string_view place)
{
    return "Another item took the place of " + displayText(name)
           + " in the moment of the move, and could not go back. It is now at " + displayText(place)
           + ".";
}

std::string movedToTrash(std::string_view name)
{
    return "Moved " + displayText(name) + " to Trash.";
}

std::string movedCountToTrash(std::size_t count)
{
    return "Moved " + CountFormat::string(count) + " item to Trash.";
}

std::string movedBatchToTrash(std::size_t moved, std::size_t total, Bytes bytes,
                              std::size_t notMoved)
{
    std::string text = "Moved " + CountFormat::string(moved) + " of " + CountFormat::string(total)
                       + " to the Trash — " + ByteFormat::string(bytes) + " taken back.";
    if (notMoved > 0) {
        text += " " + CountFormat::string(notMoved) + " couldn't move; nothing was forced.";
    }
    return text;
}

std::string restoredFromTrash(std::size_t count)
{
    return "Restored " + CountFormat::string(count) + " item from Trash.";
}

std::string desktopIsClear(std::size_t moved)
{
    return "Done. " + CountFormat::string(moved) + " items stashed. Your Desktop is yours again.";
}

std::string desktopIsPartlyClear(std::size_t moved)
{
    return "Stashed " + CountFormat::string(moved) + " items. Your Desktop is yours again.";
}

std::string realmIsTidied(std::size_t files, std::size_t folders)
{
    return "Done. " + CountFormat::string(files) + " files filed into "
           + CountFormat::string(folders)
           + " folders. Your realm, tidied — you did nothing, which was the plan.";
}

std::string realmIsPartlyTidied(std::size_t files, std::size_t folders)
{
    return "Filed " + CountFormat::string(files) + " files into " + CountFormat::string(folders)
           + " folders.";
}

std::string itemsNotMoved(std::size_t count)
{
    return CountFormat::string(count) + " item(s) could not be moved. Nothing else was changed.";
}

std::string itemsPutBack(std::size_t count)
{
    return "Put " + CountFormat::string(count) + " items back.";
}

std::string launchAtLoginFailedLog(std::string_view verb, std::string_view error)
{
    return "Gruk: failed to " + std::string(verb) + " launch-at-login: " + displayText(error);
}

std::string notMovedLog(std::string_view message)
{
    return "Gruk: not moved: " + displayText(message);
}

std::string settingNotSavedLog(std::string_view error)
{
    return "Gruk: failed to save a setting: " + displayText(error);
}

std::string grantFailedLog(std::string_view path, std::string_view error)
{
    return "Gruk: failed to grant access to " + displayText(path) + ": " + displayText(error);
}

std::string regrantFailedLog(std::string_view path, std::string_view error)
{
    return "Gruk: failed to re-grant access to " + displayText(path) + ": " + displayText(error);
}

}  // namespace gruk::ModelCopy
