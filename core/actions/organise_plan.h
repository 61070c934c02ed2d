#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/file_kind.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// What an organise would do, and, applied, what it does: which loose files of a realm go into
/// which folder. Made by reading only. A plain value.
struct OrganisePlan {
    /// All files of one kind.
    struct CategoryMove {
        FileKind kind = FileKind::other;
        /// One path component below the realm.
        std::string destinationFolderName;
        /// In the plain order of their names; never empty.
        std::vector<FileURL> files;
        /// The lengths of their contents.
        Bytes totalBytes = 0;

        friend bool operator==(const CategoryMove&, const CategoryMove&) = default;
    };

    /// Standardised.
    FileURL realm;
    /// In the order of the kinds, each at most once; empty when there is nothing to do.
    std::vector<CategoryMove> moves;

    friend bool operator==(const OrganisePlan&, const OrganisePlan&) = default;
};

/// Folder names that differ from the default, by kind.
using FolderOverrides = std::map<FileKind, std::string>;

namespace OrganiseDefaults {

/// The folder of that kind; empty for `folder`, which is never moved.
[[nodiscard]] std::string_view folderName(FileKind kind);

}  // namespace OrganiseDefaults
}  // namespace gruk
