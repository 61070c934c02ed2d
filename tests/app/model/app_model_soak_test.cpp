#include <array>
#include <chrono>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::ModelHouse;

constexpr int operations = 1'000;

/// A user with three realms and a Desktop who does anything at any time, while work and main
/// thread go on by bits. After each step everything that must always hold is looked at.
class Soak {
public:
    explicit Soak(std::uint64_t seed)
        : random_(seed), house_([this](ModelCollaborators& all) {
              BookmarkCalls calls = BookmarkCalls::live();
              calls.startAccessing = [this](const FileURL& url) {
                  ++open_;
                  return startAccessing(url);
              };
              calls.stopAccessing = [this](const FileURL& url) {
                  --open_;
                  stopAccessing(url);
              };
              all.grantStore =
                  std::make_shared<GrantStore>(FileURL(path("app/grants.json")), calls);
          })
    {
        house_.loop->setNow(Date::now());
        house_.directory.folder("Desktop");
        for (const std::string& name : names()) {
            grant(name);
        }
    }

    void run()
    {
        for (int i = 0; i < operations && !testing::Test::HasFailure(); ++i) {
            act();
            goOn();
            check();
        }
        house_.settle();
        EXPECT_FALSE(model().isPatrolling());
        EXPECT_FALSE(model().isLoadingRealmHistory());
        EXPECT_FALSE(model().isLoadingTerritories());
        EXPECT_EQ(open_, model().activeAccess() ? 1 : 0);
        // And once more with everything under way.
        model().patrolAllRealms();
        model().loadTerritories();
        house_.model.reset();
        house_.settle();
        EXPECT_EQ(open_, 0);
    }

private:
    [[nodiscard]] static std::vector<std::string> names()
    {
        return {"Desktop", "one", "two", "three"};
    }
    [[nodiscard]] AppModel& model() { return *house_.model; }
    [[nodiscard]] std::size_t pick(std::size_t count) { return random_() % count; }
    [[nodiscard]] std::string path(const std::string& relative) const
    {
        return house_.directory.path(relative);
    }
    [[nodiscard]] FileURL anyRealm() { return FileURL::directory(path(names()[pick(4)])); }

    void grant(const std::string& name)
    {
        house_.directory.folder(name);
        model().grantRealm(FileURL::directory(path(name)));
    }

    [[nodiscard]] std::optional<Grant> anyGrant()
    {
        const auto& grants = model().grants();
        return grants.empty() ? std::nullopt : std::optional(grants[pick(grants.size())]);
    }

    /// A bit of what waits, or all of it.
    void goOn()
    {
        if (pick(3) == 0) {
            house_.settle();
        }
        for (std::size_t left = pick(4); left > 0; --left) {
            if (house_.pool->count() > 0 && pick(2) == 0) {
                house_.pool->runAt(pick(house_.pool->count()));
            } else {
                house_.loop->run();
            }
        }
    }

    void act()
    {
        constexpr std::size_t kinds = 6;
        switch (pick(kinds)) {
        case 0:
            return goAbout();
        case 1:
            return patrol();
        case 2:
            return trash();
        case 3:
            return tidy();
        case 4:
            return arrange();
        default:
            return editDisk();
        }
    }

    void goAbout()
    {
        switch (pick(6)) {
        case 0:
            model().showTerritories();
            break;
        case 1:
            if (const auto one = anyGrant(); one && pick(4) == 0) {
                model().removeRealm(*one);
            }
            break;
        case 2:
            grant(names()[pick(4)]);
            break;
        case 3:
            if (const auto one = anyGrant()) {
                model().regrantRealm(*one);
            }
            break;
        default:
            model().selectRealm(anyRealm());
        }
    }

    void patrol()
    {
        switch (pick(5)) {
        case 0:
            return model().cancelPatrol();
        case 1:
            model().patrolAllRealms();
            return;
        case 2:
            house_.loop->advance(std::chrono::seconds(1 + pick(200)));
            return;
        case 3:
            return house_.touch(anyRealm().path());
        default:
            model().patrolActiveRealm();
        }
    }

    void trash()
    {
        const std::vector<ReviewFinding>& findings = model().findings();
        switch (pick(4)) {
        case 0:
            return model().setReviewOnly(pick(4) == 0);
        case 1:
            if (!findings.empty()) {
                const ReviewFinding one = findings[pick(findings.size())];
                model().moveFindingToTrash(
                    one, TrashService::currentIdentity(one.url).value_or(FileIdentity()));
            }
            return;
        case 2:
            return model().moveFindingsToTrash(std::vector<ReviewFinding>(findings));
        default:
            return model().undoLastTrash();
        }
    }

    void tidy()
    {
        switch (pick(6)) {
        case 0:
            return model().tidyDesktop();
        case 1:
            return model().undoLastStash();
        case 2:
            if (const auto plan = model().organisePlanForActiveRealm()) {
                model().organise(*plan);
            }
            return;
        case 3:
            return model().undoLastOrganise();
        case 4:
            return model().filePendingRuleMatches();
        default:
            return model().saveOrganiseOverride("Kept", FileKind::image, anyRealm());
        }
    }

    void arrange()
    {
        const auto one = anyGrant();
        switch (pick(4)) {
        case 0:
            return model().addRealmRule(FileKind::image, "Rule", pick(2) == 0, anyRealm());
        case 1:
            return model().saveShield(RealmIdentity(), anyRealm().path());
        case 2:
            return model().resetShield(anyRealm().path());
        default:
            if (one) {
                model().setCadence(std::array{PatrolCadence::off, PatrolCadence::daily,
                                              PatrolCadence::weekly,
                                              PatrolCadence::standGuard}[pick(4)],
                                   *one);
            }
        }
    }

    void editDisk()
    {
        const std::string realm = anyRealm().path();
        std::error_code error;
        switch (pick(4)) {
        case 0:
            house_.directory.file(fs::path(realm).filename().string() + "/"
                                      + std::to_string(pick(6)) + ".dmg",
                                  4'096);
            fs::last_write_time(realm + "/" + std::to_string(pick(6)) + ".dmg",
                                fs::file_time_type::clock::now() - std::chrono::days(900), error);
            return;
        case 1:
            house_.directory.file(fs::path(realm).filename().string() + "/"
                                      + std::to_string(pick(6)) + ".png",
                                  100 * pick(100));
            return;
        case 2:
            // The disk is away for a while, or comes back.
            if (fs::exists(realm + ".away")) {
                if (!fs::exists(realm)) {
                    fs::rename(realm + ".away", realm, error);
                }
            } else if (pick(3) == 0) {
                fs::rename(realm, realm + ".away", error);
            }
            return;
        default:
            fs::remove_all(realm + "/" + std::to_string(pick(6)) + ".dmg", error);
        }
    }

    void check()
    {
        EXPECT_EQ(model().isPatrolling(), model().patrollingRootURL().has_value());
        EXPECT_EQ(model().isPatrolling(), model().patrolAccess() != nullptr);
        EXPECT_TRUE(model().activeRootURL() || !model().activeAccess());
        EXPECT_TRUE(model().activeRootURL() || model().findings().empty());
        EXPECT_TRUE(model().activeRootURL() || !model().latestSnapshot());
        EXPECT_EQ(open_, (model().activeAccess() ? 1 : 0) + (model().patrolAccess() ? 1 : 0));
        EXPECT_TRUE(!model().lastTrashOperation() || !model().lastTrashOperation()->moved.empty());
        EXPECT_TRUE(!model().lastStashOperation() || !model().lastStashOperation()->moved.empty());
        EXPECT_TRUE(!model().lastOrganiseOperation()
                    || !model().lastOrganiseOperation()->moved.empty());
        EXPECT_TRUE(!model().pendingRuleFilingPlan()
                    || !model().pendingRuleFilingPlan()->moves.empty());
        checkSums();
        checkWatchers();
    }

    void checkSums()
    {
        Bytes total = 0;
        if (model().latestSnapshot()) {
            for (const SnapshotEntry& entry : model().latestSnapshot()->entries) {
                total +=
                    entry.relativePath.find('/') == std::string::npos ? entry.allocatedSize : 0;
            }
        }
        EXPECT_EQ(model().latestTotalBytes(), total);
        Bytes net = 0;
        for (const SnapshotDelta& delta : model().deltas()) {
            net += delta.relativePath.find('/') == std::string::npos
                       ? delta.currentBytes - delta.previousBytes
                       : 0;
        }
        EXPECT_EQ(model().netChangeBytes(), net);
    }

    void checkWatchers()
    {
        std::multiset<std::string> guarded;
        for (const Grant& grant : model().grants()) {
            if (model().cadence(grant) == PatrolCadence::standGuard) {
                guarded.insert(grant.path);
            }
        }
        for (const auto& [place, stream] : house_.streams) {
            EXPECT_TRUE(guarded.contains(place)) << place << " is watched and not guarded";
        }
    }

    std::mt19937_64 random_;
    /// Accesses that were started and not stopped.
    int open_ = 0;
    ModelHouse house_;
};

TEST(AppModelSoak, aThousandStepsOfAUserLeaveEverythingTrue)
{
    for (std::uint64_t seed = 1; seed <= 3 && !testing::Test::HasFailure(); ++seed) {
        Soak(seed).run();
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << "seed " << seed;
        }
    }
}

}  // namespace

}  // namespace gruk
