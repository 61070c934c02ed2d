#include <cerrno>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "app/model/setting_keys.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

/// A disk that fails at one call of all that the program writes, or from that call on: what is on
/// it then is what a kill at that call leaves.
struct FailingDisk {
    enum class Span { once, fromThenOn };

    std::size_t failAt = never;
    Span span = Span::once;
    std::size_t calls = 0;

    [[nodiscard]] bool fails()
    {
        const std::size_t number = calls++;
        return span == Span::once ? number == failAt : number >= failAt;
    }
};

template <typename... Arguments>
std::function<int(Arguments...)> failing(const std::shared_ptr<FailingDisk>& disk,
                                         std::function<int(Arguments...)> live)
{
    return [disk, live](Arguments... arguments) {
        return disk->fails() ? -ENOSPC : live(arguments...);
    };
}

FileCalls callsOn(const std::shared_ptr<FailingDisk>& disk)
{
    const FileCalls live = FileCalls::live();
    FileCalls calls = live;
    calls.createExclusive = failing(disk, live.createExclusive);
    calls.write = [disk, live](int descriptor, const char* bytes, std::size_t count) {
        return disk->fails() ? long{-ENOSPC} : live.write(descriptor, bytes, count);
    };
    calls.synchronize = failing(disk, live.synchronize);
    calls.rename = failing(disk, live.rename);
    calls.makeDirectory = failing(disk, live.makeDirectory);
    return calls;
}

const RealmIdentity painted = [] {
    RealmIdentity identity = RealmIdentity::derive("/painted");
    identity.charge = identity.charge == Charge::star ? Charge::key : Charge::star;
    return identity;
}();

/// A house whose realm "old" has everything that is known about a realm, and whose folder is called
/// "new" now.
class RenamedRealm {
public:
    explicit RenamedRealm(bool isRenamed = true)
        : disk(std::make_shared<FailingDisk>()),
          house([this](ModelCollaborators& all) { putOnDisk(all); }),
          from(FileURL::directory(house.directory.path("old"))),
          to(FileURL::directory(house.directory.path("new")))
    {
        house.makePatrolledRealm("old");
        house.directory.file("old/second", 4'096);
        house.patrol();
        AppModel& model = *house.model;
        model.setCadence(PatrolCadence::weekly, grant());
        model.saveShield(painted, from.path());
        model.addRealmRule(FileKind::image, "Pictures", true, from);
        model.saveOrganiseOverride("Songs", FileKind::audio, from);
        id = grant().id;
        if (isRenamed) {
            fs::rename(from.path(), to.path());
        }
    }

    [[nodiscard]] AppModel& model() { return *house.model; }
    /// The first grant.
    [[nodiscard]] const Grant& grant() const { return house.model->grants().at(0); }

    void rename()
    {
        house.model->renameRealm(grant(), to);
        house.settle();
    }

    /// What is known of a realm's place, as the model tells it and the files have it.
    [[nodiscard]] std::string known(const FileURL& url) const
    {
        const AppModel& model = *house.model;
        std::string text;
        for (const Grant& each : model.grants()) {
            text += each.path == url.path() && each.id == id ? "grant " : "";
        }
        text += std::to_string(house.stored(url).size()) + " patrols ";
        text += model.realmIdentityStore().overrides().contains(url.path()) ? "shield " : "";
        text += std::to_string(model.realmRules(url).size()) + " rules ";
        const UserDefaults settings(FileURL(house.directory.path("app/settings.json")));
        text += settings.textDictionary(SettingKeys::organiseOverrides(url)) ? "names" : "";
        return text;
    }
    /// Whether all of it is at that place, and nothing at the other.
    [[nodiscard]] bool isWhollyAt(const FileURL& url) const
    {
        const FileURL& other = url == from ? to : from;
        return known(url) == everything && known(other) == nothing;
    }
    [[nodiscard]] bool isPending() const
    {
        return UserDefaults(FileURL(house.directory.path("app/settings.json")))
            .textDictionary(SettingKeys::renaming(id))
            .has_value();
    }

    static constexpr const char* everything = "grant 2 patrols shield 1 rules names";
    static constexpr const char* nothing = "0 patrols 0 rules ";

    std::shared_ptr<FailingDisk> disk;
    test::ModelHouse house;
    FileURL from;
    FileURL to;
    UUID id;

private:
    void putOnDisk(ModelCollaborators& all)
    {
        const FileURL app = all.desktopDirectory().deletingLastPathComponent().appending(
            "app", FileURL::Names::directory);
        const FileCalls calls = callsOn(disk);
        all.snapshotStore = std::make_shared<SnapshotStore>(app.appending("snapshots.json"), calls);
        all.preferences = std::make_shared<UserDefaults>(app.appending("settings.json"), calls);
        all.realmIdentityStore = std::make_shared<RealmIdentityStore>(app, calls);
        all.grantStore = std::make_shared<GrantStore>(app.appending("grants.json"),
                                                      BookmarkCalls::live(), calls);
    }
};

}  // namespace

TEST(AppModelRenaming, aRealmWhoseFolderHasAnotherNameBesideItsOldPlaceTellsWhich)
{
    RenamedRealm realm(false);
    EXPECT_EQ(realm.model().nowCalled(realm.grant()), std::nullopt);
    fs::rename(realm.from.path(), realm.to.path());
    EXPECT_FALSE(realm.model().isConnected(realm.grant()));
    EXPECT_EQ(realm.model().nowCalled(realm.grant()), realm.to);
    // Another folder under the old name is not it.
    realm.house.directory.folder("old");
    EXPECT_EQ(realm.model().nowCalled(realm.grant()), realm.to);
    fs::remove_all(realm.to.path());
    EXPECT_EQ(realm.model().nowCalled(realm.grant()), std::nullopt);
}

TEST(AppModelRenaming, oneConfirmationCarriesAllThatIsKnownOfTheRealmOver)
{
    RenamedRealm realm;
    realm.rename();
    EXPECT_TRUE(realm.isWhollyAt(realm.to)) << realm.known(realm.to) << realm.known(realm.from);
    EXPECT_TRUE(realm.model().isConnected(realm.grant()));
    EXPECT_EQ(realm.model().cadence(realm.grant()), PatrolCadence::weekly);
    EXPECT_EQ(realm.model().realmIdentityStore().identity(realm.to.path()), painted);
    EXPECT_EQ(realm.model().lastActionMessage(),
              "old is now called new. All that is known about it came along.");
    EXPECT_FALSE(realm.model().errorMessage());
    EXPECT_FALSE(realm.isPending());

    // Its page is open, and shows its history.
    EXPECT_EQ(realm.model().activeRootURL(), realm.to);
    ASSERT_TRUE(realm.model().latestSnapshot());
    EXPECT_TRUE(realm.model().previousSnapshot());
    realm.house.patrol();
    EXPECT_EQ(realm.house.stored(realm.to).size(), 3U);
    EXPECT_TRUE(realm.model().deltas().empty()) << "the same files under the same names";

    realm.house.restart();
    EXPECT_TRUE(realm.model().isConnected(realm.grant()));
    EXPECT_EQ(realm.model().cadence(realm.grant()), PatrolCadence::weekly);
}

TEST(AppModelRenaming, grantingTheFolderUnderItsNewNameCarriesTheRealmOver)
{
    RenamedRealm realm;
    realm.model().grantRealm(realm.to);
    realm.house.settle();
    EXPECT_TRUE(realm.isWhollyAt(realm.to)) << realm.known(realm.to) << realm.known(realm.from);
    EXPECT_EQ(realm.model().grants().size(), 1U);
    EXPECT_EQ(realm.model().activeRootURL(), realm.to);
}

TEST(AppModelRenaming, showingWhereALostRealmIsNowCarriesItOverFromAnywhereOnItsDisk)
{
    RenamedRealm realm;
    const FileURL away = FileURL::directory(realm.house.directory.folder("deep") + "/away");
    fs::rename(realm.to.path(), away.path());
    EXPECT_EQ(realm.model().nowCalled(realm.grant()), std::nullopt);
    realm.house.panel->answers.push_back(away);
    realm.model().regrantRealm(realm.grant());
    realm.house.settle();
    EXPECT_EQ(realm.known(away), RenamedRealm::everything);
    EXPECT_EQ(realm.known(realm.from), RenamedRealm::nothing);
}

TEST(AppModelRenaming, anotherFolderInTheSteadOfALostRealmIsANewRealm)
{
    RenamedRealm realm;
    const FileURL other = FileURL::directory(realm.house.directory.folder("other"));
    realm.house.panel->answers.push_back(other);
    realm.model().regrantRealm(realm.grant());
    realm.house.settle();
    ASSERT_EQ(realm.model().grants().size(), 1U);
    EXPECT_EQ(realm.grant().path, other.path());
    EXPECT_EQ(realm.known(other), RenamedRealm::nothing);
}

TEST(AppModelRenaming, theGuardWatchesTheNewPlace)
{
    RenamedRealm realm(false);
    realm.model().setCadence(PatrolCadence::standGuard, realm.grant());
    ASSERT_TRUE(realm.house.streams.contains(realm.from.path()));
    fs::rename(realm.from.path(), realm.to.path());
    realm.rename();
    EXPECT_FALSE(realm.house.streams.contains(realm.from.path()));
    EXPECT_TRUE(realm.house.streams.contains(realm.to.path()));
}

TEST(AppModelRenaming, aRealmThatWasGrantedAnewAlreadyBecomesOneWithIt)
{
    RenamedRealm realm;
    // As it was before there was another way: the same folder, twice a realm.
    const FileURL app = FileURL::directory(realm.house.directory.path("app"));
    GrantStore(app.appending("grants.json")).addGrant(realm.to);
    realm.house.restart();
    realm.house.select(realm.to);
    realm.house.patrol();
    ASSERT_EQ(realm.model().grants().size(), 2U);
    realm.model().setCadence(PatrolCadence::off, realm.grant());
    realm.model().setCadence(PatrolCadence::daily, realm.model().grants()[1]);
    realm.model().addRealmRule(FileKind::pdf, "Papers", false, realm.to);
    realm.model().addRealmRule(FileKind::video, "Films", false, realm.to);

    realm.rename();
    EXPECT_EQ(realm.model().grants().size(), 1U);
    EXPECT_EQ(realm.known(realm.to), "grant 3 patrols shield 1 rules names");
    EXPECT_EQ(realm.known(realm.from), RenamedRealm::nothing);
    EXPECT_EQ(realm.model().realmRules(realm.to).at(0).destinationFolderName, "Pictures");
    EXPECT_EQ(realm.model().cadence(realm.grant()), PatrolCadence::daily) << "only one had one";
}

TEST(AppModelRenaming, aFolderThatIsAnotherOneByNowChangesNothing)
{
    RenamedRealm realm;
    fs::rename(realm.to.path(), realm.house.directory.path("newer"));
    fs::create_directory(realm.to.path());
    realm.rename();
    EXPECT_TRUE(realm.isWhollyAt(realm.from));
    EXPECT_TRUE(realm.model().errorMessage());
    EXPECT_FALSE(realm.isPending());
}

TEST(AppModelRenaming, aFailureAtAnyCallLeavesTheRealmWhollyAtOneOfItsNames)
{
    std::size_t failures = 0;
    for (std::size_t number = 0;; ++number) {
        RenamedRealm realm;
        realm.disk->calls = 0;
        realm.disk->failAt = number;
        realm.rename();
        const bool wasReached = realm.disk->calls > number;
        realm.disk->failAt = never;
        const bool failed = realm.model().errorMessage().has_value();
        failures += failed ? 1 : 0;
        const FileURL& place = failed ? realm.from : realm.to;
        EXPECT_TRUE(realm.isWhollyAt(place))
            << "call " << number << ": " << realm.known(realm.to) << realm.known(realm.from);
        EXPECT_EQ(realm.model().cadence(realm.grant()), PatrolCadence::weekly);
        realm.house.restart();
        realm.house.settle();
        EXPECT_TRUE(realm.isWhollyAt(place))
            << "call " << number << ": " << realm.known(realm.to) << realm.known(realm.from);
        EXPECT_FALSE(realm.isPending());
        if (!wasReached || testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GT(failures, 15U);
}

TEST(AppModelRenaming, aKillAtAnyCallIsCompletedOrUndoneByTheNextStart)
{
    std::size_t carriedOn = 0;
    for (std::size_t number = 0;; ++number) {
        RenamedRealm realm;
        realm.disk->calls = 0;
        realm.disk->span = FailingDisk::Span::fromThenOn;
        realm.disk->failAt = number;
        realm.rename();
        const bool wasReached = realm.disk->calls > number;
        EXPECT_TRUE(realm.model().errorMessage() || !wasReached || realm.isWhollyAt(realm.to));
        const bool wasPending = realm.isPending();
        realm.disk->failAt = never;
        realm.house.restart();
        realm.house.settle();
        EXPECT_TRUE(realm.isWhollyAt(wasPending ? realm.to : realm.from)
                    || realm.isWhollyAt(realm.to))
            << "call " << number << ": " << realm.known(realm.to) << realm.known(realm.from);
        EXPECT_EQ(realm.model().cadence(realm.grant()), PatrolCadence::weekly);
        EXPECT_FALSE(realm.isPending());
        carriedOn += wasPending ? 1 : 0;
        if (!wasReached || testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GT(carriedOn, 12U);
}

TEST(AppModelRenaming, aStartThatCannotCompleteItLeavesItToTheNextOne)
{
    RenamedRealm realm;
    realm.disk->calls = 0;
    realm.disk->span = FailingDisk::Span::fromThenOn;
    // Behind the note in the settings.
    realm.disk->failAt = 6;
    realm.rename();
    ASSERT_TRUE(realm.isPending());
    realm.house.restart();
    realm.house.settle();
    EXPECT_TRUE(realm.isPending());
    ASSERT_TRUE(realm.model().errorMessage());
    EXPECT_TRUE(realm.model().errorMessage()->ends_with("It tries again at its next start."));
    realm.disk->failAt = never;
    // Or before that, when the user asks for it.
    realm.rename();
    EXPECT_TRUE(realm.isWhollyAt(realm.to));
    EXPECT_FALSE(realm.isPending());
}

TEST(AppModelRenaming, aQuitWhileTheHistoryIsCarriedIsCompletedByTheNextStart)
{
    RenamedRealm realm;
    realm.model().renameRealm(realm.grant(), realm.to);
    ASSERT_TRUE(realm.house.pool->runNext());
    // The history has gone, and the main thread has not heard of it.
    realm.house.restart();
    realm.house.settle();
    EXPECT_TRUE(realm.isWhollyAt(realm.to)) << realm.known(realm.to) << realm.known(realm.from);
    EXPECT_FALSE(realm.isPending());
    EXPECT_EQ(realm.model().lastActionMessage(),
              "old is now called new. All that is known about it came along.");
}

}  // namespace gruk
