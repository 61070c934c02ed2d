#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// Opens a folder in the desktop's program for folders. Main thread, as is `onFailure`, which is
/// called once when there is none.
using FolderOpener =
    std::function<void(const FileURL& folder, const std::function<void()>& onFailure)>;

/// The desktop's own. Returns at once. What opens outlives the program.
void openFolderOnDesktop(const FileURL& folder, const std::function<void()>& onFailure);

/// Shows items where they lie, marked, in the desktop's file manager. Touches none of them: their
/// places are handed over byte for byte, and what is gone the file manager sees for itself.
///
/// A plain value; main thread only. The talk with the desktop is on the pool.
class FileRevealer {
public:
    /// How long a file manager may take; it may have to be started.
    static constexpr std::chrono::milliseconds usualLimit{5'000};

    FileRevealer(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop,
                 FolderOpener openFolder = openFolderOnDesktop,
                 std::chrono::milliseconds limit = usualLimit);

    /// Returns at once. Where no file manager can be asked to mark items, or none answers within
    /// the limit, opens the folders that hold them, each once; where that cannot be done either,
    /// calls `onFailure`, once, on the main thread. Nothing happens for no items.
    void reveal(const std::vector<FileURL>& items, std::function<void()> onFailure) const;

private:
    std::shared_ptr<TaskPool> pool_;
    std::shared_ptr<RunLoop> loop_;
    FolderOpener openFolder_;
    std::chrono::milliseconds limit_;
};

}  // namespace gruk
