#pragma once

#include <filesystem>

namespace gruk::tour {

/// Makes the realm that the tour shows: a home's worth of folders with everything that a patrol
/// has a word for (duplicate downloads, old installers, caches), names of many scripts, names that
/// are not UTF-8, links, and a folder that nobody may list. Its files take space and hold nothing.
void makeSampleRealm(const std::filesystem::path& root);

/// What happens to it between two patrols: something new, something grown, shrunk and gone.
void changeSampleRealm(const std::filesystem::path& root);

/// A realm in which nothing is worth a look.
void makeTidyRealm(const std::filesystem::path& root);

/// A realm with `findings` findings, with names as long as a name can be.
void makeCrowdedRealm(const std::filesystem::path& root, int findings);

}  // namespace gruk::tour
