#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "app/model/model_collaborators.h"
#include "tests/support/moments.h"
#include "tests/support/pulled_disk.h"

namespace gruk::test {

/// One way in which a user, or whoever shares the disk, loses a folder, and how it comes back.
struct LostWay {
    std::string name;
    /// Takes the folder away.
    std::function<void(const std::string& folder)> goes;
    /// Gives the very same folder back; empty where there is no way back.
    std::function<void(const std::string& folder)> comesBack;
    /// Whether a folder that looks like it comes to light in its place.
    bool showsAnother = false;
};

[[nodiscard]] LostWay renamed();
[[nodiscard]] LostWay removed();
[[nodiscard]] LostWay replaced();
/// Root is refused nothing: for an ordinary user.
[[nodiscard]] LostWay closed();
/// The folder is on that disk. Only with mounts of one's own.
[[nodiscard]] LostWay pulledOut(const std::shared_ptr<PulledDisk>& disk);

/// Where the folder stands in a house, if not simply in it.
struct RealmPlace {
    /// Relative to the house.
    std::string realm = "Desktop";
    /// Runs before the folder is made; takes the path of the house.
    std::function<void(const std::string& house)> prepare = nullptr;
    /// Runs before the house is taken down.
    std::function<void()> cleanUp = nullptr;
    /// May put other collaborators in, and have more steps of theirs counted.
    std::function<void(ModelCollaborators&, const std::shared_ptr<Moments>&)> change = nullptr;
};

/// The place on a disk that can be pulled out.
[[nodiscard]] RealmPlace placeOn(const std::shared_ptr<PulledDisk>& disk);

/// A way with a place where it can happen; made anew for each house.
struct Going {
    LostWay way;
    RealmPlace place = {};
};
using MakeGoing = std::function<Going()>;

/// Calls `play` for each way that needs no rights of its own: renamed, removed, replaced.
void inEachWay(const std::function<void(const MakeGoing&)>& play);
/// Calls it for a folder that is closed, as an ordinary user.
void asItIsClosed(const std::function<void(const MakeGoing&)>& play);
/// Calls it for a disk that is pulled out; false where nothing may be mounted.
[[nodiscard]] bool asItsDiskIsPulledOut(const std::function<void(const MakeGoing&)>& play);

/// Calls `play` with one moment after the other, until it says that there were not so many, or
/// fails. Expects that there are more than `leastMoments`.
void playMoments(const std::string& name, std::size_t leastMoments,
                 const std::function<bool(std::size_t moment)>& play);

}  // namespace gruk::test
