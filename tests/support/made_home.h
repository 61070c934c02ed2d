#pragma once

#include <string>

#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// Fills `home` below `disk` with what somebody's home holds after a few years: papers, pictures
/// and music of an office, a developer's projects with what their tools made, downloads, caches,
/// things in the Trash, and the oddities that every real home has: a link to another disk's folder,
/// one file with two names, a name of 200 letters, one that is not UTF-8, a sparse disk image, a
/// folder deeper than a path may be long. About 20,000 items, the same at each call.
void makeHome(const TemporaryDirectory& disk, const std::string& home);

}  // namespace gruk::test
