// A whole home as a realm: Gruk's memory and settings, the Trash and everything else that a home
// has lie in it. It is patrolled, guarded, tidied and put back, on real files, watches and threads,
// and what Gruk then remembers and shows is what its user would swear to.

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include <QTest>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "app/model/setting_keys.h"
#include "core/patrol/snapshot_store.h"
#include "tests/support/disk_count.h"
#include "tests/support/made_home.h"
#include "tests/support/running_program.h"
#include "tests/support/window_user.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using testing::IsSupersetOf;
using testing::UnorderedElementsAreArray;

constexpr const char* memory = ".local/share/Gruk";
constexpr const char* trash = ".local/share/Trash";
constexpr std::size_t itemsOfAHome = 20'000;
constexpr int quietPeriods = 10;

/// What is worth a look in the made home, by its path.
std::set<std::string> whatIsWorthALook()
{
    std::set<std::string> paths = {"Downloads/report (1).pdf", "Downloads/setup.dmg",
                                   "Downloads/printer.pkg",    ".gradle/caches",
                                   ".cache/thumbnails",        ".config/mail/Cache"};
    for (int project = 0; project < 6; ++project) {
        paths.insert("src/project-" + std::to_string(project) + "/node_modules");
    }
    return paths;
}

/// Somebody whose home is guarded. A second realm beside it tells the time: it is patrolled
/// whenever a file in it changed and a quiet period passed, and each of its patrols writes to the
/// memory, which lies in the home.
class GuardedHome {
public:
    GuardedHome()
    {
        test::makeHome(program_.directory, "home");
        program_.directory.folder("clock");
        UserDefaults().setBoolean(SettingKeys::hasSeenWalkthrough, true);
        start();
    }

    void start()
    {
        program_.start([](ModelCollaborators& with) { with.quietPeriod = 0.1; });
        user_ = std::make_unique<test::WindowUser>(*program_.window);
    }

    void grantsAndPatrols()
    {
        grant("clock");
        grant("home");
        user_->press(Qt::Key_F5);
        user_->waitToSee(QStringLiteral("First patrol of home complete."));
    }

    void hasMappedEverything() const
    {
        const SnapshotEntries& entries = model().latestSnapshot()->entries;
        EXPECT_GT(entries.size(), itemsOfAHome);
        const Bytes own = entries.allocatedSize(*entries.find(memory));
        EXPECT_EQ(entries.totalBytes() - own, bytesOfOthers());
        // A path that is longer than the system takes, and no place that could not be seen.
        EXPECT_TRUE(model().latestSnapshot()->issues.empty());
    }

    [[nodiscard]] std::set<std::string> findings() const
    {
        std::set<std::string> paths;
        for (const ReviewFinding& finding : model().findings()) {
            paths.insert(finding.url.path().substr(program_.path("").size()));
        }
        return paths;
    }

    void guards()
    {
        for (const Grant& grant : model().grants()) {
            model().setCadence(PatrolCadence::standGuard, grant);
        }
    }

    /// Lets a quiet period pass.
    void aQuietPeriodPasses()
    {
        const std::optional<UUID> before = lastPatrol("clock");
        program_.directory.file("clock/tick", static_cast<std::size_t>(++ticks_));
        user_->until("a patrol of the clock",
                     [&] { return !model().isPatrolling() && lastPatrol("clock") != before; });
    }

    /// How often the memory says that the home was patrolled.
    [[nodiscard]] std::size_t patrolsOfTheHome() const { return patrolsOf("home"); }
    [[nodiscard]] std::size_t patrolsOf(const std::string& realm) const
    {
        return store_.snapshots(program_.directory.path(realm)).size();
    }

    void isPatrolledAgainAfter(const std::function<void()>& change)
    {
        const std::optional<UUID> before = lastPatrol("home");
        change();
        user_->until("a patrol of the home",
                     [&] { return !model().isPatrolling() && lastPatrol("home") != before; });
    }

    void trashesEverythingThatWasFound()
    {
        user_->click(QStringLiteral("Enable Trash actions…"));
        user_->click(QStringLiteral("Enable Trash Actions"), &user_->named("trashUnlockDialog"));
        user_->click(QStringLiteral("Select all"));
        const QString count = QString::number(model().findings().size());
        user_->click(QStringLiteral("Move %1 to Trash…").arg(count));
        user_->click(QStringLiteral("Move to Trash"), &user_->named("batchTrashQuestion"));
        user_->until("the batch is gone", [&] { return model().findings().empty(); });
    }

    void takesItBack() { model().undoLastTrash(); }

    void startsAgain()
    {
        program_.quit();
        start();
        model().selectRealm(FileURL::directory(program_.directory.path("home")));
        user_->until("the history", [&] { return model().latestSnapshot() != nullptr; });
    }

    /// All files of the home but Gruk's own and the Trash's lists.
    [[nodiscard]] int filesOfOthers() const
    {
        return test::fileCount(program_.path("")) - test::fileCount(program_.path(memory))
               - test::fileCount(program_.path(".config/Gruk"))
               - test::fileCount(program_.path(std::string(trash) + "/info"))
               - (program_.stands(std::string(trash) + "/directorysizes") ? 1 : 0);
    }

    [[nodiscard]] std::map<std::string, std::int64_t> accessDatesOfFolders() const
    {
        std::map<std::string, std::int64_t> dates;
        for (const char* folder : {"", "Documents", "Documents/Invoices", "Pictures/Trips",
                                   "src/project-0/node_modules", "Empty"}) {
            struct stat facts = {};
            if (::lstat(program_.path(folder).c_str(), &facts) == 0) {
                dates[folder] = facts.st_atim.tv_sec;
            }
        }
        return dates;
    }

    /// As if nobody had opened a folder since they were made.
    void forgetsWhenFoldersWereOpened() const
    {
        for (const auto& [folder, date] : accessDatesOfFolders()) {
            const timespec times[] = {{1'000'000'000, 0}, {0, UTIME_OMIT}};
            ASSERT_EQ(::utimensat(AT_FDCWD, program_.path(folder).c_str(), times, 0), 0);
        }
    }

    test::RunningProgram& program() { return program_; }
    [[nodiscard]] AppModel& model() const { return *program_.model; }

private:
    void grant(const std::string& realm)
    {
        model().grantRealm(FileURL::directory(program_.directory.path(realm)));
        user_->until("the realm " + realm, [&] {
            return model().activeRootURL() && model().activeRootURL()->lastPathComponent() == realm
                   && !model().isLoadingRealmHistory();
        });
    }

    /// What the memory's last patrol of a realm is known by: two may be of one second.
    [[nodiscard]] std::optional<UUID> lastPatrol(const std::string& realm) const
    {
        const auto last = store_.latestSnapshots(program_.directory.path(realm), 1);
        return last.empty() ? std::nullopt : std::optional(last.back().id);
    }

    [[nodiscard]] Bytes bytesOfOthers() const
    {
        return test::allocatedBytes(program_.path(""))
               - test::allocatedBytes(program_.path(memory));
    }

    test::RunningProgram program_;
    SnapshotStore store_{FileURL(program_.path(std::string(memory) + "/snapshots.json"))};
    std::unique_ptr<test::WindowUser> user_;
    int ticks_ = 0;
};

}  // namespace

TEST(EndToEnd, aWholeHomeIsGuardedForTenQuietPeriods)
{
    GuardedHome home;
    home.forgetsWhenFoldersWereOpened();
    const auto opened = home.accessDatesOfFolders();
    home.grantsAndPatrols();
    home.hasMappedEverything();
    EXPECT_EQ(home.accessDatesOfFolders(), opened);
    EXPECT_THAT(home.findings(), UnorderedElementsAreArray(whatIsWorthALook()));

    home.guards();
    for (int passed = 0; passed < quietPeriods; ++passed) {
        home.aQuietPeriodPasses();
    }
    EXPECT_EQ(home.patrolsOf("clock"), SnapshotStore::snapshotsKeptPerRealm);
    EXPECT_EQ(home.patrolsOfTheHome(), 1U);

    home.isPatrolledAgainAfter(
        [&] { home.program().directory.file("home/Documents/new.bin", 40'000'000); });
    EXPECT_EQ(home.patrolsOfTheHome(), 2U);
    std::set<std::string> withGrowth = whatIsWorthALook();
    withGrowth.insert("Documents/new.bin");
    EXPECT_THAT(home.findings(), UnorderedElementsAreArray(withGrowth));

    const int files = home.filesOfOthers();
    home.isPatrolledAgainAfter([&] { home.trashesEverythingThatWasFound(); });
    EXPECT_EQ(home.filesOfOthers(), files);
    EXPECT_FALSE(home.program().stands("Downloads/setup.dmg"));
    EXPECT_TRUE(home.findings().empty());
    EXPECT_EQ(home.patrolsOfTheHome(), 3U);

    home.isPatrolledAgainAfter([&] { home.takesItBack(); });
    EXPECT_EQ(home.filesOfOthers(), files);
    EXPECT_TRUE(home.program().stands("Downloads/setup.dmg"));
    EXPECT_THAT(home.findings(), IsSupersetOf(whatIsWorthALook()));

    home.startsAgain();
    EXPECT_EQ(home.patrolsOfTheHome(), 4U);
    EXPECT_THAT(home.findings(), IsSupersetOf(whatIsWorthALook()));
}

}  // namespace gruk
