#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/automation/debounce_scheduler.h"
#include "platform/events/file_event_stream.h"
#include "platform/events/run_loop.h"

namespace gruk {

/// Listens to the changes below one directory, and says when they have gone quiet: no event for
/// the whole quiet period. Every event puts it off anew, without a limit. Knows nothing of what is
/// done then.
///
/// The main thread only. Destroying a watcher stops it.
class RealmWatcher {
public:
    /// A stopped watcher. `quietPeriod` in seconds. `onSettled` may start, stop or destroy the
    /// watcher.
    RealmWatcher(std::string path, double quietPeriod, std::function<void()> onSettled,
                 FileEventStreamFactory makeStream, std::shared_ptr<RunLoop> loop);
    ~RealmWatcher();
    RealmWatcher(const RealmWatcher&) = delete;
    RealmWatcher& operator=(const RealmWatcher&) = delete;

    /// Begins to listen; does nothing when it does already. When there can be no stream the
    /// watcher stays stopped, and says nothing.
    void start();

    /// Ends listening and drops a quiet period that was waited for; does nothing when stopped. The
    /// watcher may be started again.
    void stop();

    [[nodiscard]] bool isRunning() const { return run_ != nullptr; }
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    void handleEvent();
    void setTimer(Date fireDate);
    void timerFired();

    std::string path_;
    std::function<void()> onSettled_;
    FileEventStreamFactory makeStream_;
    std::shared_ptr<RunLoop> loop_;
    DebounceScheduler scheduler_;
    /// From start to stop; what a stream still says after its run is not for the next.
    std::shared_ptr<const char> run_;
    std::unique_ptr<FileEventStream> stream_;
    std::unique_ptr<RunLoop::Timer> timer_;
};

}  // namespace gruk
