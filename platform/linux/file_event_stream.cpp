#include "platform/linux/file_event_stream.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "platform/foundation/errors.h"
#include "platform/foundation/mutex.h"
#include "platform/linux/descriptor.h"

namespace gruk {

namespace {

using Clock = std::chrono::steady_clock;

/// The least time between two words to the main thread, and between two looks at a queue that was
/// not empty: a program that writes without pause would else wake the thread at every write. The
/// queue holds what comes meanwhile (16,384 records unless set otherwise).
constexpr std::chrono::milliseconds pace(20);
/// Directories taken in between two looks at the queue.
constexpr std::size_t foldersATurn = 64;
/// Reads of the queue between two looks at whether to stop.
constexpr int readsATurn = 64;

std::string notWatched(const FileURL& directory, const std::string& reason)
{
    return directory.path() + " is not watched: " + reason;
}

/// What the stream and its thread share; whoever goes last frees it.
class Link : public std::enable_shared_from_this<Link> {
public:
    Link(std::shared_ptr<RunLoop> loop, std::function<void()> onEvent,
         std::function<void(const std::string&)> log)
        : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), loop_(std::move(loop)),
          onEvent_(std::make_shared<const std::function<void()>>(std::move(onEvent))),
          log_(std::make_shared<const std::function<void(const std::string&)>>(std::move(log)))
    {
    }

    [[nodiscard]] bool isOpen() const { return wake_.isOpen(); }
    /// Becomes readable when the stream is stopped.
    [[nodiscard]] int wake() const { return wake_.number(); }
    [[nodiscard]] bool isStopped() const { return isStopped_; }

    /// Main thread. Nothing is posted, and nothing that was posted is called, from here on; what
    /// belongs to the main thread is let go of here.
    void stop()
    {
        isStopped_ = true;
        std::shared_ptr<RunLoop> loop;
        std::shared_ptr<const std::function<void()>> onEvent;
        std::shared_ptr<const std::function<void(const std::string&)>> log;
        {
            const MutexLock lock(mutex_);
            loop.swap(loop_);
            onEvent.swap(onEvent_);
            log.swap(log_);
        }
        ::eventfd_write(wake_.number(), 1);
    }

    /// Stream's thread. Posts that something changed, unless that is posted already.
    void tell()
    {
        const MutexLock lock(mutex_);
        if (loop_ && !isPosted_) {
            isPosted_ = true;
            loop_->post([link = weak_from_this()] {
                if (const auto held = link.lock()) {
                    held->deliver();
                }
            });
        }
    }

    void tellLog(const std::string& line)
    {
        const MutexLock lock(mutex_);
        if (loop_ && *log_) {
            loop_->post([log = std::weak_ptr(log_), line] {
                if (const auto held = log.lock()) {
                    (*held)(line);
                }
            });
        }
    }

private:
    /// Main thread.
    void deliver()
    {
        std::shared_ptr<const std::function<void()>> onEvent;
        {
            const MutexLock lock(mutex_);
            isPosted_ = false;
            onEvent = onEvent_;
        }
        if (onEvent) {
            (*onEvent)();
        }
    }

    Descriptor wake_;
    std::atomic<bool> isStopped_ = false;
    Mutex mutex_;
    /// None once stopped.
    std::shared_ptr<RunLoop> loop_ GRUK_GUARDED_BY(mutex_);
    std::shared_ptr<const std::function<void()>> onEvent_ GRUK_GUARDED_BY(mutex_);
    std::shared_ptr<const std::function<void(const std::string&)>> log_ GRUK_GUARDED_BY(mutex_);
    bool isPosted_ GRUK_GUARDED_BY(mutex_) = false;
};

/// What runs on the stream's thread.
class Listener {
public:
    Listener(std::shared_ptr<Link> link, FileURL root, FileEventStreamParts parts)
        : link_(std::move(link)), root_(std::move(root)), parts_(std::move(parts)),
          mounts_(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
    {
    }

    /// Begins with the root if it is there and may be watched; the log is told when it is not.
    void begin()
    {
        Descriptor queue(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        if (!queue.isOpen()) {
            complain("the system gives no more queues of file events");
            return;
        }
        try {
            tree_.emplace(root_, queue.number(), parts_.calls, parts_.unheard);
        } catch (const FileError& error) {
            complain(error.what());
            return;
        }
        queue_ = std::move(queue);
        lastComplaint_.clear();
    }

    void run()
    {
        while (!link_->isStopped()) {
            if (tree_) {
                listen();
            } else {
                waitForRoot();
            }
        }
    }

private:
    void listen()
    {
        if (tree_->hasWork()) {
            isChanged_ = tree_->work(foldersATurn) || isChanged_;
            readQueue();
        } else {
            waitForRecords();
            if (readQueue()) {
                rest();
            }
        }
        if (const auto complaint = tree_->takeComplaint()) {
            link_->tellLog(*complaint);
        }
        tellWhenDue();
        if (tree_->isGone()) {
            tree_.reset();
            queue_.reset();
            isChanged_ = false;
            link_->tell();
            // Another one may stand there already.
            beginAgain();
        }
    }

    void beginAgain()
    {
        begin();
        if (tree_) {
            // Nobody knows what was missed.
            isChanged_ = true;
        }
    }

    /// Until it is time to look for the root, something is mounted, or the stream is stopped.
    void waitForRoot()
    {
        std::array<pollfd, 2> waited = {pollfd{link_->wake(), POLLIN, 0},
                                        pollfd{mounts_.number(), POLLPRI, 0}};
        ::poll(waited.data(), waited.size(), static_cast<int>(parts_.lookAgainAfter.count()));
        if (!link_->isStopped()) {
            beginAgain();
            rest();
        }
    }

    /// Each reason once, as long as it lasts.
    void complain(const std::string& reason)
    {
        if (reason != lastComplaint_) {
            lastComplaint_ = reason;
            link_->tellLog(notWatched(root_, reason));
        }
    }

    /// Returns whether there was anything.
    bool readQueue()
    {
        for (int i = 0; i < readsATurn; ++i) {
            const ssize_t length = ::read(queue_.number(), buffer_.data(), buffer_.size());
            if (length <= 0) {
                return i > 0;
            }
            readFileEventRecords(std::string_view(buffer_.data(), static_cast<std::size_t>(length)),
                                 [this](const FileEventRecord& record) {
                                     isChanged_ = tree_->handle(record) || isChanged_;
                                 });
        }
        return true;
    }

    void tellWhenDue()
    {
        const Clock::time_point now = Clock::now();
        if (isChanged_ && now - lastTold_ >= pace) {
            isChanged_ = false;
            lastTold_ = now;
            link_->tell();
        }
    }

    /// Until there are records, something is mounted or unmounted, a word is due, or the stream is
    /// stopped.
    void waitForRecords()
    {
        std::array<pollfd, 3> waited = {pollfd{link_->wake(), POLLIN, 0},
                                        pollfd{queue_.number(), POLLIN, 0},
                                        pollfd{mounts_.number(), POLLPRI, 0}};
        const int limit = isChanged_ ? static_cast<int>(pace.count()) : -1;
        ::poll(waited.data(), waited.size(), limit);
        if (waited[2].revents != 0) {
            isChanged_ = tree_->mountsChanged() || isChanged_;
        }
    }

    /// Until the pace allows the next look, or the stream is stopped.
    void rest()
    {
        tellWhenDue();
        pollfd waited{link_->wake(), POLLIN, 0};
        ::poll(&waited, 1, static_cast<int>(pace.count()));
    }

    std::shared_ptr<Link> link_;
    FileURL root_;
    FileEventStreamParts parts_;
    /// The table of mounts, which the system marks when it changes; none where it cannot be read.
    Descriptor mounts_;
    Descriptor queue_;
    /// None while the root is not there.
    std::optional<FileEventTree> tree_;
    /// Why there is none.
    std::string lastComplaint_;
    bool isChanged_ = false;
    Clock::time_point lastTold_;
    std::vector<char> buffer_ = std::vector<char>(65'536);
};

class Stream final : public FileEventStream {
public:
    explicit Stream(std::shared_ptr<Link> link) : link_(std::move(link)) {}
    ~Stream() override { link_->stop(); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

private:
    std::shared_ptr<Link> link_;
};

}  // namespace

std::unique_ptr<FileEventStream>
makeFileEventStreamWith(FileEventStreamParts parts, const std::shared_ptr<RunLoop>& loop,
                        const FileURL& directory, std::function<void()> onEvent,
                        std::function<void(const std::string&)> log)
{
    const auto refuse = [&](const std::string& reason) -> std::unique_ptr<FileEventStream> {
        if (log) {
            loop->post([log, line = notWatched(directory, reason)] { log(line); });
        }
        return nullptr;
    };
    auto link = std::make_shared<Link>(loop, std::move(onEvent), log);
    if (!link->isOpen()) {
        return refuse("too much is open");
    }
    try {
        auto listener = std::make_unique<Listener>(link, directory, std::move(parts));
        listener->begin();
        // Not waited for: it may be in a call about a disk that does not answer, and freeing a
        // hundred thousand watches takes longer than a frame.
        std::thread([listener = std::move(listener)] { listener->run(); }).detach();
    } catch (const std::system_error& error) {
        return refuse(error.what());
    }
    return std::make_unique<Stream>(std::move(link));
}

std::unique_ptr<FileEventStream> makeFileEventStream(const std::shared_ptr<RunLoop>& loop,
                                                     const FileURL& directory,
                                                     std::function<void()> onEvent,
                                                     std::function<void(const std::string&)> log,
                                                     UnheardItems unheard)
{
    FileEventStreamParts parts;
    parts.unheard = std::move(unheard);
    return makeFileEventStreamWith(std::move(parts), loop, directory, std::move(onEvent),
                                   std::move(log));
}

}  // namespace gruk
