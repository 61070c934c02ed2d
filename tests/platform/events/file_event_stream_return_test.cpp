#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

#include "platform/linux/file_event_stream.h"
#include "tests/platform/events/streamed_tree.h"
#include "tests/support/private_mounts.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::becomesTrue;
using test::threads;

/// A root that is not there, goes, and comes back.
class FileEventStreamReturnTest : public test::FileEventStreamFixture {
protected:
    FileEventStreamReturnTest() { parts.lookAgainAfter = std::chrono::milliseconds(1); }

    /// Whether a file made at the place is heard of, when nothing else is under way.
    bool hearsFileAt(const std::string& place)
    {
        settle();
        loop->run();
        std::ofstream(place) << "x";
        return hears();
    }

    /// Unmounts it. A directory is open while it is taken in, but not for long.
    static bool unmounts(const std::string& place)
    {
        return becomesTrue([&] {
            try {
                test::unmount(place);
                return true;
            } catch (const std::system_error&) {
                return false;
            }
        });
    }
};

}  // namespace

TEST_F(FileEventStreamReturnTest, aRootThatIsMovedAwayAndBackIsWatchedAgain)
{
    disk.folder("realm/a");
    const auto stream = settledStream(2);
    loop->run();
    for (int i = 0; i < 3; ++i) {
        const int before = added;
        fs::rename(realm, disk.path("elsewhere"));
        EXPECT_TRUE(hears()) << "its going is a change";
        fs::rename(disk.path("elsewhere"), realm);
        ASSERT_TRUE(becomesTrue([&] { return added >= before + 2; }));
        EXPECT_TRUE(hears()) << "and so is its coming back";
        EXPECT_TRUE(hearsFileAt(realm + "/a/" + std::to_string(i)));
    }
}

TEST_F(FileEventStreamReturnTest, aRootWhosePlaceFartherUpIsMovedAwayAndBackIsWatchedAgain)
{
    realm = disk.folder("realm/inner");
    const auto stream = startedStream();
    ASSERT_TRUE(becomesTrue([&] { return added == 1; }));
    fs::rename(disk.path("realm"), disk.path("elsewhere"));
    ASSERT_TRUE(becomesTrue([&] {
        loop->run();
        return !lines.empty();
    })) << "it is said that nothing is watched";
    const int before = added;
    fs::rename(disk.path("elsewhere"), disk.path("realm"));
    ASSERT_TRUE(becomesTrue([&] { return added > before; }));
    disk.folder("realm/inner/new");
    EXPECT_TRUE(becomesTrue([&] { return added > before + 1; }));
    EXPECT_TRUE(hears());
}

TEST_F(FileEventStreamReturnTest, anotherFolderThatTakesThePlaceOfTheRootIsWatched)
{
    const auto stream = settledStream(1);
    loop->run();
    const int before = added;
    fs::rename(realm, disk.path("elsewhere"));
    disk.folder("realm");
    ASSERT_TRUE(becomesTrue([&] { return added > before; }));
    EXPECT_TRUE(hears());
    EXPECT_TRUE(hearsFileAt(realm + "/x"));
}

TEST_F(FileEventStreamReturnTest, aRootThatIsNotThereYetIsSaidOnceAndWatchedWhenItComes)
{
    fs::remove_all(realm);
    const auto stream = startedStream();
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(lines.empty()) << "the log is told on the main thread's next turn";
    ASSERT_TRUE(loop->waitForPost());
    loop->run();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines.front().find(realm + " is not watched"), std::string::npos);
    disk.file("realm");
    ASSERT_TRUE(becomesTrue([&] {
        loop->run();
        return lines.size() == 2;
    })) << "a file is another reason";
    EXPECT_EQ(events, 0);
    fs::remove(realm);
    disk.folder("realm/a");
    EXPECT_TRUE(hears());
    ASSERT_TRUE(becomesTrue([&] { return added == 2; }));
    EXPECT_TRUE(hearsFileAt(realm + "/a/x"));
}

TEST_F(FileEventStreamReturnTest, aStreamThatWaitsForItsRootEndsAtOnce)
{
    fs::remove_all(realm);
    parts.lookAgainAfter = std::chrono::hours(1);
    auto stream = startedStream();
    EXPECT_GT(threads(), threadsBefore);
    stream.reset();
    EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
}

TEST_F(FileEventStreamReturnTest, aSystemWithoutWatchesIsAskedAgain)
{
    disk.folder("realm/a");
    const auto tried = std::make_shared<std::atomic<int>>(0);
    WatchCalls calls = WatchCalls::live();
    calls.add = [tried, live = calls.add](int queue, int directory) {
        return ++*tried < 3 ? -ENOSPC : live(queue, directory);
    };
    FileEventStreamParts few = parts;
    few.calls = std::move(calls);
    const auto stream = makeFileEventStreamWith(
        std::move(few), loop, FileURL::directory(realm), [this] { ++events; },
        [this](const std::string& line) { lines.push_back(line); });
    EXPECT_TRUE(hears()) << "from then on it is watched";
    EXPECT_EQ(lines.size(), 1U);
}

TEST_F(FileEventStreamReturnTest, aDiskThatIsTakenOutAndPutInIsWatchedAtOnce)
{
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        parts.lookAgainAfter = std::chrono::hours(1);
        test::TemporaryDirectory other;
        test::mountMemory(other.path());
        other.folder("a");
        test::mountAgain(other.path(), realm);
        const auto stream = settledStream(2);
        loop->run();
        for (const bool isPulled : {false, true}) {
            int before = added;
            if (isPulled) {
                test::detach(realm);
            } else if (!unmounts(realm)) {
                return "it cannot be unmounted";
            }
            if (!hears() || !becomesTrue([&] { return added > before; })) {
                return "that it went was not told, or nobody looks at what is there now";
            }
            before = added;
            test::mountAgain(other.path(), realm);
            if (!becomesTrue([&] { return added >= before + 2; }) || !hears()) {
                return "that it came back was not seen";
            }
            if (!hearsFileAt(other.path("a/" + std::to_string(before)))) {
                return "it is not watched as before";
            }
        }
        // Its last mount: the volume itself ends.
        if (!unmounts(realm) || !unmounts(other.path())) {
            return "it is held open";
        }
        return hears() ? "" : "the end of the volume was not told";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(FileEventStreamReturnTest, whatAnUnmountUncoversIsWatchedAtOnce)
{
    disk.folder("realm/a/inside");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        parts.lookAgainAfter = std::chrono::hours(1);
        test::mountMemory(realm + "/a");
        const auto stream = settledStream(1);
        loop->run();
        const int before = added;
        if (!unmounts(realm + "/a")) {
            return "it cannot be unmounted";
        }
        if (!becomesTrue([&] { return added == before + 2; }) || !hears()) {
            return "what came to light was not taken in";
        }
        return hearsFileAt(realm + "/a/inside/x") ? "" : "it is not watched";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

}  // namespace gruk
