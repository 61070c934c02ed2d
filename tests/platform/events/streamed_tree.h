#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/file_event_stream.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// Generous: only a failure waits for so long.
inline constexpr std::chrono::seconds limit(60);

/// A main thread that the test runs, and that can be waited for.
class WaitingRunLoop final : public RunLoop {
public:
    void post(std::function<void()> function) override
    {
        {
            const std::lock_guard guard(lock_);
            posted_.push_back(std::move(function));
        }
        changed_.notify_all();
    }

    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds /*delay*/,
                                               std::function<void()> /*function*/) override
    {
        throw std::logic_error("no timer is needed here");
    }
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds delay,
                                               std::function<void()> function) override
    {
        return after(delay, std::move(function));
    }
    [[nodiscard]] Date now() const override { return Date::now(); }

    /// Whether something is posted, now or soon.
    [[nodiscard]] bool waitForPost()
    {
        std::unique_lock guard(lock_);
        return changed_.wait_for(guard, limit, [this] { return !posted_.empty(); });
    }

    [[nodiscard]] std::size_t count()
    {
        const std::lock_guard guard(lock_);
        return posted_.size();
    }

    void run()
    {
        std::deque<std::function<void()>> functions;
        {
            const std::lock_guard guard(lock_);
            functions.swap(posted_);
        }
        for (const auto& function : functions) {
            function();
        }
    }

private:
    /// Guards `posted_`.
    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> posted_;
};

/// Whether `condition` holds, now or soon.
template <typename Condition>
bool becomesTrue(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

inline std::size_t entriesOf(const char* folder)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

inline std::size_t threads()
{
    return entriesOf("/proc/self/task");
}

/// The same before anything begins. With the first thread of a process a sanitizer begins one of
/// its own, which stays.
inline std::size_t threadsAtFirst()
{
    std::thread([] {}).join();
    // The system lists a thread for a moment after its end.
    constexpr int looks = 200;
    std::size_t fewest = threads();
    for (int i = 0; i < looks; ++i) {
        std::this_thread::yield();
        fewest = std::min(fewest, threads());
    }
    return fewest;
}

/// A stream on its own thread, whose words come to a main thread of the test's.
class FileEventStreamFixture : public testing::Test {
protected:
    /// Threads end after their streams; the next test counts its own.
    void TearDown() override
    {
        EXPECT_TRUE(becomesTrue([this] { return threads() == threadsBefore; }));
    }

    /// A stream that has taken its tree in, with nothing under way.
    std::unique_ptr<FileEventStream> settledStream(int folders)
    {
        auto stream = startedStream();
        EXPECT_TRUE(becomesTrue([&] { return added == folders; }));
        // What was made just before the beginning may be told of once.
        settle();
        return stream;
    }

    std::unique_ptr<FileEventStream> startedStream()
    {
        WatchCalls calls = WatchCalls::live();
        calls.add = [this, live = calls.add](int queue, int directory) {
            const int watch = live(queue, directory);
            ++added;
            return watch;
        };
        FileEventStreamParts all = parts;
        all.calls = std::move(calls);
        return makeFileEventStreamWith(
            std::move(all), loop, FileURL::directory(realm), [this] { ++events; },
            [this](const std::string& line) { lines.push_back(line); });
    }

    /// Goes on until the stream has read everything so far: it takes in a folder made now.
    void settle()
    {
        const int before = added;
        disk.folder("realm/marker " + std::to_string(before));
        ASSERT_TRUE(becomesTrue([&] { return added > before; }));
        ASSERT_TRUE(hears());
        // The word of the folder itself, and that of its having been taken in.
        const int known = added;
        disk.folder("realm/second marker " + std::to_string(known));
        ASSERT_TRUE(becomesTrue([&] { return added > known; }));
        ASSERT_TRUE(hears());
    }

    /// Waits for a word and takes it.
    bool hears()
    {
        const int before = events;
        while (events == before) {
            if (!loop->waitForPost()) {
                return false;
            }
            loop->run();
        }
        return true;
    }

    const std::size_t threadsBefore = threadsAtFirst();
    /// But for the calls.
    FileEventStreamParts parts;
    test::TemporaryDirectory disk;
    std::string realm = disk.folder("realm");
    std::shared_ptr<WaitingRunLoop> loop = std::make_shared<WaitingRunLoop>();
    std::atomic<int> added = 0;
    int events = 0;
    std::vector<std::string> lines;
};

}  // namespace gruk::test
