#pragma once

#include <cstdio>
#include <fstream>
#include <string>

#include "platform/files/metadata.h"
#include "platform/foundation/file_url.h"

namespace gruk::test {

/// Removes the file and makes another one under its name, as often as it takes until that has the
/// number of the first one and a birth time of its own. False where this file system gives no
/// number twice, or keeps no birth time.
inline bool makeAnewUnderTheSameNumber(const std::string& path, const std::string& content)
{
    const ItemFacts former = itemFacts(FileURL(path));
    constexpr int patience = 20'000;
    for (int i = 0; i < patience; ++i) {
        std::remove(path.c_str());
        std::ofstream(path) << content;
        const ItemFacts now = itemFacts(FileURL(path));
        if (now.inode == former.inode && now.created && now.created != former.created) {
            return true;
        }
    }
    return false;
}

}  // namespace gruk::test
