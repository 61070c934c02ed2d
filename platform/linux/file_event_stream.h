#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/events/file_event_stream.h"
#include "platform/linux/file_event_tree.h"

namespace gruk {

/// `makeFileEventStream` with the calls for watches in the caller's hands, which are then made on
/// the stream's thread, but for the root's.
[[nodiscard]] std::unique_ptr<FileEventStream>
makeFileEventStreamWith(WatchCalls calls, const std::shared_ptr<RunLoop>& loop,
                        const FileURL& directory, std::function<void()> onEvent,
                        std::function<void(const std::string&)> log);

}  // namespace gruk
