#include "platform/files/move_batch.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "platform/files/moves.h"
#include "platform/files/trash.h"
#include "platform/foundation/errors.h"
#include "tests/support/move_checks.h"
#include "tests/support/move_faults.h"
#include "tests/support/trash_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::MoveFaults;
using test::stands;
using test::TrashHouse;

constexpr int items = 70;

std::string name(int number)
{
    return "home/" + std::to_string(number);
}

/// A house with files that are about to go to the Trash.
class Batch {
public:
    Batch()
    {
        for (int i = 0; i < items; ++i) {
            house.directory().fileWith(name(i), std::to_string(i));
            urls.push_back(house.url(name(i)));
        }
    }

    /// Moves all to the Trash as one batch; returns where they are.
    std::vector<FileURL> trash(const MoveCalls& calls)
    {
        MoveBatch batch(calls);
        const MoveConditions conditions{std::nullopt, std::nullopt, &batch};
        prepareToTrash(urls, conditions, calls);
        std::vector<FileURL> places;
        for (const FileURL& url : urls) {
            places.push_back(trashItem(url, conditions, calls));
        }
        return places;
    }

    TrashHouse house;
    std::vector<FileURL> urls;
};

long count(const MoveFaults& faults, const std::string& call)
{
    return std::count(faults.names().begin(), faults.names().end(), call);
}

long filesIn(const std::string& folder)
{
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

TEST(MoveBatch, manyItemsWaitForTheDirectoriesOfTheTrashAboutAsOftenAsOne)
{
    Batch batch;
    const MoveFaults faults;
    const auto places = batch.trash(faults.calls());
    EXPECT_EQ(count(faults, "synchronize"), items) << "each info file is on the disk";
    EXPECT_LE(count(faults, "synchronizeDirectory"), 5);
    for (int i = 0; i < items; ++i) {
        const std::string base = batch.house.trash("info/" + std::to_string(i) + ".trashinfo");
        EXPECT_TRUE(stands(base));
        EXPECT_TRUE(stands(places.at(static_cast<std::size_t>(i)).path()));
    }
}

TEST(MoveBatch, eachInfoFileAndItsNameAreOnTheDiskBeforeTheFirstItemComes)
{
    Batch batch;
    const MoveFaults faults;
    (void)batch.trash(faults.calls());
    const auto& names = faults.names();
    const auto firstMove = std::ranges::find(names, "moveWithoutReplacing");
    EXPECT_EQ(std::count(names.begin(), firstMove, "synchronize"), items);
    EXPECT_GE(std::count(names.begin(), firstMove, "synchronizeDirectory"), 1);
    EXPECT_EQ(std::count(firstMove, names.end(), "createExclusive"), 0);
}

TEST(MoveBatch, whatGoesBackTogetherWaitsTwiceAndLeavesNoInfoFile)
{
    Batch batch;
    const auto places = batch.trash(test::unsynchronizedCalls());
    const MoveFaults faults;
    {
        const MoveCalls calls = faults.calls();
        MoveBatch back(calls);
        for (std::size_t i = 0; i < places.size(); ++i) {
            restoreTrashedItem(places[i], batch.urls[i], {std::nullopt, std::nullopt, &back},
                               calls);
        }
        EXPECT_EQ(count(faults, "remove"), 0) << "an item is surely back before its info file goes";
    }
    EXPECT_EQ(count(faults, "synchronizeDirectory"), 2);
    EXPECT_EQ(filesIn(batch.house.trash("info")), 0);
    EXPECT_EQ(filesIn(batch.house.path("home")), items);
    const auto& names = faults.names();
    const auto firstRemoval = std::ranges::find(names, "remove");
    EXPECT_EQ(std::count(firstRemoval, names.end(), "synchronizeDirectory"), 0);
}

TEST(MoveBatch, anInfoFileWhoseItemDoesNotComeIsRemovedAtTheEnd)
{
    Batch batch;
    {
        MoveBatch moves;
        const MoveConditions conditions{std::nullopt, std::nullopt, &moves};
        prepareToTrash(batch.urls, conditions);
        EXPECT_EQ(filesIn(batch.house.trash("info")), items);
        (void)trashItem(batch.urls[3], conditions);
    }
    EXPECT_EQ(filesIn(batch.house.trash("info")), 1);
    EXPECT_TRUE(stands(batch.house.trash("info/3.trashinfo")));
}

/// A batch that stays in a folder which was swapped for another one, with a file for each to find.
class SwappedRoot {
public:
    SwappedRoot()
    {
        house.directory().fileWith("home/root/x", "one");
        batch.stayIn(root());
        batch.requireRoot();
        fs::rename(house.path("home/root"), house.path("home/former"));
        house.directory().fileWith("home/root/x", "another's");
    }

    [[nodiscard]] FileURL root() const { return house.url("home/root"); }
    [[nodiscard]] MoveConditions conditions() { return {root(), std::nullopt, &batch}; }

    TrashHouse house;
    MoveBatch batch;
};

std::error_code errorOf(const std::function<void()>& body)
{
    try {
        body();
    } catch (const FileError& error) {
        return error.code();
    }
    return {};
}

TEST(MoveBatch, thatStaysInAFolderRefusesAnotherOneInItsPlace)
{
    SwappedRoot swapped;
    const auto refused = std::make_error_code(std::errc::no_such_file_or_directory);
    const FileURL x = swapped.root().appending("x");
    const FileURL y = swapped.root().appending("y");
    const MoveConditions conditions = swapped.conditions();
    EXPECT_EQ(errorOf([&] { swapped.batch.requireRoot(); }), refused);
    EXPECT_EQ(errorOf([&] { makeDirectory(y, conditions); }), refused);
    EXPECT_EQ(errorOf([&] { moveItem(x, y, conditions); }), refused);
    EXPECT_EQ(errorOf([&] { replaceOwnFile(y, "{}", conditions); }), refused);
    EXPECT_EQ(errorOf([&] { (void)trashItem(x, conditions); }), refused);
    EXPECT_EQ(errorOf([&] { restoreTrashedItem(x, y, conditions); }), refused);
    EXPECT_EQ(filesIn(swapped.root().path()), 1);
    EXPECT_EQ(swapped.house.directory().read("home/root/x"), "another's");
}

TEST(MoveBatch, thatShallStayInAFolderWhichIsNotTheOneMeantMovesNothing)
{
    const TrashHouse house;
    const FileURL root = house.url("home/root");
    const FileURL x(house.directory().fileWith("home/root/x", "another's"));
    MoveBatch batch;
    batch.stayIn(root, [] { return false; });
    const auto refused = std::make_error_code(std::errc::no_such_file_or_directory);
    EXPECT_EQ(errorOf([&] { batch.requireRoot(); }), refused);
    EXPECT_EQ(errorOf([&] {
                  moveItem(x, house.url("home/root/y"), {root, std::nullopt, &batch});
              }),
              refused);
    EXPECT_TRUE(stands(x.path()));
}

TEST(MoveBatch, thatStaysInTheFolderThatWasMeantRefusesTheOneThatComesRightAfterTheQuestion)
{
    const TrashHouse house;
    const FileURL root = house.url("home/root");
    const FileURL x(house.directory().fileWith("home/root/x", "one"));
    MoveBatch batch;
    batch.stayIn(root, [&] {
        fs::rename(root.path(), house.path("home/former"));
        house.directory().fileWith("home/root/x", "another's");
        return true;
    });
    EXPECT_EQ(errorOf([&] {
                  moveItem(x, house.url("home/root/y"), {root, std::nullopt, &batch});
              }),
              std::make_error_code(std::errc::no_such_file_or_directory));
    EXPECT_TRUE(stands(x.path()));
}

TEST(MoveBatch, thatStaysInAFolderMovesThereAgainWhenItIsBack)
{
    SwappedRoot swapped;
    fs::rename(swapped.root().path(), swapped.house.path("home/another"));
    fs::rename(swapped.house.path("home/former"), swapped.root().path());
    moveItem(swapped.root().appending("x"), swapped.root().appending("y"), swapped.conditions());
    EXPECT_EQ(swapped.house.directory().read("home/root/y"), "one");
}

TEST(MoveBatch, thatStaysInAFolderThatIsGoneRefusesOneThatComesLater)
{
    const TrashHouse house;
    MoveBatch batch;
    batch.stayIn(house.url("home/root"));
    const FileURL x(house.directory().fileWith("home/root/x", "later"));
    EXPECT_EQ(
        errorOf([&] {
            moveItem(x, house.url("home/root/y"), {house.url("home/root"), std::nullopt, &batch});
        }),
        std::make_error_code(std::errc::no_such_file_or_directory));
    EXPECT_TRUE(stands(x.path()));
}

TEST(MoveBatch, anItemWhosePreparedNameIsTakenMeanwhileGetsAnother)
{
    Batch batch;
    MoveBatch moves;
    const MoveConditions conditions{std::nullopt, std::nullopt, &moves};
    prepareToTrash(batch.urls, conditions);
    batch.house.directory().fileWith("data/Trash/files/0", "another's");
    const FileURL place = trashItem(batch.urls[0], conditions);
    EXPECT_EQ(place.path(), batch.house.trash("files/0.2"));
    EXPECT_TRUE(stands(batch.house.trash("info/0.2.trashinfo")));
    EXPECT_FALSE(stands(batch.house.trash("info/0.trashinfo")));
    EXPECT_EQ(batch.house.directory().read("data/Trash/files/0"), "another's");
}

TEST(MoveBatch, itemsOfOneNameFromSeveralFoldersGetNamesOfTheirOwn)
{
    const TrashHouse house;
    house.directory().fileWith("home/a/x.txt", "one");
    house.directory().fileWith("home/b/x.txt", "two");
    MoveBatch moves;
    const MoveConditions conditions{std::nullopt, std::nullopt, &moves};
    const std::vector<FileURL> urls{house.url("home/a/x.txt"), house.url("home/b/x.txt")};
    prepareToTrash(urls, conditions);
    EXPECT_EQ(trashItem(urls[1], conditions).path(), house.trash("files/x.2.txt"));
    EXPECT_EQ(trashItem(urls[0], conditions).path(), house.trash("files/x.txt"));
    EXPECT_NE(house.directory().read("data/Trash/info/x.2.txt.trashinfo").find("home/b/x.txt"),
              std::string::npos);
}

TEST(MoveBatch, theSizesOfAllItsFoldersAreWrittenOnce)
{
    const TrashHouse house;
    std::vector<FileURL> urls;
    for (const char* folder : {"home/a", "home/b", "home/c"}) {
        house.directory().file(std::string(folder) + "/file", 5'000);
        urls.push_back(house.url(folder));
    }
    const MoveFaults faults;
    {
        const MoveCalls calls = faults.calls();
        MoveBatch moves(calls);
        for (const FileURL& url : urls) {
            (void)trashItem(url, {std::nullopt, std::nullopt, &moves}, calls);
        }
    }
    EXPECT_EQ(count(faults, "files.rename"), 1);
    const std::string sizes = house.directory().read("data/Trash/directorysizes");
    EXPECT_EQ(std::count(sizes.begin(), sizes.end(), '\n'), 3);
}

TEST(MoveBatch, aFolderWhoseMountsCannotBeToldStaysWhereItIs)
{
    const TrashHouse house;
    house.directory().fileWith("home/folder/inside", "content");
    for (const char* const call : {"mounts", "pathOf"}) {
        MoveCalls calls;
        if (std::string(call) == "mounts") {
            calls.mounts = [](auto) { return -EIO; };
        } else {
            calls.pathOf = [](int, std::string&) { return -EIO; };
        }
        EXPECT_EQ(test::codeOf([&] {
                      moveItem(house.url("home/folder"), house.url("home/moved"), {}, calls);
                  }),
                  std::errc::io_error)
            << call;
        EXPECT_TRUE(stands(house.path("home/folder/inside")));
    }
}

}  // namespace

}  // namespace gruk
