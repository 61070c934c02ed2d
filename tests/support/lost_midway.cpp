#include "tests/support/lost_midway.h"

#include <chrono>
#include <filesystem>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/lost_operations.h"
#include "tests/support/move_faults.h"
#include "tests/support/moves_house.h"

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

/// Files that replacements and the Trash leave behind when they are not ended in order.
std::vector<std::string> halfDoneFiles(const std::string& folder)
{
    std::vector<std::string> found;
    for (const auto& item : fs::recursive_directory_iterator(folder)) {
        const fs::path& path = item.path();
        const bool isGhost = path.extension() == ".trashinfo"
                             && !fs::exists(fs::symlink_status(path.parent_path().parent_path()
                                                               / "files" / path.stem()));
        if (path.extension() == ".gruk-new" || isGhost) {
            found.push_back(path.string());
        }
    }
    return found;
}

/// The program's own files, as another start of it reads them.
void expectStoresInOrder(LostMidway& midway)
{
    ModelHouse& house = midway.house();
    house.restart();
    EXPECT_EQ(midway.openAccesses(), 0) << "an end of the program releases every access";
    EXPECT_EQ(house.model->grants().size(), 1U);
    EXPECT_EQ(house.model->realmRules(midway.desktop()).size(), 1U);
    EXPECT_FALSE(house.model->reviewOnlyMode());
    EXPECT_EQ(house.stored(midway.desktop()).size(), 1U);
}

using Afterwards = std::function<void(LostMidway&, const LostWay&)>;

/// Plays one operation with the loss at that step; whether it had so many.
bool play(const LostOperation& operation, std::size_t step, const Going& going,
          const Afterwards& afterwards)
{
    LostMidway midway(going.place);
    operation.before(midway);
    EXPECT_EQ(midway.openAccesses(), 1) << "that of the realm that is selected";
    const bool isReached =
        midway.run(step, operation.run, [&] { going.way.goes(midway.desktop().path()); });
    operation.check(midway);
    EXPECT_EQ(midway.openAccesses(), 1) << "none of the operation's own is left open";
    if (isReached) {
        afterwards(midway, going.way);
    } else {
        EXPECT_EQ(midway.files(), midway.filesBefore());
    }
    EXPECT_EQ(halfDoneFiles(midway.house().directory.path()), std::vector<std::string>());
    expectStoresInOrder(midway);
    return isReached;
}

}  // namespace

LostMidway::LostMidway(const RealmPlace& place) : place_(place)
{
    house_ = std::make_unique<ModelHouse>([this](ModelCollaborators& all) { watchSteps(all); });
    const auto add = [this](const std::string& name, std::size_t size) {
        return house_->directory.file(place_.realm + "/" + name, size);
    };
    for (const char* old : {"old.dmg", "older.dmg"}) {
        fs::last_write_time(add(old, 12'288),
                            fs::file_time_type::clock::now() - std::chrono::days(900));
    }
    add("a.png", 4'096);
    add("b.txt", 4'096);
    desktop_ = FileURL::directory(house_->directory.path(place_.realm));
    house_->loop->setNow(Date::now());
    model().addRealmRule(FileKind::image, "Pictures", true, desktop_);
    house_->makePatrolledRealm(place_.realm);
    house_->allowTrash();
    EXPECT_EQ(model().findings().size(), 2U);
    EXPECT_TRUE(model().pendingRuleFilingPlan());
    originalPaths_ = paths();
}

LostMidway::~LostMidway()
{
    if (place_.cleanUp) {
        place_.cleanUp();
    }
}

void LostMidway::watchSteps(ModelCollaborators& all)
{
    const FileURL house = all.desktopDirectory().deletingLastPathComponent();
    BookmarkCalls bookmarks = BookmarkCalls::live();
    bookmarks.resolve = [moments = moments_, live = bookmarks.resolve](std::string_view bookmark) {
        moments->pass();
        return live(bookmark);
    };
    bookmarks.startAccessing = [this, live = bookmarks.startAccessing](const FileURL& url) {
        moments_->pass();
        const bool isStarted = live(url);
        openAccesses_ += isStarted ? 1 : 0;
        return isStarted;
    };
    bookmarks.stopAccessing = [this, live = bookmarks.stopAccessing](const FileURL& url) {
        --openAccesses_;
        live(url);
    };
    all.grantStore = std::make_shared<GrantStore>(house.appending("app/grants.json"), bookmarks);

    MoveFaults counted;
    counted.before = [moments = moments_](std::size_t, std::string_view) { moments->pass(); };
    const MoveCalls calls = counted.calls(withoutWaiting());
    all.trashService = std::make_shared<TrashService>(calls);
    all.stashService = std::make_shared<StashService>(calls);
    all.organiseService = std::make_shared<OrganiseService>(calls);
    all.desktopDirectory = [desktop = house.appending(place_.realm, FileURL::Names::directory)] {
        return desktop;
    };
    if (place_.change) {
        place_.change(all, moments_);
    }
    if (place_.prepare && !std::exchange(isPrepared_, true)) {
        place_.prepare(house.path());
    }
}

bool LostMidway::run(std::size_t step, const std::function<void(LostMidway&)>& operation,
                     const std::function<void()>& happens)
{
    formerMessage_ = message();
    filesBefore_ = files();
    moments_->arm(step, [this, happens] {
        happens();
        filesAtLoss_ = files();
    });
    operation(*this);
    return moments_->isReached();
}

std::multiset<std::string> LostMidway::files() const
{
    std::multiset<std::string> lines;
    for (const std::string& item : MovesHouse::itemsBelow(house_->directory.path())) {
        if (item.find("/app/") == std::string::npos && fs::is_regular_file(item)) {
            lines.insert(fs::path(item).filename().string() + " "
                         + std::to_string(fs::file_size(item)));
        }
    }
    return lines;
}

std::set<std::string> LostMidway::paths() const
{
    std::set<std::string> result;
    for (const std::string& item : MovesHouse::itemsBelow(desktop_.path())) {
        if (fs::is_regular_file(item)) {
            result.insert(item);
        }
    }
    return result;
}

void LostMidway::undoEverything()
{
    model().undoLastTrash();
    model().undoLastStash();
    model().undoLastOrganise();
}

void playLosses(const MakeGoing& makeGoing, const Afterwards& afterwards)
{
    for (const LostOperation& operation : lostOperations()) {
        playMoments(operation.name, operation.leastLosses, [&](std::size_t moment) {
            const Going going = makeGoing();
            const std::size_t first = going.way.showsAnother ? operation.goesByPathFor : 0;
            return play(operation, first + moment, going, afterwards);
        });
    }
}

}  // namespace gruk::test
