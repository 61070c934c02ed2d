#pragma once

#include <optional>
#include <vector>

#include "platform/foundation/file_url.h"

namespace gruk {

/// What is selected in the folder that is browsed. It outlives the page that shows it, but no visit
/// to another folder.
struct BrowseSelection {
    /// None while no folder was browsed.
    std::optional<FileURL> folder;
    /// Also those that a filter hides.
    std::vector<FileURL> urls;
    /// Where the keyboard is.
    std::optional<FileURL> current;
};

}  // namespace gruk
