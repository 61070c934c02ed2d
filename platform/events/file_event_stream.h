#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/events/run_loop.h"
#include "platform/files/own_folders.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// Word of every change below a directory, from its making to its destruction. What changed is
/// not told. Made, used and destroyed on the main thread.
class FileEventStream {
public:
    virtual ~FileEventStream() = default;
};

/// Makes a stream for the directory at a place, which calls `onEvent` on the main thread when
/// something changed, never before returning; none when that cannot be.
using FileEventStreamFactory = std::function<std::unique_ptr<FileEventStream>(
    const FileURL& directory, std::function<void()> onEvent)>;

/// What no change is told of: a program that patrols after every change, and writes down what it
/// saw, would else hear of its own writing and never come to rest.
struct UnheardItems {
    /// Known by what stands at their places, whichever way leads there.
    OwnFolders folders;
    /// Names of files, in any folder.
    std::vector<std::string> names;
};

/// The system's own stream. It sees items made, removed, renamed, written to (also while they stay
/// open) and changed in their attributes, in the whole tree below `directory`, however deep and
/// also in folders that are made or moved there later. Symbolic links are not followed, other
/// volumes not entered. Changes that come close together are told as one, a few times a second at
/// most; while the main thread has not come round to one, no other is posted.
///
/// Returns at once: the tree is taken in on a thread of the stream's own. A file that merely grows
/// in the moment before its folder is reached may go unnoticed; whatever else happens meanwhile
/// does not. When the system cannot say what changed, or cannot watch all of the tree, that counts
/// as a change and is said once to `log`, on the main thread; it is not tried again and again.
///
/// What `unheard` names is passed over, and so is the replacing of a file by `AtomicFile`, wherever
/// it lies. Of a directory that is unheard itself nothing is told but that it goes.
///
/// A directory (or a link to one) that is not there, may not be opened, goes, or whose volume is
/// taken away, is looked for a few times a minute, and whenever something is mounted; its going and
/// its coming back are events. None when the system refuses a thread. No directory is held open
/// once the tree is taken in, so that volumes can be unmounted. Destroying it frees everything,
/// without waiting for the disk: `onEvent` is not called any more, and the thread ends when the
/// call that it is in returns.
[[nodiscard]] std::unique_ptr<FileEventStream>
makeFileEventStream(const std::shared_ptr<RunLoop>& loop, const FileURL& directory,
                    std::function<void()> onEvent, std::function<void(const std::string&)> log = {},
                    UnheardItems unheard = {});

}  // namespace gruk
