#include "platform/linux/file_event_stream.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

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
    Listener(std::shared_ptr<Link> link, Descriptor queue, const FileURL& root, WatchCalls calls)
        : link_(std::move(link)), queue_(std::move(queue)),
          tree_(root, queue_.number(), std::move(calls))
    {
    }

    void run()
    {
        while (!link_->isStopped()) {
            if (tree_.hasWork()) {
                isChanged_ = tree_.work(foldersATurn) || isChanged_;
                readQueue();
            } else {
                waitForRecords();
                if (readQueue()) {
                    rest();
                }
            }
            if (const auto complaint = tree_.takeComplaint()) {
                link_->tellLog(*complaint);
            }
            tellWhenDue();
            if (tree_.isGone()) {
                link_->tell();
                return;
            }
        }
    }

private:
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
                                     isChanged_ = tree_.handle(record) || isChanged_;
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

    /// Until there are records, a word is due, or the stream is stopped.
    void waitForRecords() const
    {
        std::array<pollfd, 2> waited = {pollfd{link_->wake(), POLLIN, 0},
                                        pollfd{queue_.number(), POLLIN, 0}};
        const int limit = isChanged_ ? static_cast<int>(pace.count()) : -1;
        ::poll(waited.data(), waited.size(), limit);
    }

    /// Until the pace allows the next look, or the stream is stopped.
    void rest()
    {
        tellWhenDue();
        pollfd waited{link_->wake(), POLLIN, 0};
        ::poll(&waited, 1, static_cast<int>(pace.count()));
    }

    std::shared_ptr<Link> link_;
    Descriptor queue_;
    FileEventTree tree_;
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

void refuse(const std::shared_ptr<RunLoop>& loop,
            const std::function<void(const std::string&)>& log, const FileURL& directory,
            const std::string& reason)
{
    if (log) {
        loop->post([log, line = directory.path() + " is not watched: " + reason] { log(line); });
    }
}

}  // namespace

std::unique_ptr<FileEventStream>
makeFileEventStreamWith(WatchCalls calls, const std::shared_ptr<RunLoop>& loop,
                        const FileURL& directory, std::function<void()> onEvent,
                        std::function<void(const std::string&)> log)
{
    auto link = std::make_shared<Link>(loop, std::move(onEvent), log);
    Descriptor queue(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!link->isOpen() || !queue.isOpen()) {
        refuse(loop, log, directory, "the system gives no more queues of file events");
        return nullptr;
    }
    try {
        auto listener =
            std::make_unique<Listener>(link, std::move(queue), directory, std::move(calls));
        // Not waited for: it may be in a call about a disk that does not answer, and freeing a
        // hundred thousand watches takes longer than a frame.
        std::thread([listener = std::move(listener)] { listener->run(); }).detach();
    } catch (const std::system_error& error) {
        refuse(loop, log, directory, error.what());
        return nullptr;
    }
    return std::make_unique<Stream>(std::move(link));
}

std::unique_ptr<FileEventStream> makeFileEventStream(const std::shared_ptr<RunLoop>& loop,
                                                     const FileURL& directory,
                                                     std::function<void()> onEvent,
                                                     std::function<void(const std::string&)> log)
{
    return makeFileEventStreamWith(WatchCalls::live(), loop, directory, std::move(onEvent),
                                   std::move(log));
}

}  // namespace gruk
