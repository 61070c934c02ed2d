#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/events/file_event_stream.h"
#include "platform/linux/file_event_tree.h"

namespace gruk {

/// What a stream works with; a test takes its own.
struct FileEventStreamParts {
    /// Made on the stream's thread, but for the first of the root.
    WatchCalls calls = WatchCalls::live();
    UnheardItems unheard = {};
    /// How long a root that is gone is left alone until it is looked for again.
    std::chrono::milliseconds lookAgainAfter = std::chrono::seconds(20);
};

/// `makeFileEventStream` with its parts in the caller's hands.
[[nodiscard]] std::unique_ptr<FileEventStream>
makeFileEventStreamWith(FileEventStreamParts parts, const std::shared_ptr<RunLoop>& loop,
                        const FileURL& directory, std::function<void()> onEvent,
                        std::function<void(const std::string&)> log);

}  // namespace gruk
