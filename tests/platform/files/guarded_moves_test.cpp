#include "platform/files/moves.h"

#include <cerrno>
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

// What the conditions of a move keep it from.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::at;
using test::codeOf;
using test::identityAt;
using test::stands;
using test::TemporaryDirectory;
using test::treeRecord;
using test::within;

TEST(Moves, aLinkBelowTheAuthorisedFolderLeadsNothingInOrOut)
{
    const TemporaryDirectory directory;
    directory.fileWith("outside/a", "outside");
    directory.fileWith("root/a", "inside");
    directory.symbolicLink("root/out", directory.path("outside"));
    const auto before = treeRecord(directory.path());
    const MoveConditions conditions = within(at(directory, "root"));
    for (const auto& [from, to] :
         {std::pair("root/out/a", "root/b"), std::pair("root/a", "root/out/b")}) {
        const std::error_code code =
            codeOf([&] { moveItem(at(directory, from), at(directory, to), conditions); });
        EXPECT_TRUE(code == std::errc::not_a_directory
                    || code == std::errc::too_many_symbolic_link_levels);
    }
    codeOf([&] { makeDirectory(at(directory, "root/out/b"), conditions); });
    codeOf([&] { replaceOwnFile(at(directory, "root/out/b"), "x", conditions); });
    EXPECT_EQ(treeRecord(directory.path()), before);
}

TEST(Moves, aWayThatLeadsUpOutOfTheAuthorisedFolderIsRefused)
{
    const TemporaryDirectory directory;
    directory.fileWith("outside/a", "outside");
    directory.folder("root/b");
    const auto before = treeRecord(directory.path());
    EXPECT_EQ(codeOf([&] {
                  moveItem(at(directory, "root/b/../../outside/a"), at(directory, "root/a"),
                           within(at(directory, "root")));
              }),
              std::errc::invalid_argument);
    EXPECT_EQ(treeRecord(directory.path()), before);
}

TEST(Moves, linksOnTheWayToTheAuthorisedFolderAreFollowed)
{
    const TemporaryDirectory directory;
    directory.fileWith("real/root/a", "content");
    directory.symbolicLink("linked", "real");
    const FileURL root = FileURL::directory(directory.path("linked/root"));
    moveItem(root.appending("a"), root.appending("b"), within(root));
    EXPECT_EQ(directory.read("real/root/b"), "content");
}

TEST(Moves, theWholeDiskMayBeTheAuthorisedFolder)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "content");
    moveItem(at(directory, "a"), at(directory, "b"), within(FileURL()));
    EXPECT_EQ(directory.read("b"), "content");
}

TEST(Moves, withNothingAuthorisedAPathIsFollowedAsItReads)
{
    const TemporaryDirectory directory;
    directory.fileWith("real/a", "content");
    directory.symbolicLink("link", "real");
    moveItem(at(directory, "link/a"), at(directory, "b"));
    EXPECT_EQ(directory.read("b"), "content");
}

TEST(Moves, anotherItemThanTheOneThatIsMeantStaysWhereItIs)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "reviewed");
    const ItemIdentity identity = identityAt(at(directory, "a"));
    directory.fileWith("new", "saved anew");
    fs::rename(directory.path("new"), directory.path("a"));
    const auto before = treeRecord(directory.path());
    EXPECT_EQ(codeOf([&] {
                  moveItem(at(directory, "a"), at(directory, "b"), {std::nullopt, identity});
              }),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(treeRecord(directory.path()), before);
}

/// Calls in which `swap` runs just before the first move.
MoveCalls swappingBeforeTheMove(std::function<void()> swap)
{
    MoveCalls calls;
    calls.moveWithoutReplacing = [swap = std::move(swap), live = calls.moveWithoutReplacing,
                                  isDone = false](int fromDirectory, const char* from,
                                                  int toDirectory, const char* to) mutable {
        if (!std::exchange(isDone, true)) {
            swap();
        }
        return live(fromDirectory, from, toDirectory, to);
    };
    return calls;
}

TEST(Moves, anItemThatIsPutThereInTheMomentOfTheMoveGoesBack)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "reviewed");
    directory.fileWith("other", "saved anew");
    const ItemIdentity identity = identityAt(at(directory, "a"));
    const MoveCalls calls =
        swappingBeforeTheMove([&] { fs::rename(directory.path("other"), directory.path("a")); });
    EXPECT_EQ(codeOf([&] {
                  moveItem(at(directory, "a"), at(directory, "b"), {std::nullopt, identity}, calls);
              }),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(directory.read("a"), "saved anew");
    EXPECT_FALSE(stands(directory.path("b")));
}

TEST(Moves, anItemThatCannotGoBackIsNamedInTheError)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "reviewed");
    directory.fileWith("other", "saved anew");
    const ItemIdentity identity = identityAt(at(directory, "a"));
    MoveCalls calls =
        swappingBeforeTheMove([&] { fs::rename(directory.path("other"), directory.path("a")); });
    calls.moveWithoutReplacing =
        [&, live = calls.moveWithoutReplacing](int fromDirectory, const char* from, int toDirectory,
                                               const char* to) {
            const int result = live(fromDirectory, from, toDirectory, to);
            directory.fileWith("a", "saved once more");
            return result;
        };
    try {
        moveItem(at(directory, "a"), at(directory, "b"), {std::nullopt, identity}, calls);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_NE(describe(error).find(directory.path("b")), std::string::npos) << describe(error);
    }
    EXPECT_EQ(directory.read("a"), "saved once more");
    EXPECT_EQ(directory.read("b"), "saved anew");
}

TEST(Moves, aServerThatMovedAndLostItsAnswerHasMoved)
{
    for (const int answer : {EINTR, ENOENT, EEXIST, EIO}) {
        const TemporaryDirectory directory;
        directory.fileWith("a", "content");
        MoveCalls calls;
        calls.moveWithoutReplacing =
            [&, live = calls.moveWithoutReplacing](int fromDirectory, const char* from,
                                                   int toDirectory, const char* to) {
                const int result = live(fromDirectory, from, toDirectory, to);
                return result == 0 ? -answer : result;
            };
        moveItem(at(directory, "a"), at(directory, "b"), {}, calls);
        EXPECT_EQ(directory.read("b"), "content");
    }
}

}  // namespace

}  // namespace gruk
