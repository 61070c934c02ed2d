#include "tests/support/lost_moments.h"

#include <filesystem>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "core/patrol/metadata_reader.h"

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

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

/// Whether it had so many moments.
bool play(const LostScene& scene, const Going& going, Walk walk, std::size_t moment)
{
    LostMoments house(going.place, walk);
    const std::string realm = house.midway().desktop().path();
    if (scene.before) {
        scene.before(house);
    }
    house.arm(moment, [&] { going.way.goes(realm); });
    scene.play(house);
    const bool isReached = house.isReached();
    if (isReached && going.way.comesBack) {
        going.way.comesBack(realm);
    }
    return isReached;
}

}  // namespace

LostMoments::LostMoments(RealmPlace place, Walk walk) : midway_(told(std::move(place), walk))
{
    const std::string realm = midway_.desktop().path();
    for (const char* folder : {"/one", "/two"}) {
        fs::create_directory(realm + folder);
        fs::copy_file(realm + "/a.png", realm + folder + "/inside.png");
    }
    // Twice, so that what is new is not a finding any more.
    midway_.house().patrol();
    midway_.house().patrol();
    midway_.house().allowTrash();
    EXPECT_EQ(stored().size(), formerPatrols);
    EXPECT_EQ(stored().back().entries.size(), entryCount);
}

RealmPlace LostMoments::told(RealmPlace place, Walk walk)
{
    place.change = [walk](ModelCollaborators& all, const std::shared_ptr<Moments>& moments) {
        all.runLoop = std::make_shared<ToldRunLoop>(all.runLoop, moments);
        if (walk == Walk::byPath) {
            all.snapshotScanner =
                std::make_shared<SnapshotScanner>([moments](const FileURL& folder) {
                    moments->pass();
                    return MetadataReader::entries(folder);
                });
        }
    };
    return place;
}

std::vector<ScanSnapshot> LostMoments::stored()
{
    return midway_.house().stored(midway_.desktop());
}

void LostMoments::arm(std::size_t moment, std::function<void()> happens)
{
    formerMessage_ = midway_.message();
    midway_.moments().arm(moment, std::move(happens));
}

void LostMoments::settle()
{
    ModelHouse& house = midway_.house();
    do {
        midway_.moments().pass();
    } while (house.pool->runNext() || house.loop->run());
}

void LostMoments::expectAtRest()
{
    EXPECT_FALSE(model().isPatrolling());
    EXPECT_FALSE(model().patrolAccess());
    EXPECT_FALSE(model().patrollingRootURL());
    EXPECT_FALSE(model().patrolProgress());
    const auto& active = model().activeAccess();
    EXPECT_EQ(midway_.openAccesses(), active && active->didStartAccessing() ? 1 : 0);
    for (const auto& file :
         fs::recursive_directory_iterator(midway_.house().directory.path("app"))) {
        EXPECT_NE(file.path().extension(), ".gruk-new") << file.path();
    }
}

void LostMoments::expectPatrolTold(const std::string& complete, const std::string& withoutAccess)
{
    const std::vector<ScanSnapshot> all = stored();
    EXPECT_EQ(model().findings().size(), 2U) << "what is on screen stays";
    if (all.size() == formerPatrols) {
        const std::string begin = "The patrol could not finish: " + midway_.desktop().path() + ": ";
        EXPECT_TRUE(midway_.complaint() == withoutAccess
                    || midway_.complaint() == begin + "No such file or directory"
                    || midway_.complaint() == begin + "Permission denied")
            << midway_.complaint();
        EXPECT_TRUE(midway_.message().empty() || midway_.message() == formerMessage_)
            << midway_.message();
        return;
    }
    EXPECT_EQ(all.size(), formerPatrols + 1);
    EXPECT_EQ(all.back().entries.size() + all.back().issues.size(), entryCount)
        << "the realm as it was; a folder that was closed is told of";
    EXPECT_EQ(midway_.complaint(), "");
    if (all.back().issues.empty()) {
        EXPECT_EQ(midway_.message(), complete);
    }
    if (const auto& plan = model().pendingRuleFilingPlan()) {
        ASSERT_EQ(plan->moves.size(), 1U);
        EXPECT_EQ(plan->moves.front().files,
                  std::vector<FileURL>{midway_.desktop().appending("a.png")});
    }
}

std::function<void(const MakeGoing&)> eachMomentOf(const LostScene& scene,
                                                   const std::vector<Walk>& walks)
{
    return [=](const MakeGoing& makeGoing) {
        constexpr std::size_t leastMoments = 2;
        for (const Walk walk : walks) {
            const std::string name = walk == Walk::byPath ? " by path" : "";
            playMoments(makeGoing().way.name + name, leastMoments,
                        [&](std::size_t moment) { return play(scene, makeGoing(), walk, moment); });
        }
    };
}

}  // namespace gruk::test
