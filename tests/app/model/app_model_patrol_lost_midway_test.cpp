#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "core/patrol/metadata_reader.h"
#include "tests/support/lost_midway.h"
#include "tests/support/moments.h"
#include "tests/support/private_mounts.h"
#include "tests/support/pulled_disk.h"

/// The realm goes away while it is patrolled or looked into: at one moment after the other. No
/// snapshot tells of anything but the realm as it was, and nothing is left open.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::LostMidway;
using test::Moments;
using test::RealmPlace;

constexpr std::size_t formerPatrols = 4;
/// Seven files and two folders.
constexpr std::size_t entryCount = 9;

/// The main thread, each post to it being a moment: those of a walk come in the middle of it.
class ToldRunLoop final : public RunLoop {
public:
    ToldRunLoop(std::shared_ptr<RunLoop> loop, std::shared_ptr<Moments> moments)
        : loop_(std::move(loop)), moments_(std::move(moments))
    {
    }

    void post(std::function<void()> function) override
    {
        moments_->pass();
        loop_->post(std::move(function));
    }
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                               std::function<void()> function) override
    {
        return loop_->after(delay, std::move(function));
    }
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                               std::function<void()> function) override
    {
        return loop_->every(interval, std::move(function));
    }
    [[nodiscard]] Date now() const override { return loop_->now(); }

private:
    std::shared_ptr<RunLoop> loop_;
    std::shared_ptr<Moments> moments_;
};

enum class Walk { live, byPath };

/// A patrolled realm with folders in it, which goes at some moment.
class House {
public:
    House(RealmPlace place, Walk walk) : midway_(told(std::move(place), walk))
    {
        const std::string realm = midway().lost().desktop.path();
        for (const char* folder : {"/one", "/two"}) {
            fs::create_directory(realm + folder);
            fs::copy_file(realm + "/a.png", realm + folder + "/inside.png");
        }
        patrol();
        EXPECT_EQ(stored().size(), formerPatrols);
        EXPECT_EQ(stored().back().entries.size(), entryCount);
        findingsBefore_ = model().findings().size();
    }

    [[nodiscard]] LostMidway& midway() { return midway_; }
    [[nodiscard]] AppModel& model() { return midway_.model(); }
    [[nodiscard]] Moments& moments() { return *moments_; }
    void patrol() { midway_.lost().house.patrol(); }

    [[nodiscard]] std::vector<ScanSnapshot> stored()
    {
        return midway_.lost().house.stored(midway_.lost().desktop);
    }

    /// Runs work and main thread to the end, piece by piece, each of them a moment.
    void settle()
    {
        test::ModelHouse& house = midway_.lost().house;
        do {
            moments_->pass();
        } while (house.pool->runNext() || house.loop->run());
    }

    /// What holds after a patrol, whatever became of it.
    void expectAtRest()
    {
        EXPECT_FALSE(model().isPatrolling());
        EXPECT_FALSE(model().patrolAccess());
        EXPECT_FALSE(model().patrollingRootURL());
        EXPECT_FALSE(model().patrolProgress());
        EXPECT_EQ(midway_.openAccesses(), 1) << "that of the realm that is selected";
        for (const auto& file :
             fs::recursive_directory_iterator(midway_.lost().house.directory.path("app"))) {
            EXPECT_NE(file.path().extension(), ".gruk-new") << file.path();
        }
    }

    /// That a patrol is told as it came out.
    void expectPatrolTold(const std::string& complete)
    {
        const std::vector<ScanSnapshot> all = stored();
        if (all.size() == formerPatrols) {
            EXPECT_EQ(midway_.complaint(),
                      "The patrol could not finish: " + midway_.lost().desktop.path()
                          + ": No such file or directory");
            EXPECT_EQ(midway_.message(), "");
            EXPECT_EQ(model().findings().size(), findingsBefore_) << "what is on screen stays";
            return;
        }
        EXPECT_EQ(all.size(), formerPatrols + 1);
        EXPECT_EQ(all.back().entries.size(), entryCount) << "the realm as it was";
        EXPECT_TRUE(all.back().issues.empty());
        EXPECT_EQ(midway_.complaint(), "");
        EXPECT_EQ(midway_.message(), complete);
    }

private:
    RealmPlace told(RealmPlace place, Walk walk)
    {
        place.change = [this, walk](ModelCollaborators& all) {
            all.runLoop = std::make_shared<ToldRunLoop>(all.runLoop, moments_);
            if (walk == Walk::byPath) {
                all.snapshotScanner =
                    std::make_shared<SnapshotScanner>([moments = moments_](const FileURL& folder) {
                        moments->pass();
                        return MetadataReader::entries(folder);
                    });
            }
        };
        return place;
    }

    std::shared_ptr<Moments> moments_ = std::make_shared<Moments>();
    LostMidway midway_;
    std::size_t findingsBefore_ = 0;
};

/// One way in which a realm goes.
struct Going {
    std::string name;
    RealmPlace place;
    std::function<void(LostMidway&)> happens;
};

std::vector<Going> goings()
{
    return {
        {"renamed",
         {},
         [](LostMidway& midway) {
             fs::rename(midway.lost().path("Desktop"), midway.lost().path("renamed"));
         }},
        {"removed", {}, [](LostMidway& midway) { fs::remove_all(midway.lost().path("Desktop")); }},
        {"replaced",
         {},
         [](LostMidway& midway) {
             fs::rename(midway.lost().path("Desktop"), midway.lost().path("renamed"));
             midway.lost().house.directory.file("Desktop/a.png", 100);
         }},
    };
}

Going pulledOut()
{
    const auto disk = std::make_shared<test::PulledDisk>();
    return {"pulled out",
            {"disk/Desktop", [disk](const std::string& house) { disk->prepare(house); },
             [disk] { disk->pullOut(); }},
            [disk](LostMidway&) { disk->pullOut(); }};
}

/// Plays `scene` with the realm going at one moment after the other, until it has no more moments.
/// A scene runs its operation and looks at what became of it.
void playMoments(const std::function<Going()>& makeGoing, Walk walk,
                 const std::function<void(House&)>& scene)
{
    bool isReached = true;
    std::size_t moment = 0;
    for (; isReached && !testing::Test::HasFailure(); ++moment) {
        const Going going = makeGoing();
        SCOPED_TRACE(going.name + ", moment " + std::to_string(moment));
        House house(going.place, walk);
        house.moments().arm(moment, [&] { going.happens(house.midway()); });
        scene(house);
        isReached = house.moments().isReached();
    }
    EXPECT_GT(moment, 4U);
}

void playEachGoing(const std::function<void(House&)>& scene)
{
    for (const Walk walk : {Walk::live, Walk::byPath}) {
        for (const Going& going : goings()) {
            playMoments([&] { return going; }, walk, scene);
        }
    }
}

/// The same with a disk that is pulled out; false where nothing may be mounted.
bool playPulledDisk(const std::function<void(House&)>& scene)
{
    const auto run = test::runWithPrivateMounts([&]() -> std::string {
        for (const Walk walk : {Walk::live, Walk::byPath}) {
            playMoments(pulledOut, walk, scene);
        }
        return testing::Test::HasFailure() ? "see above" : "";
    });
    EXPECT_EQ(run.complaint, "");
    return run.isPermitted;
}

void patrolScene(House& house)
{
    house.model().patrolActiveRealm();
    house.settle();
    house.expectAtRest();
    house.expectPatrolTold("Patrol of Desktop complete. No size changes since the last map.");
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesDuringAPatrolIsNeverStoredAsWhatIsLeft)
{
    playEachGoing(patrolScene);
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutDuringAPatrolIsNeverStoredAsItsMountPoint)
{
    if (!playPulledDisk(patrolScene)) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

void automaticPatrolScene(House& house)
{
    house.midway().model().automaticPatrol(house.model().grants().front());
    house.settle();
    house.expectAtRest();
    const std::string finished =
        "Automatic patrol of Desktop finished \xE2\x80\x94 2 findings waiting.";
    // Unlike a patrol that was asked for, it leaves what was told before.
    if (house.stored().size() == formerPatrols) {
        EXPECT_EQ(house.midway().message(),
                  "Patrol of Desktop complete. Gruk found 4 changed items.");
        EXPECT_TRUE(house.midway().complaint().starts_with("The patrol could not finish: "));
    } else {
        house.expectPatrolTold(finished);
    }
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesDuringAnAutomaticPatrolLeavesTheFailureText)
{
    playEachGoing(automaticPatrolScene);
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutDuringAnAutomaticPatrolLeavesTheFailureText)
{
    if (!playPulledDisk(automaticPatrolScene)) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

void browseScene(House& house)
{
    const std::string message = house.midway().message();
    const FileURL realm = house.midway().lost().desktop;
    house.model().session().open(realm.appending("one", FileURL::Names::directory));
    house.settle();
    house.model().session().goBack();
    house.settle();
    for (const auto& node : house.model().session().displayedNodes()) {
        EXPECT_FALSE(node->isComputing()) << node->entry().name();
        if (node->entry().isDirectory && node->aggregate()) {
            EXPECT_EQ(node->aggregate()->allocated, 4'096) << "a size is the folder's or none";
        }
    }
    EXPECT_EQ(house.midway().message(), message);
    EXPECT_EQ(house.midway().complaint(), "");
    EXPECT_EQ(house.midway().openAccesses(), 1);
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesWhileItIsLookedIntoShowsNoWrongSize)
{
    for (const Going& going : goings()) {
        playMoments([&] { return going; }, Walk::live, browseScene);
    }
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutWhileItIsLookedIntoShowsNoWrongSize)
{
    if (!playPulledDisk(browseScene)) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesDuringAPatrolOfAllIsCountedAndTheOthersArePatrolled)
{
    test::ModelHouse house;
    const FileURL first = house.makePatrolledRealm("first");
    const FileURL second = house.makePatrolledRealm("second");
    const FileURL third = house.makePatrolledRealm("third");
    house.model->patrolAllRealms();
    ASSERT_TRUE(house.model->isPatrolling());
    fs::remove_all(first.path());
    fs::remove_all(second.path());
    house.settle();
    EXPECT_EQ(
        house.model->lastActionMessage(),
        "Patrolled 2 realm(s). 1 disconnected realm(s) skipped \xE2\x80\x94 regrant them from "
        "the sidebar.");
    EXPECT_EQ(house.stored(first).size(), 1U);
    EXPECT_EQ(house.stored(second).size(), 1U);
    EXPECT_EQ(house.stored(third).size(), 2U);
    EXPECT_FALSE(house.model->patrolAccess());
}

}  // namespace

}  // namespace gruk
