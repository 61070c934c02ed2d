#include "tests/support/lost_midway.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "tests/support/lost_operations.h"
#include "tests/support/move_faults.h"

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t patrolCount = 3;

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
    ModelHouse& house = midway.lost().house;
    house.restart();
    EXPECT_EQ(midway.openAccesses(), 0) << "an end of the program releases every access";
    EXPECT_EQ(house.model->grants().size(), 1U);
    EXPECT_EQ(house.model->realmRules(midway.lost().desktop).size(), 1U);
    EXPECT_FALSE(house.model->reviewOnlyMode());
    EXPECT_EQ(house.stored(midway.lost().desktop).size(), patrolCount);
}

/// Plays one operation with the loss at that call; whether it had so many.
bool play(const LostOperation& operation, std::size_t call, const Loss& loss)
{
    LostMidway midway(loss.place);
    operation.before(midway);
    EXPECT_EQ(midway.openAccesses(), 1) << "that of the realm that is selected";
    const bool isReached = midway.run(call, operation.run, loss.happens);
    operation.check(midway);
    EXPECT_EQ(midway.openAccesses(), 1) << "none of the operation's own is left open";
    if (isReached) {
        loss.afterwards(midway);
    } else {
        EXPECT_EQ(midway.lost().files(), midway.filesBefore());
    }
    EXPECT_EQ(halfDoneFiles(midway.lost().house.directory.path()), std::vector<std::string>());
    expectStoresInOrder(midway);
    return isReached;
}

}  // namespace

LostMidway::LostMidway(const RealmPlace& place)
    : place_(place), temporary_("TMPDIR", fs::is_directory("/dev/shm") ? "/dev/shm" : "/tmp")
{
    const auto change = [this](ModelCollaborators& all) {
        MoveFaults counted;
        counted.before = [this](std::size_t, std::string_view) { enter(); };
        const MoveCalls calls = counted.calls(withoutWaiting());
        all.trashService = std::make_shared<TrashService>(calls);
        all.stashService = std::make_shared<StashService>(calls);
        all.organiseService = std::make_shared<OrganiseService>(calls);
        const FileURL house = all.desktopDirectory().deletingLastPathComponent();
        countAccesses(all);
        all.desktopDirectory = [desktop = house.appending(
                                    place_.realm, FileURL::Names::directory)] { return desktop; };
        if (place_.change) {
            place_.change(all);
        }
        if (place_.prepare && !std::exchange(isPrepared_, true)) {
            place_.prepare(house.path());
        }
    };
    lost_ = std::make_unique<LostAccess>(change, place_.realm);
    const std::string older = place_.realm + "/older.dmg";
    lost_->house.directory.file(older, 12'288);
    fs::last_write_time(lost_->path(older),
                        fs::file_time_type::clock::now() - std::chrono::days(900));
    lost_->house.patrol();
    lost_->house.allowTrash();
    EXPECT_EQ(model().findings().size(), 2U);
    originalPaths_ = paths();
}

LostMidway::~LostMidway()
{
    if (place_.cleanUp) {
        place_.cleanUp();
    }
}

void LostMidway::countAccesses(ModelCollaborators& all)
{
    BookmarkCalls calls = BookmarkCalls::live();
    calls.startAccessing = [this, live = calls.startAccessing](const FileURL& url) {
        const bool isStarted = live(url);
        openAccesses_ += isStarted ? 1 : 0;
        return isStarted;
    };
    calls.stopAccessing = [this, live = calls.stopAccessing](const FileURL& url) {
        --openAccesses_;
        live(url);
    };
    const FileURL house = all.desktopDirectory().deletingLastPathComponent();
    all.grantStore = std::make_shared<GrantStore>(house.appending("app/grants.json"), calls);
}

bool LostMidway::run(std::size_t call, const std::function<void(LostMidway&)>& operation,
                     const std::function<void(LostMidway&)>& happens)
{
    formerMessage_ = message();
    filesBefore_ = lost_->files();
    happens_ = happens;
    left_ = call;
    isArmed_ = true;
    operation(*this);
    return !std::exchange(isArmed_, false);
}

void LostMidway::enter()
{
    if (isArmed_ && left_-- == 0) {
        isArmed_ = false;
        happens_(*this);
        filesAtLoss_ = lost_->files();
    }
}

std::set<std::string> LostMidway::paths() const
{
    std::set<std::string> result;
    for (const std::string& item : MovesHouse::itemsBelow(lost_->desktop.path())) {
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

void playLosses(const std::function<Loss()>& makeLoss)
{
    constexpr std::size_t stride = 3;
    for (const LostOperation& operation : lostOperations()) {
        std::size_t times = 0;
        for (bool isReached = true; isReached;) {
            const Loss loss = makeLoss();
            const std::size_t call = loss.firstCall + stride * times;
            SCOPED_TRACE(operation.name + ", call " + std::to_string(call));
            isReached = play(operation, call, loss);
            times += isReached ? 1 : 0;
            if (testing::Test::HasFailure()) {
                return;
            }
        }
        EXPECT_GE(times, operation.leastLosses) << operation.name;
    }
}

}  // namespace gruk::test
