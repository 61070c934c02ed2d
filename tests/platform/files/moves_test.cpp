#include "platform/files/moves.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/move_checks.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/trash_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::at;
using test::codeOf;
using test::identityAt;
using test::itemRecord;
using test::stands;
using test::TemporaryDirectory;
using test::treeRecord;
using test::within;
using test::withoutThePromise;

TEST(Moves, movesAFileWithAllThatItIs)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "content");
    directory.folder("b");
    const std::string before = itemRecord(directory.path("a"));
    moveItem(at(directory, "a"), at(directory, "b/c"));
    EXPECT_FALSE(stands(directory.path("a")));
    EXPECT_EQ(itemRecord(directory.path("b/c")), before);
    EXPECT_EQ(directory.read("b/c"), "content");
}

TEST(Moves, neverReplaces)
{
    const TemporaryDirectory directory;
    directory.fileWith("file", "one");
    directory.folder("empty");
    directory.symbolicLink("nowhere", "missing");
    directory.fileWith("moved", "two");
    const auto before = treeRecord(directory.path());
    for (const MoveCalls& calls : {MoveCalls(), withoutThePromise()}) {
        for (const char* taken : {"file", "empty", "nowhere", "moved"}) {
            EXPECT_EQ(
                codeOf([&] { moveItem(at(directory, "moved"), at(directory, taken), {}, calls); }),
                std::errc::file_exists)
                << taken;
        }
        EXPECT_EQ(
            codeOf([&] { moveItem(at(directory, "empty"), at(directory, "file"), {}, calls); }),
            std::errc::file_exists);
        EXPECT_EQ(treeRecord(directory.path()), before);
    }
}

TEST(Moves, movesEveryTypeOfItemWhereTheFileSystemCannotPromiseNotToReplace)
{
    for (const int error : {EINVAL, ENOSYS, EOPNOTSUPP}) {
        const TemporaryDirectory directory;
        directory.fileWith("from/file", "content");
        directory.fileWith("from/folder/inner", "inner");
        directory.symbolicLink("from/link", "nowhere");
        ASSERT_EQ(::mkfifo(directory.path("from/pipe").c_str(), 0600), 0);
        directory.folder("to");
        const auto before = treeRecord(directory.path("from"));
        const MoveCalls calls = withoutThePromise(error);
        for (const char* name : {"file", "folder", "link", "pipe"}) {
            const FileURL source = at(directory, std::string("from/") + name);
            const MoveConditions conditions{directory.url(), identityAt(source)};
            moveItem(source, at(directory, std::string("to/") + name), conditions, calls);
        }
        EXPECT_EQ(treeRecord(directory.path("to")), before);
        EXPECT_TRUE(fs::is_empty(directory.path("from")));
    }
}

TEST(Moves, leavesAPlaceHolderAloneThatSomebodyElseUsesMeanwhile)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "content");
    MoveCalls calls = withoutThePromise();
    const auto live = calls.createExclusive;
    calls.createExclusive = [&](int parent, const char* name, unsigned permissions) {
        const int result = live(parent, name, permissions);
        fs::remove(directory.path("b"));
        directory.fileWith("b", "theirs");
        return result;
    };
    EXPECT_EQ(codeOf([&] { moveItem(at(directory, "a"), at(directory, "b"), {}, calls); }),
              std::errc::device_or_resource_busy);
    EXPECT_EQ(directory.read("a"), "content");
    EXPECT_EQ(directory.read("b"), "theirs");
}

TEST(Moves, takesItsPlaceHolderAwayWhenTheMoveFails)
{
    for (const char* item : {"file", "folder"}) {
        const TemporaryDirectory directory;
        directory.fileWith("file", "content");
        directory.fileWith("folder/inner", "inner");
        const auto before = treeRecord(directory.path());
        MoveCalls calls = withoutThePromise();
        calls.moveOver = [](int, const char*, int, const char*) { return -EIO; };
        EXPECT_EQ(codeOf([&] { moveItem(at(directory, item), at(directory, "to"), {}, calls); }),
                  std::errc::io_error);
        EXPECT_EQ(treeRecord(directory.path()), before);
    }
}

TEST(Moves, aFolderCannotGoIntoItself)
{
    const TemporaryDirectory directory;
    directory.folder("a/b");
    const auto before = treeRecord(directory.path());
    for (const MoveCalls& calls : {MoveCalls(), withoutThePromise()}) {
        EXPECT_EQ(codeOf([&] { moveItem(at(directory, "a"), at(directory, "a/b/c"), {}, calls); }),
                  std::errc::invalid_argument);
        EXPECT_EQ(treeRecord(directory.path()), before);
    }
}

TEST(Moves, aFileOfTwoNamesIsNotLostOnItsOtherName)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "content");
    directory.hardLink("b", "a");
    const auto before = treeRecord(directory.path());
    EXPECT_EQ(codeOf([&] { moveItem(at(directory, "a"), at(directory, "b")); }),
              std::errc::file_exists);
    EXPECT_EQ(treeRecord(directory.path()), before);
}

TEST(Moves, aMissingItemOrFolderIsAnError)
{
    const TemporaryDirectory directory;
    directory.fileWith("a", "content");
    directory.fileWith("file", "content");
    const auto before = treeRecord(directory.path());
    EXPECT_EQ(codeOf([&] { moveItem(at(directory, "missing"), at(directory, "b")); }),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(codeOf([&] { moveItem(at(directory, "a"), at(directory, "missing/b")); }),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(codeOf([&] { moveItem(at(directory, "a"), at(directory, "file/b")); }),
              std::errc::not_a_directory);
    EXPECT_EQ(codeOf([&] { moveItem(FileURL("/"), at(directory, "b")); }),
              std::errc::invalid_argument);
    EXPECT_EQ(treeRecord(directory.path()), before);
}

TEST(Moves, movesTheLinkAndNeverItsTarget)
{
    const TemporaryDirectory directory;
    directory.fileWith("target/inner", "inner");
    directory.symbolicLink("link", directory.path("target"));
    directory.symbolicLink("loop", "loop");
    directory.symbolicLink("nowhere", "missing");
    directory.folder("to");
    const std::string target = itemRecord(directory.path("target"));
    for (const char* name : {"link", "loop", "nowhere"}) {
        const std::string before = itemRecord(directory.path(name));
        moveItem(at(directory, name), at(directory, std::string("to/") + name),
                 {directory.url(), identityAt(at(directory, name))});
        EXPECT_EQ(itemRecord(directory.path(std::string("to/") + name)), before);
        EXPECT_FALSE(stands(directory.path(name)));
    }
    EXPECT_EQ(itemRecord(directory.path("target")), target);
}

TEST(Moves, movesNamesOfAnyBytesAndOfTheGreatestLength)
{
    const TemporaryDirectory directory;
    directory.folder("to");
    for (const std::string& name :
         {std::string("\xff\xfe \n\x01"), std::string(255, 'n'), std::string("-rf *"),
          std::string("é\xcc\x81"), std::string("%41 ?#")}) {
        directory.fileWith(name, name);
        moveItem(at(directory, name), at(directory, "to/" + name), within(directory.url()));
        EXPECT_FALSE(stands(directory.path(name)));
        EXPECT_EQ(directory.read("to/" + name), name);
    }
}

/// Makes 30 folders of long names one in the other; the path is far longer than a call takes.
FileURL deepFolder(const TemporaryDirectory& directory)
{
    const std::string name(240, 'd');
    FileURL deep = directory.url();
    for (int i = 0; i < 30; ++i) {
        deep = deep.appending(name, FileURL::Names::directory);
        makeDirectory(deep);
    }
    return deep;
}

TEST(Moves, goesInAndOutOfPathsBeyondWhatACallTakes)
{
    const TemporaryDirectory directory;
    const FileURL deep = deepFolder(directory);
    directory.fileWith("a", "content");
    const FileURL place = deep.appending("a");
    for (const MoveConditions& conditions : {MoveConditions{}, within(directory.url())}) {
        moveItem(at(directory, "a"), place, conditions);
        EXPECT_TRUE(itemStands(place));
        EXPECT_TRUE(itemIsReachable(place));
        EXPECT_EQ(itemsIn(deep, HiddenItems::listed), std::vector<FileURL>{place});
        replaceOwnFile(deep.appending(".journal"), "text", conditions);
        EXPECT_TRUE(itemStands(deep.appending(".journal")));
        moveItem(deep.appending(".journal"), at(directory, "journal"), conditions);
        EXPECT_EQ(directory.read("journal"), "text");
        fs::remove(directory.path("journal"));
        moveItem(place, at(directory, "a"), conditions);
        EXPECT_EQ(directory.read("a"), "content");
    }
}

TEST(Moves, movesPipesAndSocketsWithoutOpeningThem)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo(directory.path("pipe").c_str(), 0600), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string place = directory.path("socket");
    std::copy(place.begin(), place.end(), std::begin(address.sun_path));
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    for (const char* name : {"pipe", "socket"}) {
        const std::string before = itemRecord(directory.path(name));
        const std::string to = std::string(name) + " moved";
        moveItem(at(directory, name), at(directory, to),
                 {directory.url(), identityAt(at(directory, name))});
        EXPECT_EQ(itemRecord(directory.path(to)), before);
    }
}

TEST(Moves, neverCopiesToAnotherFileSystem)
{
    // Out here, since it can be removed once nothing is mounted in it.
    const TemporaryDirectory directory;
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(directory.folder("disk"));
        directory.fileWith("a", "content");
        const auto before = treeRecord(directory.path());
        std::string complaint;
        try {
            moveItem(at(directory, "a"), at(directory, "disk/a"));
            complaint = "moved across file systems. ";
        } catch (const FileError& error) {
            if (error.code() != std::errc::cross_device_link) {
                complaint = std::string("the wrong error: ") + error.what();
            }
        }
        return treeRecord(directory.path()) == before ? complaint : complaint + "changed. ";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(Moves, whatMayNotBeLeftStaysAndTheErrorSaysSo)
{
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& directory) {
            directory.fileWith("closed/a", "content");
            directory.folder("open");
            fs::permissions(directory.path("closed"),
                            fs::perms::owner_read | fs::perms::owner_exec);
            bool isRefused = false;
            try {
                moveItem(at(directory, "closed/a"), at(directory, "open/a"));
            } catch (const FileError& error) {
                isRefused = meaning(error) == ErrorMeaning::accessRefused;
            }
            return isRefused && directory.read("closed/a") == "content"
                   && fs::is_empty(directory.path("open"));
        },
        TemporaryDirectory()));
}

}  // namespace

}  // namespace gruk
