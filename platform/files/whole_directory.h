#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/tree_reader.h"
#include "platform/foundation/file_url.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// The value of the i-th attribute asked for, of the child being visited; none when it cannot be
/// read. Good only while the visitor runs.
using AttributeValue = FunctionRef<std::optional<std::string>(std::size_t index)>;

/// What reads one directory hands over.
struct DirectoryVisitor {
    /// Called first, with how many children there are.
    FunctionRef<void(std::size_t count)> begin;
    /// Called once for each child, by its number in the system's order; for different children on
    /// several threads at once.
    FunctionRef<void(std::size_t number, const ListedChild& child, AttributeValue attribute)> visit;
};

/// Reads everything directly in the directory, as `TreeReader` describes it: one listing, then the
/// children of a large one by several threads, since a person waits for it. The directory itself
/// may be a link to one. At most 32 `attributeNames`. Returns when all is done; throws `FileError`
/// when it cannot be opened or listed, and what the visitor throws. Any thread.
void readWholeDirectory(const FileURL& directory, const std::vector<std::string>& attributeNames,
                        const DirectoryVisitor& visitor);

}  // namespace gruk
