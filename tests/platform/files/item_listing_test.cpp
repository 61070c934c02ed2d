#include "platform/files/moves.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/move_checks.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/trash_house.h"

// The smaller operations beside a move: what stands, what a folder holds, a new folder, an own
// file.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::at;
using test::codeOf;
using test::stands;
using test::TemporaryDirectory;
using test::treeRecord;
using test::within;

TEST(Standing, anythingStandsEvenALinkThatLeadsNowhere)
{
    const TemporaryDirectory directory;
    directory.file("file");
    directory.symbolicLink("nowhere", "missing");
    EXPECT_TRUE(itemStands(at(directory, "file")));
    EXPECT_TRUE(itemStands(at(directory, "nowhere")));
    EXPECT_FALSE(itemStands(at(directory, "missing")));
    EXPECT_FALSE(itemStands(at(directory, "missing/below")));
    EXPECT_FALSE(itemStands(at(directory, "file/below")));
    EXPECT_TRUE(itemStands(FileURL()));
}

TEST(Standing, whatCannotBeLookedAtCountsAsNothing)
{
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& directory) {
            directory.file("closed/a");
            fs::permissions(directory.path("closed"), fs::perms::none);
            const bool isStanding = itemStands(at(directory, "closed/a"));
            const bool isReachable = itemIsReachable(at(directory, "closed/a"));
            fs::permissions(directory.path("closed"), fs::perms::owner_all);
            return !isStanding && !isReachable;
        },
        TemporaryDirectory()));
}

TEST(Standing, onlyWhatALinkLeadsToIsReachable)
{
    const TemporaryDirectory directory;
    directory.file("file");
    directory.symbolicLink("link", "file");
    directory.symbolicLink("nowhere", "missing");
    directory.symbolicLink("loop", "loop");
    EXPECT_TRUE(itemIsReachable(at(directory, "file")));
    EXPECT_TRUE(itemIsReachable(at(directory, "link")));
    EXPECT_FALSE(itemIsReachable(at(directory, "nowhere")));
    EXPECT_FALSE(itemIsReachable(at(directory, "loop")));
    EXPECT_FALSE(itemIsReachable(at(directory, "missing")));
}

TEST(Listing, givesThePlacesOfAllItemsOrOfThoseThatAreNotHidden)
{
    const TemporaryDirectory directory;
    directory.file("a");
    directory.folder("b");
    directory.symbolicLink("c", "b");
    directory.file(".d");
    directory.file("\xff");
    const auto sorted = [&](HiddenItems hidden, const MoveCalls& calls) {
        std::vector<FileURL> items = itemsIn(directory.url(), hidden, calls);
        std::sort(items.begin(), items.end());
        return items;
    };
    const std::vector<FileURL> visible{at(directory, "a"), FileURL::directory(directory.path("b")),
                                       at(directory, "c"), at(directory, "\xff")};
    std::vector<FileURL> all = visible;
    all.insert(all.begin(), at(directory, ".d"));
    EXPECT_EQ(sorted(HiddenItems::skipped, MoveCalls::live()), visible);
    EXPECT_EQ(sorted(HiddenItems::listed, MoveCalls::live()), all);

    MoveCalls withoutTypes;
    withoutTypes.list = [live = withoutTypes.list](int folder, MoveCalls::NameVisitor visit) {
        return live(folder, [&](const ListedName& child) { visit({child.name, std::nullopt}); });
    };
    EXPECT_EQ(sorted(HiddenItems::listed, withoutTypes), all);
}

TEST(Listing, ofNothingOrOfAFileIsAnError)
{
    const TemporaryDirectory directory;
    directory.file("a");
    EXPECT_EQ(
        codeOf([&] { static_cast<void>(itemsIn(at(directory, "missing"), HiddenItems::listed)); }),
        std::errc::no_such_file_or_directory);
    EXPECT_EQ(codeOf([&] { static_cast<void>(itemsIn(at(directory, "a"), HiddenItems::listed)); }),
              std::errc::not_a_directory);
}

TEST(MakingADirectory, needsAParentAndAFreeName)
{
    const TemporaryDirectory directory;
    makeDirectory(at(directory, "a"), within(directory.url()));
    EXPECT_TRUE(fs::is_directory(directory.path("a")));
    EXPECT_EQ(codeOf([&] { makeDirectory(at(directory, "a")); }), std::errc::file_exists);
    EXPECT_EQ(codeOf([&] { makeDirectory(at(directory, "b/c")); }),
              std::errc::no_such_file_or_directory);
    EXPECT_FALSE(stands(directory.path("b")));
}

TEST(ReplacingAnOwnFile, writesItAndWritesItAnew)
{
    const TemporaryDirectory directory;
    for (const char* text : {"first", "second", ""}) {
        replaceOwnFile(at(directory, ".journal"), text, within(directory.url()));
        EXPECT_EQ(directory.read(".journal"), text);
    }
    EXPECT_EQ(itemsIn(directory.url(), HiddenItems::listed).size(), 1U);
}

TEST(AnOwnFile, ofTheGreatestLengthIsReadAndOneByteMoreIsNot)
{
    const TemporaryDirectory directory;
    constexpr std::size_t longest = 10'000;
    directory.fileWith(".journal", std::string(longest, 'x'));
    const FileURL url = at(directory, ".journal");
    EXPECT_EQ(readOwnFile(url, longest), std::string(longest, 'x'));
    directory.fileWith(".journal", std::string(longest + 1, 'x'));
    EXPECT_EQ(readOwnFile(url, longest), std::nullopt);
}

TEST(AnOwnFile, isNotReadThroughALinkBelowTheFolderThatIsNamed)
{
    const TemporaryDirectory directory;
    directory.fileWith("elsewhere/.journal", "text");
    directory.folder("root");
    directory.symbolicLink("root/link", directory.path("elsewhere"));
    const FileURL url = at(directory, "root/link/.journal");
    EXPECT_EQ(readOwnFile(url, 100), "text");
    EXPECT_EQ(readOwnFile(url, 100, MoveCalls::live(), at(directory, "root")), std::nullopt);
}

TEST(ReplacingAnOwnFile, leavesAUsersFileOfItsName)
{
    const TemporaryDirectory directory;
    const FileURL url = at(directory, ".journal");
    const OwnContent own{10, [](std::string_view text) { return text.starts_with("own"); }};
    const auto replace = [&] {
        replaceOwnFile(url, "own 2", within(directory.url()), MoveCalls::live(), own);
    };
    replace();
    replace();
    EXPECT_EQ(directory.read(".journal"), "own 2");
    for (const char* text : {"notes", "", "own, but too long"}) {
        directory.fileWith(".journal", text);
        EXPECT_EQ(codeOf(replace), std::errc::file_exists) << text;
        EXPECT_EQ(directory.read(".journal"), text);
    }
    EXPECT_EQ(itemsIn(directory.url(), HiddenItems::listed).size(), 1U);
}

TEST(ReplacingAnOwnFile, neverWritesThroughALinkInTheAuthorisedFolder)
{
    const TemporaryDirectory directory;
    directory.fileWith("outside", "theirs");
    directory.folder("root");
    directory.symbolicLink("root/.journal", directory.path("outside"));
    const auto before = treeRecord(directory.path());
    EXPECT_EQ(codeOf([&] {
                  replaceOwnFile(at(directory, "root/.journal"), "text",
                                 within(at(directory, "root")));
              }),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(treeRecord(directory.path()), before);
}

TEST(ReplacingAnOwnFile, namesTheFileInItsErrors)
{
    const TemporaryDirectory directory;
    directory.folder(".journal");
    try {
        replaceOwnFile(at(directory, ".journal"), "text", within(directory.url()));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_EQ(error.path(), directory.path(".journal"));
    }
}

}  // namespace

}  // namespace gruk
