#include "app/model/model_copy.h"

#include "platform/foundation/utf8.h"

namespace gruk::ModelCopy {

std::string firstPatrolComplete(std::string_view name)
{
    return "First patrol of " + displayText(name) + " complete.";
}

std::string patrolComplete(std::string_view name, std::size_t changes)
{
    const std::string complete = "Patrol of " + displayText(name) + " complete. ";
    return changes == 0 ? complete + "No size changes since the last map."
                        : complete + "Gruk found " + std::to_string(changes) + " changed items.";
}

std::string patrolFailed(std::string_view description)
{
    return "The patrol could not finish: " + displayText(description);
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
