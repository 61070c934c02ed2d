#include <array>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"
#include "tests/promises/move_scenarios.h"
#include "tests/support/move_faults.h"
#include "tests/support/moves_house.h"
#include "tests/support/private_mounts.h"
#include "tests/support/sanitized.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::MoveFaults;
using test::MoveScenario;
using test::MovesHouse;
using test::ScenarioOutcome;

constexpr std::array errors = {ENOSPC, EDQUOT,       EIO,    EACCES, EROFS,
                               EXDEV,  ENAMETOOLONG, EMFILE, EINTR};

/// Plays the scenario with a fault; complains of everything that is not as promised. Returns
/// whether the fault was reached at all.
bool play(const MoveScenario& scenario, MoveFaults faults)
{
    const MovesHouse house;
    const auto operation = scenario.prepare(house);
    house.ageFolders();
    const std::multiset<std::string> before = house.census();
    const std::multiset<std::string> outside = MovesHouse::censusWithPaths(house.outside().path());
    const MoveCalls calls = faults.calls(test::withoutWaiting());
    const ScenarioOutcome outcome = operation(calls);
    EXPECT_EQ(house.census(), before);
    EXPECT_EQ(MovesHouse::censusWithPaths(house.outside().path()), outside);
    EXPECT_TRUE(outcome.hasWords);
    EXPECT_GT(outcome.moved + outcome.failures.size(), 0U);
    return faults.isHit();
}

/// How many calls the scenario makes when nothing fails.
std::size_t callsOf(const MoveScenario& scenario)
{
    MoveFaults faults;
    play(scenario, faults);
    return faults.names().size();
}

TEST(Promises, aFaultAtAnySystemCallLosesNothingAndIsTold)
{
    const std::size_t stride = 10 / test::unlessSanitized(10);
    std::size_t reached = 0;
    for (const MoveScenario& scenario : test::moveScenarios()) {
        const std::size_t calls = callsOf(scenario);
        ASSERT_GT(calls, 10U);
        for (const int error : errors) {
            for (const auto span : {MoveFaults::Span::once, MoveFaults::Span::fromThenOn}) {
                // Every call; under a sanitizer one in ten.
                for (std::size_t number = 0; number < calls; number += stride) {
                    MoveFaults faults;
                    faults.failAt = number;
                    faults.error = error;
                    faults.span = span;
                    faults.removingFails = error == EIO || error == EROFS;
                    reached += play(scenario, faults) ? 1 : 0;
                    if (testing::Test::HasFailure()) {
                        FAIL() << scenario.name << ", error " << error << " at call " << number
                               << " ("
                               << (number < faults.names().size() ? faults.names()[number] : "none")
                               << ")";
                    }
                }
            }
        }
    }
    EXPECT_GE(reached, test::unlessSanitized(5'000));
    test::reportPromise("faults", std::to_string(reached) + " faults at system calls of "
                                      + std::to_string(test::moveScenarios().size())
                                      + " operations; each file in one place after each, and every"
                                        " failure told in words");
}

/// Takes the info files away that have no item, as programs do that tidy a Trash up.
void tidyUp(const std::string& trash)
{
    std::error_code error;
    for (const auto& info : fs::directory_iterator(trash + "/info", error)) {
        const std::string name = info.path().stem().string();
        if (!fs::exists(fs::symlink_status(trash + "/files/" + name))) {
            fs::remove(info.path());
        }
    }
}

TEST(Promises, everyItemInTheTrashHasAnInfoFileWhoeverTidiesItUpMeanwhile)
{
    std::size_t runs = 0;
    for (const MoveScenario& scenario : test::moveScenarios()) {
        const std::size_t calls = callsOf(scenario);
        for (std::size_t number = 0; number < calls; ++number) {
            const MovesHouse house;
            const auto operation = scenario.prepare(house);
            const std::multiset<std::string> before = house.census();
            MoveFaults faults;
            faults.before = [&](std::size_t call, std::string_view) {
                if (call == number) {
                    tidyUp(house.home().path(".local/share/Trash"));
                }
            };
            (void)operation(faults.calls(test::withoutWaiting()));
            ASSERT_EQ(house.census(), before) << scenario.name << ", call " << number;
            ++runs;
        }
    }
    test::reportPromise("info files", std::to_string(runs)
                                          + " runs, in each of which another program cleared the"
                                            " Trash of lone info files before another system call;"
                                            " every item in it has one");
}

/// What may never move: the top of a volume, what is in it for a Hoard or an organise, and a folder
/// that a volume is mounted in. Each returns how many items it moved.
struct VolumeAction {
    const char* name;
    std::size_t (*run)(const FileURL& realm, const MoveCalls& calls);
};

std::size_t trash(const FileURL& item, const FileURL& realm, const MoveCalls& calls)
{
    const FileIdentity identity = TrashService::currentIdentity(item).value();
    return TrashService(calls).moveToTrash({{item, 1, identity}}, realm).moved.size();
}

constexpr std::array volumeActions = {
    VolumeAction{"trash of a top",
                 [](const FileURL& realm, const MoveCalls& calls) {
                     return trash(realm.appending("outer/disk"), realm, calls);
                 }},
    VolumeAction{"trash of a folder around",
                 [](const FileURL& realm, const MoveCalls& calls) {
                     return trash(realm.appending("outer"), realm, calls);
                 }},
    VolumeAction{"stash",
                 [](const FileURL& realm, const MoveCalls& calls) {
                     const FileURL top = realm.appending("outer/disk");
                     return StashService(calls).stashDesktop(top, realm).moved.size();
                 }},
    VolumeAction{"organise", [](const FileURL& realm, const MoveCalls& calls) {
                     const FileURL top = realm.appending("outer/disk");
                     const OrganisePlan plan{
                         top, {{FileKind::image, "Images", {top.appending("a.png")}, 1}}};
                     return OrganiseService(calls).applyPlan(plan, realm).moved.size();
                 }}};

/// Plays the action with the fault; what is wrong, or nothing. `reached` counts faults.
std::string playOnVolume(const VolumeAction& action, MoveFaults& faults, std::size_t& reached)
{
    const MovesHouse house;
    const std::string top = house.home().folder("realm/outer/disk");
    test::mountMemory(top);
    house.home().fileWith("realm/outer/disk/a.png", "a picture");
    const auto before = MovesHouse::censusWithPaths(house.realm().path());
    const std::size_t moved = action.run(house.realm(), faults.calls(test::withoutWaiting()));
    const bool isSame = MovesHouse::censusWithPaths(house.realm().path()) == before;
    test::unmount(top);
    reached += faults.isHit() ? 1 : 0;
    return moved == 0 && isSame ? "" : std::string(action.name) + " moved something";
}

std::string tryEveryFaultOnVolumes()
{
    std::size_t reached = 0;
    for (const VolumeAction& action : volumeActions) {
        MoveFaults none;
        std::string complaint = playOnVolume(action, none, reached);
        for (const int error : errors) {
            for (const auto span : {MoveFaults::Span::once, MoveFaults::Span::fromThenOn}) {
                for (std::size_t at = 0; at < none.names().size() && complaint.empty(); ++at) {
                    MoveFaults faults;
                    faults.failAt = at;
                    faults.error = error;
                    faults.span = span;
                    complaint = playOnVolume(action, faults, reached);
                    complaint += complaint.empty() ? ""
                                                   : ", error " + std::to_string(error) + " at "
                                                         + none.names()[at];
                }
            }
        }
        if (!complaint.empty()) {
            return complaint;
        }
    }
    test::reportPromise("faults on volumes", std::to_string(reached)
                                                 + " faults while the top of a volume, or a folder"
                                                   " around one, was to move; none did");
    return reached > 500 ? "" : "only " + std::to_string(reached) + " faults";
}

TEST(Promises, noFaultLetsTheTopOfAVolumeMoveOrAFolderAroundOne)
{
    const test::MountedRun run = test::runWithPrivateMounts(tryEveryFaultOnVolumes);
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

}  // namespace

}  // namespace gruk
