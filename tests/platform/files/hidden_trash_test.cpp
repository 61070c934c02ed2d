#include <cerrno>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <system_error>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/move_batch.h"
#include "platform/files/moves.h"
#include "platform/files/trash.h"
#include "platform/files/volumes.h"
#include "platform/foundation/errors.h"
#include "tests/support/private_mounts.h"
#include "tests/support/trash_house.h"

// Which Trash the desktop's tools do not show, and what the system's table of mounts is asked for.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::stands;
using test::TrashHouse;

std::string unless(bool condition, const std::string& complaint)
{
    return condition ? "" : complaint + ". ";
}

void expectWithMounts(const std::function<std::string()>& body)
{
    const test::MountedRun run = test::runWithPrivateMounts(body);
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

std::string own()
{
    return ".Trash-" + std::to_string(::geteuid());
}

/// The error that the call throws; none when there is none.
std::error_code errorOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const FileError& error) {
        return error.code();
    }
    return {};
}

std::string pathOf(const std::optional<FileURL>& url)
{
    return url ? url->path() : "none";
}

TEST(HiddenTrash, isThatOfAVolumeThatTheDesktopTakesForAPartOfTheSystem)
{
    expectWithMounts([] {
        const TrashHouse house;
        test::mountMemory(house.directory().folder("disk"));
        house.directory().fileWith("disk/folder/a", "content");
        const auto told = hiddenTrash(house.url("disk/folder/a"));
        std::string complaint =
            unless(pathOf(told) == house.path("disk/" + own() + "/files"), "told " + pathOf(told))
            + unless(!stands(house.path("disk/" + own())), "it was made by looking");
        const FileURL now = trashItem(house.url("disk/folder/a"));
        complaint += unless(now.deletingLastPathComponent() == told, "it lies at " + now.path());

        // The one for all users, where it is fit, with the user's own in it still to be made.
        const std::string shared = house.directory().folder("disk/.Trash");
        house.directory().fileWith("disk/folder/b", "content");
        complaint += unless(hiddenTrash(house.url("disk/folder/b")) == told, "it is not sticky");
        fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
        const auto second = hiddenTrash(house.url("disk/folder/b"));
        const FileURL there = trashItem(house.url("disk/folder/b"));
        complaint += unless(there.deletingLastPathComponent() == second,
                            "told " + pathOf(second) + ", came to " + there.path());
        test::unmount(house.path("disk"));
        return complaint;
    });
}

TEST(HiddenTrash, isNotTheOneAtHomeWhateverTheHomeLiesOn)
{
    expectWithMounts([] {
        const test::TemporaryDirectory outer;
        test::mountMemory(outer.folder("memory"));
        const test::EnvironmentVariable data("XDG_DATA_HOME", outer.path("memory/data"));
        outer.fileWith("memory/a", "content");
        const auto told = hiddenTrash(FileURL(outer.path("memory/a")));
        const auto missing = hiddenTrash(FileURL(outer.path("memory/nothing/there")));
        const std::string complaint =
            unless(!told, pathOf(told)) + unless(!missing, pathOf(missing));
        test::unmount(outer.path("memory"));
        return complaint;
    });
}

TEST(HiddenTrash, isNotThatOfAVolumeOfTheUsers)
{
    expectWithMounts([] {
        const TrashHouse house;
        house.directory().fileWith("real/a", "content");
        // The same disk once more, at a place of the user's own.
        test::mountAgain(house.path("real"), house.directory().folder("second"));
        const auto told = hiddenTrash(house.url("second/a"));
        test::unmount(house.path("second"));
        return unless(!told, pathOf(told));
    });
}

TEST(Volumes, whatIsMountedInAFolderIsToldByNameWithoutTouchingIt)
{
    expectWithMounts([] {
        const TrashHouse house;
        house.directory().folder("home/folder/deep");
        house.directory().folder("home/plain");
        house.directory().symbolicLink("way", "home");
        test::mountMemory(house.directory().folder("home/a b"));
        test::mountMemory(house.path("home/folder/deep"));
        bool isTouched = false;
        MoveCalls calls;
        calls.openDirectory = [&, live = calls.openDirectory](int folder, const char* name,
                                                              LastLink link) {
            isTouched = isTouched || std::string(name).find("a b") != std::string::npos;
            return live(folder, name, link);
        };
        const std::set<std::string> wanted{"a b"};
        const std::string complaint =
            unless(mountedNames(house.url("home"), calls) == wanted, "as it reads")
            + unless(mountedNames(house.url("way"), calls) == wanted, "through a link")
            + unless(mountedNames(house.url("home/plain"), calls).empty(), "an empty folder")
            + unless(!isTouched, "it was touched");
        test::unmount(house.path("home/folder/deep"));
        test::unmount(house.path("home/a b"));
        return complaint;
    });
}

TEST(Volumes, aTableThatCannotBeReadIsAnErrorForAll)
{
    const TrashHouse house;
    house.directory().fileWith("home/a", "content");
    MoveCalls calls;
    calls.mounts = [](MoveCalls::MountVisitor) { return -EIO; };
    EXPECT_EQ(errorOf([&] { (void)mountPoint(house.url("home/a"), calls); }), std::errc::io_error);
    EXPECT_EQ(errorOf([&] { (void)mountedNames(house.url("home"), calls); }), std::errc::io_error);
}

TEST(Volumes, aTableThatTheSystemDoesNotShowIsAnErrorForAll)
{
    expectWithMounts([] {
        const TrashHouse house;
        const std::string disk = house.directory().folder("disk");
        test::mountMemory(disk);
        house.directory().fileWith("disk/a", "content");
        test::mountMemory("/proc");
        const auto nowhere = [](std::uint64_t, const std::string&) {};
        const int told = MoveCalls::live().mounts(nowhere);
        const std::error_code top = errorOf([&] { (void)mountPoint(house.url("disk/a")); });
        const std::error_code moved = errorOf([&] { (void)trashItem(house.url("disk/a")); });
        test::unmount("/proc");
        const std::string complaint = unless(told < 0, "the table was read")
                                      + unless(bool(top), "a top was told")
                                      + unless(bool(moved), "the item was moved")
                                      + unless(stands(house.path("disk/a")), "the item is gone");
        test::unmount(disk);
        return complaint;
    });
}

TEST(TrashOfAVolume, takesNoInfoFileThatWasPreparedForAnotherPlace)
{
    expectWithMounts([] {
        const TrashHouse house;
        const std::string disk = house.directory().folder("disk");
        test::mountMemory(disk);
        house.directory().fileWith("disk/one/a", "first");
        house.directory().fileWith("disk/two/a", "second");
        house.directory().symbolicLink("way", "disk/one");
        std::string info;
        {
            MoveBatch batch;
            const MoveConditions conditions{std::nullopt, std::nullopt, &batch};
            prepareToTrash({house.url("way/a")}, conditions);
            // The link leads elsewhere by now; the item there has another old place.
            fs::remove(house.path("way"));
            house.directory().symbolicLink("way", "disk/two");
            const FileURL now = trashItem(house.url("way/a"), conditions);
            info = house.directory().read("disk/" + own() + "/info/"
                                          + std::string(now.lastPathComponent()) + ".trashinfo");
        }
        const std::string complaint =
            unless(info.starts_with("[Trash Info]\nPath=two/a\n"), info)
            + unless(stands(house.path("disk/one/a")), "the first one moved");
        test::unmount(disk);
        return complaint;
    });
}

TEST(TrashOfAVolume, inLayersTakesWhatALowerLayerHolds)
{
    expectWithMounts([]() -> std::string {
        const TrashHouse house;
        const test::TemporaryDirectory& disk = house.directory();
        test::mountMemory(disk.folder("lower"));
        test::mountMemory(disk.folder("writable"));
        disk.fileWith("lower/a", "content");
        disk.folder("writable/upper");
        disk.folder("writable/work");
        const std::string layers = "lowerdir=" + disk.path("lower")
                                   + ",upperdir=" + disk.path("writable/upper")
                                   + ",workdir=" + disk.path("writable/work");
        const std::string seen = disk.folder("disk");
        std::string complaint;
        if (::mount("layers", seen.c_str(), "overlay", 0, layers.c_str()) == 0) {
            const FileURL url = house.url("disk/a");
            const FileURL now = trashItem(url, {house.url("disk"), requiredIdentity(url)});
            complaint = unless(disk.read("disk/" + own() + "/files/a") == "content", now.path())
                        + unless(!stands(url.path()), "it is still there");
            test::unmount(seen);
        }
        test::unmount(disk.path("writable"));
        test::unmount(disk.path("lower"));
        return complaint;
    });
}

}  // namespace

}  // namespace gruk
