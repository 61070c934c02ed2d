#include "platform/linux/file_event_records.h"

#include <cstddef>
#include <cstring>

#include <sys/inotify.h>

namespace gruk {

void readFileEventRecords(std::string_view bytes, FunctionRef<void(const FileEventRecord&)> visit)
{
    constexpr std::size_t fixedSize = offsetof(inotify_event, name);
    while (bytes.size() >= fixedSize) {
        inotify_event event{};
        std::memcpy(&event, bytes.data(), fixedSize);
        bytes.remove_prefix(fixedSize);
        if (event.len > bytes.size()) {
            return;
        }
        // Filled up with NULs behind the name.
        const std::string_view padded = bytes.substr(0, event.len);
        visit({event.wd, event.mask, padded.substr(0, padded.find('\0')), event.cookie});
        bytes.remove_prefix(event.len);
    }
}

}  // namespace gruk
