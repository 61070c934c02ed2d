#include "platform/files/trash.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "platform/files/move_batch.h"
#include "platform/files/moves.h"
#include "platform/foundation/errors.h"
#include "tests/support/move_checks.h"
#include "tests/support/same_number.h"
#include "tests/support/trash_house.h"

// What the Trash at home takes care of: info files, the order in which the disk hears of things,
// and which item is which.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::codeOf;
using test::makeAnewUnderTheSameNumber;
using test::stands;
using test::TrashHouse;

ItemIdentity identityOf(const FileURL& url)
{
    return requiredIdentity(url);
}

std::string openPath(int descriptor)
{
    return fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();
}

/// Calls that run `meanwhile` once, right before an item is moved.
template <typename Action>
MoveCalls withMeanwhile(Action meanwhile)
{
    MoveCalls calls;
    calls.moveWithoutReplacing = [meanwhile, isDone = false, live = calls.moveWithoutReplacing](
                                     int fromDirectory, const char* from, int toDirectory,
                                     const char* to) mutable {
        if (!std::exchange(isDone, true)) {
            meanwhile();
        }
        return live(fromDirectory, from, toDirectory, to);
    };
    return calls;
}

TEST(TrashCare, theDiskHearsOfTheInfoFileThenOfTheItemAndOfItsOldPlaceLast)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    std::vector<std::string> heard;
    MoveCalls calls;
    calls.synchronize = [&](int file) {
        heard.push_back("content of " + openPath(file));
        return 0;
    };
    calls.synchronizeDirectory = [&](int directory) {
        heard.push_back("names in " + openPath(directory));
        return 0;
    };
    calls.moveWithoutReplacing =
        [&, live = calls.moveWithoutReplacing](int fromDirectory, const char* from, int toDirectory,
                                               const char* to) {
            heard.emplace_back("move");
            return live(fromDirectory, from, toDirectory, to);
        };
    (void)trashItem(house.url("home/a"), {}, calls);
    const std::vector<std::string> wanted{
        "content of " + house.trash("info/a.trashinfo"), "names in " + house.trash("info"), "move",
        "names in " + house.trash("files"), "names in " + house.path("home")};
    EXPECT_EQ(heard, wanted);
}

TEST(TrashCare, anotherItemThatStrayedKeepsItsInfoFileAndIsNamedWithItsPlace)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "reviewed");
    house.directory().fileWith("home/other", "swapped in");
    const ItemIdentity reviewed = identityOf(house.url("home/a"));
    MoveCalls calls;
    calls.moveWithoutReplacing = [&, isFirst = true, live = calls.moveWithoutReplacing](
                                     int fromDirectory, const char* from, int toDirectory,
                                     const char* to) mutable {
        const bool isSwapping = std::exchange(isFirst, false);
        if (isSwapping) {
            fs::rename(house.path("home/other"), house.path("home/a"));
        }
        const int result = live(fromDirectory, from, toDirectory, to);
        if (isSwapping) {
            house.directory().fileWith("home/a", "saved once more");
        }
        return result;
    };
    std::string place;
    try {
        (void)trashItem(house.url("home/a"), {house.directory().url(), reviewed}, calls);
    } catch (const StrayedItemError& error) {
        place = error.place();
    }
    EXPECT_EQ(place, house.trash("files/a"));
    EXPECT_EQ(house.directory().read("data/Trash/files/a"), "swapped in");
    EXPECT_EQ(house.directory().read("home/a"), "saved once more");
    ASSERT_TRUE(stands(house.trash("info/a.trashinfo")));
    EXPECT_NE(house.directory()
                  .read("data/Trash/info/a.trashinfo")
                  .find("Path=" + house.path("home/a") + "\n"),
              std::string::npos);
}

TEST(TrashCare, aPartOfTheTrashThatIsALinkTakesNothing)
{
    for (const char* part : {"files", "info"}) {
        const TrashHouse house;
        house.directory().folder("data/Trash");
        house.directory().folder("elsewhere");
        house.directory().symbolicLink(std::string("data/Trash/") + part, house.path("elsewhere"));
        house.directory().fileWith("home/a", "content");
        const std::error_code code = codeOf([&] { (void)trashItem(house.url("home/a")); });
        EXPECT_TRUE(code == std::errc::not_a_directory
                    || code == std::errc::too_many_symbolic_link_levels)
            << part << ": " << code;
        EXPECT_EQ(house.directory().read("home/a"), "content");
        EXPECT_TRUE(fs::is_empty(house.path("elsewhere"))) << part;
    }
}

TEST(TrashCare, anInfoFileThatSomebodyClearedBeforeItsItemCameIsWrittenAnew)
{
    const TrashHouse house;
    std::vector<FileURL> urls;
    for (const char* name : {"home/a", "home/b", "home/c"}) {
        house.directory().fileWith(name, name);
        urls.push_back(house.url(name));
    }
    {
        MoveBatch batch;
        const MoveConditions conditions{std::nullopt, std::nullopt, &batch};
        prepareToTrash(urls, conditions);
        const std::string prepared = house.directory().read("data/Trash/info/b.trashinfo");
        // As programs do that take info files without items for left-overs.
        fs::remove(house.trash("info/a.trashinfo"));
        fs::remove(house.trash("info/b.trashinfo"));
        for (const FileURL& url : urls) {
            (void)trashItem(url, conditions);
        }
        batch.finish();
        EXPECT_EQ(house.directory().read("data/Trash/info/b.trashinfo"), prepared);
    }
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_TRUE(stands(house.trash("info/" + std::string(name) + ".trashinfo"))) << name;
    }
}

TEST(TrashCare, theInfoFileOfASingleItemIsWrittenAnewToo)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    const MoveCalls calls = withMeanwhile([&] { fs::remove(house.trash("info/a.trashinfo")); });
    const FileURL place = trashItem(house.url("home/a"), {}, calls);
    ASSERT_TRUE(stands(house.trash("info/a.trashinfo")));
    restoreTrashedItem(place, house.url("home/a"));
    EXPECT_FALSE(stands(house.trash("info/a.trashinfo")));
    EXPECT_EQ(house.directory().read("home/a"), "content");
}

TEST(TrashCare, noInfoFileIsWrittenForWhatLeftTheTrashAgainOrForAnotherItem)
{
    const TrashHouse house;
    house.directory().fileWith("home/gone", "one");
    house.directory().fileWith("home/taken", "two");
    {
        MoveBatch batch;
        const MoveConditions conditions{std::nullopt, std::nullopt, &batch};
        (void)trashItem(house.url("home/gone"), conditions);
        (void)trashItem(house.url("home/taken"), conditions);
        house.directory().fileWith("other", "another program's");
        fs::rename(house.path("other"), house.trash("files/taken"));
        fs::remove(house.trash("files/gone"));
        fs::remove(house.trash("info/gone.trashinfo"));
        fs::remove(house.trash("info/taken.trashinfo"));
    }
    EXPECT_TRUE(fs::is_empty(house.trash("info")));
}

TEST(TrashCare, theInfoFileOfAnItemThatTookTheNameMeanwhileStays)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    const FileURL place = trashItem(house.url("home/a"));
    {
        MoveBatch batch;
        restoreTrashedItem(place, house.url("home/a"), {std::nullopt, std::nullopt, &batch});
        house.directory().fileWith("data/Trash/files/a", "another program's");
    }
    EXPECT_EQ(house.directory().read("home/a"), "content");
    EXPECT_TRUE(stands(house.trash("info/a.trashinfo")));
    EXPECT_EQ(house.directory().read("data/Trash/files/a"), "another program's");
}

/// An info file that takes the number of ours is told from it by its time of birth.
TEST(TrashCare, anInfoFileMadeAnewUnderTheNumberOfOursIsNotRemoved)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    bool isPossible = false;
    MoveCalls calls;
    calls.moveWithoutReplacing = [&](int, const char*, int, const char*) {
        isPossible = makeAnewUnderTheSameNumber(house.trash("info/a.trashinfo"), "another's");
        return -EIO;
    };
    EXPECT_EQ(codeOf([&] { (void)trashItem(house.url("home/a"), {}, calls); }),
              std::errc::io_error);
    if (!isPossible) {
        GTEST_SKIP() << "this file system gives no number twice";
    }
    EXPECT_EQ(house.directory().read("data/Trash/info/a.trashinfo"), "another's");
}

TEST(TrashCare, anInfoFileWhoseTimeOfBirthCannotBeToldAnyMoreIsNotRemoved)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    bool isMoved = false;
    MoveCalls calls;
    calls.facts = [&, live = calls.facts](int folder, const char* name, LastLink link,
                                          PlaceFacts& found) {
        const int result = live(folder, name, link, found);
        if (isMoved) {
            found.item.created.reset();
        }
        return result;
    };
    calls.moveWithoutReplacing = [&](int, const char*, int, const char*) {
        isMoved = true;
        return -EIO;
    };
    EXPECT_EQ(codeOf([&] { (void)trashItem(house.url("home/a"), {}, calls); }),
              std::errc::io_error);
    if (itemFacts(house.url("home/a")).created) {
        EXPECT_TRUE(stands(house.trash("info/a.trashinfo")));
    }
}

TEST(TrashCare, anItemMadeAnewUnderTheNumberOfTheReviewedOneStays)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "reviewed");
    const MoveConditions conditions{house.directory().url(), identityOf(house.url("home/a"))};
    if (!makeAnewUnderTheSameNumber(house.path("home/a"), "saved anew")) {
        GTEST_SKIP() << "this file system gives no number twice";
    }
    EXPECT_EQ(codeOf([&] { (void)trashItem(house.url("home/a"), conditions); }),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(house.directory().read("home/a"), "saved anew");
}

TEST(TrashCare, anItemMadeAnewUnderThatNumberInTheMomentOfTheMoveGoesBack)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "reviewed");
    const MoveConditions conditions{house.directory().url(), identityOf(house.url("home/a"))};
    bool isPossible = false;
    const MoveCalls calls = withMeanwhile(
        [&] { isPossible = makeAnewUnderTheSameNumber(house.path("home/a"), "saved anew"); });
    const std::error_code code =
        codeOf([&] { (void)trashItem(house.url("home/a"), conditions, calls); });
    if (!isPossible) {
        GTEST_SKIP() << "this file system gives no number twice";
    }
    EXPECT_EQ(code, std::errc::no_such_file_or_directory);
    EXPECT_EQ(house.directory().read("home/a"), "saved anew");
    EXPECT_TRUE(fs::is_empty(house.trash("files")));
    EXPECT_TRUE(fs::is_empty(house.trash("info")));
}

TEST(TrashCare, whereNoTimeOfBirthIsKeptTheNumberAloneTells)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    MoveCalls calls;
    calls.facts = [live = calls.facts](int folder, const char* name, LastLink link,
                                       PlaceFacts& found) {
        const int result = live(folder, name, link, found);
        found.item.created.reset();
        return result;
    };
    const ItemIdentity known = identityOf(house.url("home/a"));
    const ItemIdentity unknown = requiredIdentity(house.url("home/a"), calls);
    EXPECT_FALSE(unknown.created);
    EXPECT_EQ(known, unknown);
    const FileURL place = trashItem(house.url("home/a"), {house.directory().url(), unknown}, calls);
    EXPECT_EQ(place.path(), house.trash("files/a"));
}

}  // namespace

}  // namespace gruk
