#include "core/automation/realm_watcher.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/manual_run_loop.h"

namespace gruk {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A stream that the test speaks through, and a factory that counts.
class RealmWatcherTest : public testing::Test {
protected:
    class Stream final : public FileEventStream {
    public:
        explicit Stream(int& alive) : alive_(alive) { ++alive_; }
        ~Stream() override { --alive_; }

    private:
        int& alive_;
    };

    FileEventStreamFactory factory()
    {
        return [this](const FileURL& directory,
                      std::function<void()> onEvent) -> std::unique_ptr<FileEventStream> {
            watched.push_back(directory);
            if (refuses) {
                return nullptr;
            }
            events.push_back(std::move(onEvent));
            return std::make_unique<Stream>(streamsAlive);
        };
    }

    void event() { events.back()(); }

    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::vector<FileURL> watched;
    std::vector<std::function<void()>> events;
    int streamsAlive = 0;
    bool refuses = false;
    int settled = 0;
    std::unique_ptr<RealmWatcher> watcher = std::make_unique<RealmWatcher>(
        "/realm", 90, [this] { ++settled; }, factory(), loop);
};

}  // namespace

TEST_F(RealmWatcherTest, aNewWatcherIsStopped)
{
    EXPECT_FALSE(watcher->isRunning());
    EXPECT_TRUE(watched.empty());
}

TEST_F(RealmWatcherTest, startTwiceCreatesOneStream)
{
    watcher->start();
    watcher->start();
    EXPECT_TRUE(watcher->isRunning());
    EXPECT_EQ(watched, std::vector<FileURL>{FileURL::directory("/realm")});
}

TEST_F(RealmWatcherTest, aStreamThatCannotBeLeavesTheWatcherStoppedAndSilent)
{
    refuses = true;
    watcher->start();
    EXPECT_FALSE(watcher->isRunning());
    refuses = false;
    watcher->start();
    EXPECT_TRUE(watcher->isRunning());
}

TEST_F(RealmWatcherTest, eventsAtZeroAndAtSixtySecondsGiveOneFireAt150)
{
    watcher->start();
    event();
    loop->advance(seconds(60));
    event();
    loop->advance(milliseconds(89'999));
    EXPECT_EQ(settled, 0);
    loop->advance(milliseconds(1));
    EXPECT_EQ(settled, 1);
    loop->advance(seconds(10'000));
    EXPECT_EQ(settled, 1);
}

TEST_F(RealmWatcherTest, withoutAnEventNothingSettles)
{
    watcher->start();
    loop->advance(seconds(10'000));
    EXPECT_EQ(settled, 0);
}

TEST_F(RealmWatcherTest, aRealmThatNeverStopsChangingNeverSettles)
{
    watcher->start();
    for (int i = 0; i < 100; ++i) {
        event();
        loop->advance(seconds(89));
    }
    EXPECT_EQ(settled, 0);
}

TEST_F(RealmWatcherTest, afterAFireANewEventStartsANewQuietPeriodAndLeadsToANewFire)
{
    watcher->start();
    event();
    loop->advance(seconds(90));
    EXPECT_EQ(settled, 1);
    loop->advance(seconds(30));
    event();
    loop->advance(milliseconds(89'999));
    EXPECT_EQ(settled, 1);
    loop->advance(milliseconds(1));
    EXPECT_EQ(settled, 2);
}

TEST_F(RealmWatcherTest, stopDuringAPendingQuietPeriodMeansOnSettledIsNeverCalled)
{
    watcher->start();
    event();
    watcher->stop();
    EXPECT_FALSE(watcher->isRunning());
    EXPECT_EQ(streamsAlive, 0);
    watcher->stop();
    loop->advance(seconds(10'000));
    EXPECT_EQ(settled, 0);
}

TEST_F(RealmWatcherTest, droppingARunningWatcherStopsIt)
{
    watcher->start();
    event();
    watcher.reset();
    EXPECT_EQ(streamsAlive, 0);
    event();  // What was under way.
    loop->advance(seconds(10'000));
    EXPECT_EQ(settled, 0);
}

TEST_F(RealmWatcherTest, anEventOfAFormerRunDoesNothing)
{
    watcher->start();
    watcher->stop();
    event();
    watcher->start();
    events.front()();
    loop->advance(seconds(10'000));
    EXPECT_EQ(settled, 0);
    event();
    loop->advance(seconds(90));
    EXPECT_EQ(settled, 1);
}

TEST_F(RealmWatcherTest, onSettledMayDropOrRestartTheWatcher)
{
    watcher = std::make_unique<RealmWatcher>(
        "/realm", 90, [this] { watcher.reset(); }, factory(), loop);
    watcher->start();
    event();
    loop->advance(seconds(90));
    EXPECT_EQ(watcher, nullptr);
    EXPECT_EQ(streamsAlive, 0);
    watcher = std::make_unique<RealmWatcher>(
        "/realm", 90,
        [this] {
            ++settled;
            watcher->stop();
            watcher->start();
        },
        factory(), loop);
    watcher->start();
    event();
    loop->advance(seconds(90));
    EXPECT_EQ(settled, 1);
    EXPECT_TRUE(watcher->isRunning());
}

TEST_F(RealmWatcherTest, aClockThatIsSetBackPutsTheFireOffAndDoesNotLoseIt)
{
    watcher->start();
    event();
    loop->setNow(Date{loop->now().secondsSince1970 - 30});
    loop->advance(seconds(90));
    EXPECT_EQ(settled, 0);
    loop->advance(seconds(30));
    EXPECT_EQ(settled, 1);
}

TEST_F(RealmWatcherTest, aQuietPeriodOfPartsOfAMillisecondDoesNotFireEarly)
{
    watcher = std::make_unique<RealmWatcher>(
        "/realm", 0.0105, [this] { ++settled; }, factory(), loop);
    watcher->start();
    event();
    loop->advance(milliseconds(10));
    EXPECT_EQ(settled, 0);
    loop->advance(milliseconds(2));
    EXPECT_EQ(settled, 1);
}

}  // namespace gruk
