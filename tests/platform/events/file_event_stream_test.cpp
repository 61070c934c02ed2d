#include "platform/linux/file_event_stream.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/platform/events/streamed_tree.h"

namespace gruk {

namespace {

using test::becomesTrue;
using test::entriesOf;
using test::threads;

class FileEventStreamTest : public test::FileEventStreamFixture {};

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
        makeFileEventStreamWith({calls}, loop, FileURL::directory(realm), [this] { ++events; }, {});
    gate->isInside.wait();
    stream.reset();
    EXPECT_EQ(gate->calls, 2);
    gate->mayGoOn.count_down();
    EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
    EXPECT_LT(gate->calls, 100);
    loop->run();
    EXPECT_EQ(events, 0);
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
        {calls}, loop, FileURL::directory(realm), [this] { ++events; },
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
