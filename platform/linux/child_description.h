#pragma once

#include <cerrno>
#include <cstdint>

#include <dirent.h>
#include <sys/stat.h>

#include "platform/files/tree_reader.h"
#include "platform/linux/attribute_lister.h"
#include "platform/linux/walk_volume.h"

namespace gruk {

/// What one metadata call, and one for the attributes where any are asked for, tell of the child
/// `name` of an open directory, that was listed as `type`. Attributes are read on the walk's own
/// `volume` only; `attributes` has entered the directory.
inline ListedChild describedChild(int directory, const char* name, std::uint8_t type,
                                  const WalkVolume& volume, AttributeLister& attributes)
{
    ListedChild child;
    child.name = name;
    if (type == DT_LNK) {
        child.isSymbolicLink = true;
        return child;
    }
    // Not cleared first, a million times: the system fills it, or fails.
    struct statx answer;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    if (::statx(directory, name, statxFlags, volume.mask(), &answer) != 0) {
        child.hasVanished = errno == ENOENT;
        return child;
    }
    child.facts = factsFrom(answer);
    child.volumeID = volume.volumeOf(answer, child.facts->deviceID);
    child.isSymbolicLink = child.facts->type == ItemType::symbolicLink;
    // Only files and directories can carry attributes of the user's; and what is mounted here from
    // elsewhere is not touched more than it must be.
    if (attributes.isNeeded() && child.volumeID == volume.number()
        && (child.facts->type == ItemType::regularFile
            || child.facts->type == ItemType::directory)) {
        child.attributes = attributes.list(name);
    }
    return child;
}

}  // namespace gruk
