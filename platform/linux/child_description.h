#pragma once

#include <cstdint>

#include <dirent.h>
#include <sys/stat.h>

#include "platform/files/tree_reader.h"
#include "platform/linux/attribute_lister.h"
#include "platform/linux/statx_facts.h"

namespace gruk {

/// What one metadata call, and one for the attributes where any are asked for, tell of the child
/// `name` of an open directory, that was listed as `type`. Attributes are read on the device
/// `device` only; `attributes` has entered the directory.
inline ListedChild describedChild(int directory, const char* name, std::uint8_t type,
                                  std::int32_t device, AttributeLister& attributes)
{
    ListedChild child;
    child.name = name;
    if (type == DT_LNK) {
        child.isSymbolicLink = true;
        return child;
    }
    // Not cleared first, a million times: the system fills it, or fails.
    struct statx answer;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    if (::statx(directory, name, statxFlags, statxMask, &answer) != 0) {
        return child;
    }
    child.facts = factsFrom(answer);
    child.isSymbolicLink = child.facts->type == ItemType::symbolicLink;
    // Only files and directories can carry attributes of the user's; and what is mounted here from
    // elsewhere is not touched more than it must be.
    if (attributes.isNeeded() && child.facts->deviceID == device
        && (child.facts->type == ItemType::regularFile
            || child.facts->type == ItemType::directory)) {
        child.attributes = attributes.list(name);
    }
    return child;
}

/// The device of an open directory; 0 where it cannot be told.
inline std::int32_t deviceOf(int directory)
{
    struct statx answer {};
    return ::statx(directory, "", statxFlags | AT_EMPTY_PATH, statxMask, &answer) == 0
               ? factsFrom(answer).deviceID
               : 0;
}

}  // namespace gruk
