#include "platform/linux/file_event_stream.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <latch>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

/// Generous: only a failure waits for so long.
constexpr std::chrono::seconds limit(60);

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

std::size_t entriesOf(const char* folder)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

std::size_t threads()
{
    return entriesOf("/proc/self/task");
}

/// The same before anything begins. With the first thread of a process a sanitizer begins one of
/// its own, which stays.
std::size_t threadsAtFirst()
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

class FileEventStreamTest : public testing::Test {
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
        return makeFileEventStreamWith(
            std::move(calls), loop, FileURL::directory(realm), [this] { ++events; },
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
    test::TemporaryDirectory disk;
    std::string realm = disk.folder("realm");
    std::shared_ptr<WaitingRunLoop> loop = std::make_shared<WaitingRunLoop>();
    std::atomic<int> added = 0;
    int events = 0;
    std::vector<std::string> lines;
};

}  // namespace

TEST_F(FileEventStreamTest, aChangeRightAfterTheBeginningIsTold)
{
    const auto stream = startedStream();
    ASSERT_NE(stream, nullptr);
    disk.file("realm/x", 10);
    EXPECT_EQ(events, 0) << "it must not be told before this returns";
    EXPECT_TRUE(hears());
    EXPECT_TRUE(lines.empty());
}

TEST_F(FileEventStreamTest, theLiveStreamTellsOfAChange)
{
    const auto stream = makeFileEventStream(loop, FileURL::directory(realm), [this] { ++events; });
    ASSERT_NE(stream, nullptr);
    disk.folder("realm/a/b");
    EXPECT_TRUE(hears());
}

TEST_F(FileEventStreamTest, whileOneWordWaitsNoOtherIsPosted)
{
    const auto stream = settledStream(1);
    loop->run();
    for (int i = 0; i < 20; ++i) {
        const int before = added;
        disk.file("realm/" + std::to_string(i), 10);
        disk.folder("realm/folder " + std::to_string(i));
        // So that each of them is read on its own.
        ASSERT_TRUE(becomesTrue([&] { return added > before; }));
    }
    ASSERT_TRUE(loop->waitForPost());
    EXPECT_EQ(loop->count(), 1U);
}

TEST_F(FileEventStreamTest, aWordThatWasPostedBeforeTheEndIsNotTold)
{
    auto stream = settledStream(1);
    loop->run();
    const int before = events;
    disk.file("realm/x", 10);
    ASSERT_TRUE(loop->waitForPost());
    stream.reset();
    loop->run();
    EXPECT_EQ(events, before);
}

TEST_F(FileEventStreamTest, theStreamMayBeEndedByItsOwnWord)
{
    std::unique_ptr<FileEventStream> stream;
    stream = makeFileEventStream(loop, FileURL::directory(realm),
                                 [&, held = std::string("what must outlive the call")] {
                                     stream.reset();
                                     ++events;
                                     EXPECT_EQ(held, "what must outlive the call");
                                 });
    disk.file("realm/x", 10);
    EXPECT_TRUE(hears());
    EXPECT_EQ(stream, nullptr);
}

TEST_F(FileEventStreamTest, endingTheStreamFreesEveryDescriptorAndItsThread)
{
    for (int i = 0; i < 50; ++i) {
        disk.folder("realm/" + std::to_string(i) + "/inner");
    }
    const std::size_t descriptorsBefore = entriesOf("/proc/self/fd");
    auto stream = settledStream(101);
    EXPECT_GT(threads(), threadsBefore);
    EXPECT_GT(entriesOf("/proc/self/fd"), descriptorsBefore);
    stream.reset();
    EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
    EXPECT_TRUE(becomesTrue([&] { return entriesOf("/proc/self/fd") == descriptorsBefore; }));
}

TEST_F(FileEventStreamTest, endingTheStreamWhileItTakesTheTreeInDoesNotWaitForIt)
{
    for (int i = 0; i < 500; ++i) {
        disk.folder("realm/" + std::to_string(i));
    }
    // Shared with the thread, which outlives the stream.
    struct Gate {
        std::latch isInside{1};
        std::latch mayGoOn{1};
        std::atomic<int> calls = 0;
    };
    const auto gate = std::make_shared<Gate>();
    WatchCalls calls = WatchCalls::live();
    calls.add = [gate, live = calls.add](int queue, int directory) {
        if (++gate->calls == 2) {
            gate->isInside.count_down();
            gate->mayGoOn.wait();
        }
        return live(queue, directory);
    };
    auto stream =
        makeFileEventStreamWith(calls, loop, FileURL::directory(realm), [this] { ++events; }, {});
    gate->isInside.wait();
    stream.reset();
    EXPECT_EQ(gate->calls, 2);
    gate->mayGoOn.count_down();
    EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
    EXPECT_LT(gate->calls, 100);
    loop->run();
    EXPECT_EQ(events, 0);
}

TEST_F(FileEventStreamTest, aPathThatDoesNotExistOrIsNoFolderGivesNoStreamAndIsLogged)
{
    const auto log = [this](const std::string& line) { lines.push_back(line); };
    EXPECT_EQ(makeFileEventStream(
                  loop, FileURL(disk.path("gone")), [] {}, log),
              nullptr);
    EXPECT_EQ(makeFileEventStream(
                  loop, FileURL(disk.file("file")), [] {}, log),
              nullptr);
    EXPECT_TRUE(lines.empty()) << "the log is told on the main thread's next turn";
    loop->run();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NE(lines.front().find(disk.path("gone")), std::string::npos);
}

TEST_F(FileEventStreamTest, runningOutOfWatchesIsTheOnlyWordAndIsLoggedOnce)
{
    disk.folder("realm/a");
    disk.folder("realm/b");
    const auto tried = std::make_shared<std::atomic<int>>(0);
    WatchCalls calls = WatchCalls::live();
    calls.add = [tried, live = calls.add](int queue, int directory) {
        return ++*tried > 1 ? -ENOSPC : live(queue, directory);
    };
    const auto stream = makeFileEventStreamWith(
        calls, loop, FileURL::directory(realm), [this] { ++events; },
        [this](const std::string& line) { lines.push_back(line); });
    EXPECT_TRUE(hears());
    while (lines.empty() && loop->waitForPost()) {
        loop->run();
    }
    EXPECT_EQ(*tried, 2);
    disk.folder("realm/c");
    EXPECT_TRUE(hears());
    EXPECT_TRUE(becomesTrue([&] { return *tried == 3; }));
    loop->run();
    EXPECT_EQ(lines.size(), 1U);
}

TEST_F(FileEventStreamTest, aRootThatGoesEndsTheThreadWithALastWord)
{
    const auto stream = settledStream(1);
    loop->run();
    std::filesystem::rename(realm, disk.path("elsewhere"));
    EXPECT_TRUE(hears());
    EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
}

TEST_F(FileEventStreamTest, aVolumeThatIsWatchedCanBeUnmountedWhichIsALastWord)
{
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        const std::size_t threadsOfChild = threads();
        test::mountMemory(realm);
        disk.folder("realm/a/b");
        const auto stream = settledStream(3);
        loop->run();
        // A directory is open while it is taken in, but not for long.
        const bool isUnmounted = becomesTrue([&] {
            try {
                test::unmount(realm);
                return true;
            } catch (const std::system_error&) {
                return false;
            }
        });
        if (!isUnmounted) {
            return "it cannot be unmounted";
        }
        if (!becomesTrue([&] { return threads() == threadsOfChild; })) {
            return "the thread waits for more";
        }
        return hears() ? "" : "the end of the volume was not told";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(FileEventStreamTest, manyStreamsBeginAndEndWhileTheirTreeChanges)
{
    for (int i = 0; i < 20; ++i) {
        disk.folder("realm/" + std::to_string(i) + "/a/b");
    }
    std::atomic<bool> isEnough = false;
    std::thread changing([&] {
        for (int i = 0; !isEnough; ++i) {
            const std::string from = disk.path("realm/" + std::to_string(i % 20));
            std::filesystem::rename(from, disk.path("realm/moved"));
            disk.folder("realm/moved/new");
            std::filesystem::remove(disk.path("realm/moved/new"));
            std::filesystem::rename(disk.path("realm/moved"), from);
        }
    });
    for (int i = 0; i < 30; ++i) {
        auto stream = makeFileEventStream(loop, FileURL::directory(realm), [this] { ++events; });
        EXPECT_TRUE(hears());
    }
    isEnough = true;
    changing.join();
    EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
}

}  // namespace gruk
