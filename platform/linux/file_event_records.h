#pragma once

#include <cstdint>
#include <string_view>

#include "platform/foundation/function_ref.h"

namespace gruk {

/// One word of the kernel about a watched directory. Valid only while it is visited.
struct FileEventRecord {
    /// Of the directory; -1 when the queue was full and words were lost.
    int watch = -1;
    /// Bits of <sys/inotify.h>.
    std::uint32_t mask = 0;
    /// Of the item in the directory; empty when the word is about the directory itself.
    std::string_view name;
    /// The same for the two words of one rename, 0 for all else.
    std::uint32_t cookie = 0;
};

/// Hands the records in `bytes`, as one read of the event queue fills them, to `visit`. Bytes that
/// end within a record, which the kernel never gives, end the reading there.
void readFileEventRecords(std::string_view bytes, FunctionRef<void(const FileEventRecord&)> visit);

}  // namespace gruk
