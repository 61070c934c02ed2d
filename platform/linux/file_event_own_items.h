#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <sys/types.h>

#include "platform/events/file_event_stream.h"
#include "platform/linux/file_event_records.h"

namespace gruk {

/// Tells what this program does itself from what others do. One thread.
class FileEventOwnItems {
public:
    explicit FileEventOwnItems(UnheardItems unheard) : unheard_(std::move(unheard)) {}

    /// Whether it is one of the unheard folders, as they stand now. Looked up each time: a folder
    /// may be made anew, and is the same under every name.
    [[nodiscard]] bool isFolder(dev_t device, ino_t inode) const;

    /// Whether the record comes of a file of an unheard name, or of replacing a file: of what is
    /// done under the temporary name, of the rename away from it, or of the end of writing after
    /// that. To be asked of all records, in their order.
    bool cause(const FileEventRecord& record);

private:
    /// A file that was made under a temporary name.
    struct Replacement {
        std::uint32_t cookie = 0;
        /// Where it went; -1 while that is not known.
        int watch = -1;
        std::string name;
    };

    UnheardItems unheard_;
    /// The last one, until it is closed.
    std::optional<Replacement> replacement_;
};

}  // namespace gruk
