#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "platform/linux/file_event_stream.h"
#include "tests/platform/events/streamed_tree.h"
#include "tests/platform/events/watched_tree.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using test::becomesTrue;
using test::ModelHouse;

/// The system's own events, read when the test says so.
class PolledStream final : public FileEventStream {
public:
    PolledStream(std::set<PolledStream*>& all, const FileURL& place, UnheardItems unheard,
                 std::function<void()> onEvent)
        : all_(all), tree_(place, WatchCalls::live(), std::move(unheard)),
          onEvent_(std::move(onEvent))
    {
        all_.insert(this);
    }
    ~PolledStream() override { all_.erase(this); }
    PolledStream(const PolledStream&) = delete;
    PolledStream& operator=(const PolledStream&) = delete;

    void poll()
    {
        if (tree_.settle()) {
            onEvent_();
        }
    }

private:
    std::set<PolledStream*>& all_;
    test::WatchedTree tree_;
    std::function<void()> onEvent_;
};

/// A guarded realm that holds everything that the program writes.
class AppModelGuardedHome : public testing::Test {
protected:
    FileURL grantHome()
    {
        house.directory.file("Documents/letter.txt", 8'192);
        const FileURL home = house.directory.url();
        house.model->grantRealm(home);
        house.settle();
        house.model->setCadence(PatrolCadence::standGuard, house.grantOf(home));
        return home;
    }

    void passQuietPeriod()
    {
        for (PolledStream* stream : streams) {
            stream->poll();
        }
        house.loop->advance(91s);
        house.settle();
    }

    [[nodiscard]] UUID latestOf(const FileURL& realm) { return house.stored(realm).back().id; }

    std::set<PolledStream*> streams;
    ModelHouse house{[this](ModelCollaborators& all) {
        all.eventStreams = [this, own = all.ownFolders.value()](const FileURL& place,
                                                                std::function<void()> onEvent) {
            return std::make_unique<PolledStream>(streams, place, UnheardItems{own, {}},
                                                  std::move(onEvent));
        };
    }};
};

/// The inodes of the folders that this process watches, as the system lists them.
std::set<ino_t> watchedInodes()
{
    std::set<ino_t> inodes;
    for (const auto& entry : fs::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream lines(entry.path());
        for (std::string line; std::getline(lines, line);) {
            const std::size_t at = line.find(" ino:");
            if (line.starts_with("inotify ") && at != std::string::npos) {
                inodes.insert(std::stoull(line.substr(at + 5), nullptr, 16));
            }
        }
    }
    return inodes;
}

ino_t inodeOf(const std::string& path)
{
    struct stat facts {};
    EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
    return facts.st_ino;
}

TEST_F(AppModelGuardedHome, oneChangeIsOnePatrolHoweverLongItIsQuietAfterwards)
{
    const FileURL home = grantHome();
    house.patrol();
    // What was made just before the guard began may count as a change.
    passQuietPeriod();
    const UUID before = latestOf(home);
    house.directory.file("Documents/new.txt", 10);
    passQuietPeriod();
    const UUID after = latestOf(home);
    EXPECT_NE(after, before);
    const std::size_t stored = house.stored(home).size();
    for (int i = 0; i < 10; ++i) {
        passQuietPeriod();
    }
    EXPECT_EQ(latestOf(home), after) << "its own writing has started another one";
    EXPECT_EQ(house.stored(home).size(), stored);
    house.directory.file("Documents/newer.txt", 10);
    passQuietPeriod();
    EXPECT_NE(latestOf(home), after) << "it still stands guard";
}

TEST_F(AppModelGuardedHome, settingsAndShieldsThatAreSavedStartNoPatrol)
{
    const FileURL home = grantHome();
    house.patrol();
    passQuietPeriod();
    const UUID before = latestOf(home);
    house.model->setReviewOnly(false);
    house.model->saveShield(house.model->activeRealmIdentity(), home.path());
    house.model->addRealmRule(FileKind::pdf, "PDFs", true, home);
    passQuietPeriod();
    EXPECT_EQ(latestOf(home), before);
}

TEST(AppModelLiveGuard, theProgramsOwnFoldersAreNotWatched)
{
    ModelHouse house([](ModelCollaborators& all) { all.eventStreams = {}; });
    const FileURL home = house.directory.url();
    house.model->grantRealm(home);
    house.settle();
    house.model->setCadence(PatrolCadence::standGuard, house.grantOf(home));
    const std::string beside = house.directory.folder("made when the guard stood");
    ASSERT_TRUE(becomesTrue([&] { return watchedInodes().contains(inodeOf(beside)); }));
    EXPECT_FALSE(watchedInodes().contains(inodeOf(house.directory.path("app"))));
}

TEST(AppModelLiveGuard, theProgramsOwnFoldersAreThoseThatItReallyUses)
{
    ModelHouse house([](ModelCollaborators& all) {
        all.eventStreams = {};
        all.ownFolders = {};
        all.snapshotStore = {};
        all.grantStore = {};
        all.preferences = {};
    });
    const FileURL home = house.directory.url();
    house.model->grantRealm(home);
    house.settle();
    house.model->setCadence(PatrolCadence::standGuard, house.grantOf(home));
    house.patrol();
    const std::string beside = house.directory.folder("made when the guard stood");
    ASSERT_TRUE(becomesTrue([&] { return watchedInodes().contains(inodeOf(beside)); }));
    for (const char* own : {"data/Gruk", "config/Gruk"}) {
        EXPECT_FALSE(watchedInodes().contains(inodeOf(house.directory.path(own)))) << own;
    }
    EXPECT_TRUE(watchedInodes().contains(inodeOf(house.directory.path("config"))));
}

TEST(AppModelLiveGuard, aGuardedFolderThatIsMovedAwayAndBackIsPatrolledAndGuardedAgain)
{
    int events = 0;
    ModelHouse house([&](ModelCollaborators& all) {
        all.eventStreams = [&events, loop = all.runLoop](const FileURL& place,
                                                         std::function<void()> onEvent) {
            FileEventStreamParts parts;
            parts.lookAgainAfter = 1ms;
            return makeFileEventStreamWith(parts, loop, place,
                                           [&events, onEvent = std::move(onEvent)] {
                                               ++events;
                                               onEvent();
                                           },
                                           {});
        };
    });
    const auto hears = [&] {
        const int before = events;
        return becomesTrue([&] {
            house.loop->run();
            return events > before;
        });
    };
    const FileURL realm = house.makeRealm("realm");
    house.settle();
    house.model->setCadence(PatrolCadence::standGuard, house.grantOf(realm));
    const std::string away = house.directory.path("away");
    fs::rename(realm.path(), away);
    ASSERT_TRUE(hears());
    house.loop->advance(91s);
    house.settle();
    EXPECT_TRUE(house.stored(realm).empty()) << "it is not there";
    EXPECT_FALSE(house.model->errorMessage());
    fs::rename(away, realm.path());
    ASSERT_TRUE(hears());
    house.loop->advance(91s);
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 1U);
    house.directory.file("realm/new.txt", 10);
    ASSERT_TRUE(hears());
    house.loop->advance(91s);
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 2U);
}

}  // namespace

}  // namespace gruk
