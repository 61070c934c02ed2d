#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_ways.h"
#include "tests/support/model_house.h"
#include "tests/support/moments.h"

/// The folder goes away while it is granted, or granted again: at each step of the panel, of its
/// bookmark and of what follows. It is granted or it is not; what was granted before stays so, and
/// never comes to lead to another folder that the user has not chosen.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::Going;
using test::Moments;

/// A panel whose user has chosen when the answer is a moment away.
class SlowPanel final : public OpenPanel {
public:
    SlowPanel(std::shared_ptr<OpenPanel> panel, std::shared_ptr<Moments> moments)
        : panel_(std::move(panel)), moments_(std::move(moments))
    {
    }

    QCoro::Task<std::optional<FileURL>> chooseDirectory(OpenPanelRequest request) override
    {
        std::optional<FileURL> chosen = co_await panel_->chooseDirectory(std::move(request));
        moments_->pass();
        co_return chosen;
    }

private:
    std::shared_ptr<OpenPanel> panel_;
    std::shared_ptr<Moments> moments_;
};

/// A house with a realm that stays, and a folder to be granted that goes.
class GrantHouse {
public:
    explicit GrantHouse(const test::RealmPlace& place)
        : place_(place), house_([this](ModelCollaborators& all) { watchSteps(all); })
    {
        if (place_.prepare) {
            place_.prepare(house_.directory.path());
        }
        former_ = house_.makePatrolledRealm("former");
        house_.directory.file(place_.realm + "/file", 4'096);
    }
    ~GrantHouse()
    {
        if (place_.cleanUp) {
            place_.cleanUp();
        }
    }
    GrantHouse(const GrantHouse&) = delete;
    GrantHouse& operator=(const GrantHouse&) = delete;

    [[nodiscard]] test::ModelHouse& house() { return house_; }
    [[nodiscard]] AppModel& model() { return *house_.model; }
    [[nodiscard]] Moments& moments() { return *moments_; }
    [[nodiscard]] FileURL chosen() const { return directory(place_.realm); }
    [[nodiscard]] FileURL directory(const std::string& name) const
    {
        return FileURL::directory(house_.directory.path(name));
    }
    [[nodiscard]] const test::RealmPlace& place() const { return place_; }
    [[nodiscard]] const FileURL& former() const { return former_; }
    [[nodiscard]] int openAccesses() const { return openAccesses_; }

    /// The grant of that place; none when there is none.
    [[nodiscard]] std::optional<Grant> grantOf(const FileURL& url)
    {
        const auto found = std::ranges::find(model().grants(), url.path(), &Grant::path);
        return found == model().grants().end() ? std::nullopt : std::optional(*found);
    }

    void choose(const FileURL& url) { house_.panel->answers.push_back(url); }

    /// Runs work and main thread to the end, piece by piece, each of them a moment.
    void settle()
    {
        do {
            moments_->pass();
        } while (house_.pool->runNext() || house_.loop->run());
    }

private:
    void watchSteps(ModelCollaborators& all)
    {
        BookmarkCalls calls = BookmarkCalls::live();
        const auto told = [moments = moments_](auto live) {
            return [moments, live](const auto&... arguments) {
                moments->pass();
                auto result = live(arguments...);
                moments->pass();
                return result;
            };
        };
        calls.make = told(calls.make);
        calls.renew = told(calls.renew);
        calls.resolve = told(calls.resolve);
        calls.startAccessing = [this, live = told(calls.startAccessing)](const FileURL& url) {
            const bool isStarted = live(url);
            openAccesses_ += isStarted ? 1 : 0;
            return isStarted;
        };
        calls.stopAccessing = [this](const FileURL&) { --openAccesses_; };
        const FileURL house = all.desktopDirectory().deletingLastPathComponent();
        all.grantStore = std::make_shared<GrantStore>(house.appending("app/grants.json"), calls);
        all.openPanel = std::make_shared<SlowPanel>(all.openPanel, moments_);
        all.desktopDirectory = [chosen = house.appending(place_.realm)] { return chosen; };
    }

    test::EnvironmentVariable temporary_ = test::temporaryFilesInMemory();
    test::RealmPlace place_;
    std::shared_ptr<Moments> moments_ = std::make_shared<Moments>();
    int openAccesses_ = 0;
    test::ModelHouse house_;
    FileURL former_;
};

struct Scene {
    std::string name;
    /// Done while all is well.
    std::function<void(GrantHouse&)> before;
    /// During which the folder goes.
    std::function<void(GrantHouse&)> play;
    /// Looks at what became of it; `hasGone` tells whether it went at all.
    std::function<void(GrantHouse&, const test::LostWay&, bool hasGone)> check;
};

/// One line for each place that could not be granted, in the words for it, and a message then only.
void expectLogged(GrantHouse& at, const std::string& beginning)
{
    EXPECT_EQ(at.model().errorMessage().has_value(), !at.house().logLines.empty());
    ASSERT_LE(at.house().logLines.size(), 1U);
    for (const std::string& line : at.house().logLines) {
        const std::string begin = beginning + ": " + at.chosen().path() + ": ";
        EXPECT_TRUE(line == begin + "No such file or directory"
                    || line == begin + "Permission denied")
            << line;
    }
}

/// What holds after every scene.
void expectInOrder(GrantHouse& at)
{
    EXPECT_TRUE(at.grantOf(at.former())) << "what was granted stays granted";
    const auto& active = at.model().activeAccess();
    EXPECT_EQ(at.openAccesses(), active && active->didStartAccessing() ? 1 : 0);
    const std::vector<Grant> grants = at.model().grants();
    at.house().restart();
    EXPECT_EQ(at.model().grants(), grants) << "the list on the disk is the one on screen";
}

/// A folder that was not granted before: it is selected, also when it has gone, or logged.
void checkNew(GrantHouse& at, const test::LostWay& way, bool hasGone)
{
    expectLogged(at, "Gruk: failed to grant access to " + at.chosen().path());
    const std::optional<Grant> grant = at.grantOf(at.chosen());
    EXPECT_EQ(at.house().logLines.empty(), grant.has_value());
    EXPECT_EQ(at.model().activeRootURL(), grant ? at.chosen() : at.former());
    if (!grant) {
        EXPECT_TRUE(hasGone);
        return;
    }
    const bool isConnected = at.model().isConnected(*grant);
    EXPECT_TRUE(isConnected || hasGone);
    EXPECT_TRUE(!isConnected || fs::exists(at.chosen().path()));
    at.house().patrol();
    const std::string complaint = at.model().errorMessage().value_or("");
    if (!isConnected) {
        EXPECT_EQ(complaint, "Gruk no longer has access to this location. Grant access again to "
                             "patrol it.");
    } else if (hasGone && way.name == "closed") {
        EXPECT_EQ(complaint,
                  "The patrol could not finish: " + at.chosen().path() + ": Permission denied");
    } else {
        EXPECT_EQ(complaint, "");
    }
}

/// A realm whose own folder stood there when it began: whatever came in between, it is still
/// granted, and no other folder is taken for it.
void checkKnown(GrantHouse& at, const test::LostWay& way, bool hasGone)
{
    expectLogged(at, "Gruk: failed to grant access to " + at.chosen().path());
    const std::optional<Grant> grant = at.grantOf(at.chosen());
    ASSERT_TRUE(grant) << "a realm is never lost from the list";
    if (at.model().cadence(*grant) == PatrolCadence::off) {
        EXPECT_TRUE(way.showsAnother && hasGone) << "made anew, for the folder that was there";
        EXPECT_TRUE(at.house().streams.empty());
        return;
    }
    EXPECT_EQ(at.house().streams.size(), 1U);
    EXPECT_TRUE(!hasGone || way.name == "closed" || !at.model().isConnected(*grant))
        << "another folder was taken for the realm";
    if (hasGone && way.comesBack) {
        way.comesBack(at.chosen().path());
    }
    EXPECT_EQ(at.model().isConnected(*grant), !hasGone || way.comesBack);
}

/// A realm whose own folder was gone when it began, with another one chosen in its place: granted
/// anew without cadence and guard, or left as it was and logged.
void checkLost(GrantHouse& at, const std::string& beginning, bool hasGone)
{
    expectLogged(at, beginning + at.chosen().path());
    const std::optional<Grant> grant = at.grantOf(at.chosen());
    ASSERT_TRUE(grant) << "a realm is never lost from the list";
    EXPECT_EQ(at.model().grants().size(), 2U);
    const bool isNew = at.model().cadence(*grant) == PatrolCadence::off;
    EXPECT_EQ(isNew, at.house().logLines.empty());
    EXPECT_EQ(at.house().streams.size(), isNew ? 0U : 1U);
    EXPECT_TRUE(hasGone || (isNew && at.model().isConnected(*grant)));
}

/// The chosen folder is a realm under guard; another one is selected.
void grantChosen(GrantHouse& at)
{
    at.model().grantRealm(at.chosen());
    at.house().settle();
    at.model().setCadence(PatrolCadence::standGuard, at.grantOf(at.chosen()).value());
    at.model().selectRealm(at.former());
    at.house().settle();
}

/// The same, but the realm's own folder is far away, and the user has another one in its place.
void loseChosen(GrantHouse& at)
{
    grantChosen(at);
    const std::string deeper = fs::path(at.chosen().path()).parent_path() / "deeper";
    fs::create_directory(deeper);
    fs::rename(at.chosen().path(), deeper + "/away");
    fs::create_directory(at.chosen().path());
    at.choose(at.chosen());
}

void regrant(GrantHouse& at, const std::string& name)
{
    at.model().regrantRealm(at.grantOf(at.directory(name)).value());
    at.settle();
}

std::vector<Scene> newScenes()
{
    const auto choose = [](GrantHouse& at) { at.choose(at.chosen()); };
    return {{"a folder", choose,
             [](GrantHouse& at) {
                 at.model().grantRealm();
                 at.settle();
             },
             checkNew},
            {"a folder that was dropped", [](GrantHouse&) {},
             [](GrantHouse& at) {
                 at.model().grantRealm(at.chosen());
                 at.settle();
             },
             checkNew},
            {"the Desktop", choose,
             [](GrantHouse& at) {
                 at.model().grantDesktop();
                 at.settle();
                 EXPECT_EQ(at.house().panel->requests.front().prompt, "Grant the Desktop");
             },
             checkNew}};
}

std::vector<Scene> knownScenes()
{
    return {{"a realm that is granted", grantChosen,
             [](GrantHouse& at) {
                 at.model().grantRealm(at.chosen());
                 at.settle();
             },
             checkKnown},
            {"a realm that is there again", grantChosen,
             [](GrantHouse& at) { regrant(at, at.place().realm); }, checkKnown}};
}

std::vector<Scene> lostScenes()
{
    const auto checkGranted = [](GrantHouse& at, const test::LostWay&, bool hasGone) {
        checkLost(at, "Gruk: failed to grant access to ", hasGone);
    };
    const auto checkRegranted = [](GrantHouse& at, const test::LostWay&, bool hasGone) {
        checkLost(at, "Gruk: failed to re-grant access to ", hasGone);
    };
    return {{"a lost realm", loseChosen,
             [](GrantHouse& at) {
                 at.model().grantRealm();
                 at.settle();
             },
             checkGranted},
            {"a lost realm from its row", loseChosen,
             [](GrantHouse& at) { regrant(at, at.place().realm); }, checkRegranted}};
}

/// A lost realm for which a folder elsewhere is chosen.
Scene elsewhere()
{
    const auto before = [](GrantHouse& at) {
        at.house().makePatrolledRealm("lost");
        fs::remove_all(at.directory("lost").path());
        at.model().selectRealm(at.former());
        at.house().settle();
        at.choose(at.chosen());
    };
    const auto check = [](GrantHouse& at, const test::LostWay&, bool hasGone) {
        expectLogged(at, "Gruk: failed to re-grant access to " + at.directory("lost").path());
        EXPECT_EQ(at.model().grants().size(), 2U);
        EXPECT_EQ(at.grantOf(at.chosen()).has_value(), at.house().logLines.empty());
        EXPECT_TRUE(hasGone || at.grantOf(at.chosen()));
        EXPECT_EQ(at.house().stored(at.directory("lost")).size(), 1U);
    };
    return {"a lost realm elsewhere", before, [](GrantHouse& at) { regrant(at, "lost"); }, check};
}

void playScenes(const std::vector<Scene>& scenes, const test::MakeGoing& makeGoing)
{
    for (const Scene& scene : scenes) {
        test::playMoments(scene.name + ", " + makeGoing().way.name, 4, [&](std::size_t moment) {
            const Going going = makeGoing();
            GrantHouse at(going.place);
            scene.before(at);
            at.moments().arm(moment, [&] { going.way.goes(at.chosen().path()); });
            scene.play(at);
            const bool hasGone = at.moments().isReached();
            scene.check(at, going.way, hasGone);
            expectInOrder(at);
            if (going.way.name == "closed") {
                fs::permissions(at.chosen().path(), fs::perms::owner_all);
            }
            return hasGone;
        });
    }
}

/// In every way that a folder can go here.
void playAllWays(const std::vector<Scene>& scenes)
{
    const auto play = [&](const test::MakeGoing& makeGoing) { playScenes(scenes, makeGoing); };
    test::inEachWay(play);
    test::asItIsClosed(play);
    if (!test::asItsDiskIsPulledOut(play)) {
        GTEST_SKIP() << "nothing may be mounted here: without the disk that is pulled out";
    }
}

TEST(AppModelGrantLostMidway, aFolderThatGoesWhileItIsGrantedIsLoggedOrDisconnected)
{
    playAllWays(newScenes());
}

TEST(AppModelGrantLostMidway, aRealmThatGoesWhileItIsGrantedOnceMoreStaysTheSameRealm)
{
    playAllWays(knownScenes());
}

TEST(AppModelGrantLostMidway, aLostRealmThatGoesWhileItIsGrantedAgainIsNeverLostFromTheList)
{
    playAllWays(lostScenes());
}

TEST(AppModelGrantLostMidway, aFolderThatGoesWhileItReplacesALostRealmLeavesOneOfTheTwo)
{
    playAllWays({elsewhere()});
}

}  // namespace

}  // namespace gruk
