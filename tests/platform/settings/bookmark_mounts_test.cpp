#include "platform/settings/bookmarks.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

// Bookmarks of what is mounted: disks that come and go, under one name or another.

namespace gruk {

namespace {

using test::TemporaryDirectory;

/// Where the bookmark leads; none when it is not found there. Any other failure is thrown.
std::optional<std::string> placeOf(const std::string& bookmark)
{
    try {
        return resolveBookmark(bookmark).path();
    } catch (const FileError& error) {
        if (meaning(error) != ErrorMeaning::noSuchItem) {
            throw;
        }
        return std::nullopt;
    }
}

/// What to say when `condition` does not hold.
std::string unless(bool condition, const std::string& complaint)
{
    return condition ? "" : complaint + ". ";
}

std::string withLine(const std::string& bookmark, const std::string& key, const std::string& value)
{
    std::string result = bookmark;
    const std::size_t start = result.find("\n" + key + " ");
    if (start != std::string::npos) {
        result.erase(start + 1, result.find('\n', start + 1) - start);
    }
    return value.empty() ? result : result + key + " " + value + "\n";
}

#define EXPECT_WITH_MOUNTS(body)                                                                   \
    do {                                                                                           \
        const test::MountedRun run = test::runWithPrivateMounts(body);                             \
        if (!run.isPermitted) {                                                                    \
            GTEST_SKIP() << "this user may not mount anything";                                    \
        }                                                                                          \
        EXPECT_EQ(run.complaint, "");                                                              \
    } while (false)

TEST(BookmarkOfAMount, isNotFoundInTheBareMountPoint)
{
    const TemporaryDirectory directory;
    const std::string point = directory.folder("disk");
    EXPECT_WITH_MOUNTS([&] {
        test::mountMemory(point);
        std::filesystem::create_directory(point + "/photos");
        const std::string top = makeBookmark(FileURL(point));
        const std::string inside = makeBookmark(FileURL(point + "/photos"));
        std::string complaint = unless(placeOf(top) == point, "the mount was not found")
                                + unless(placeOf(inside) == point + "/photos", "nor its folder");
        test::unmount(point);
        std::filesystem::create_directory(point + "/photos");
        return complaint + unless(!placeOf(top), "the bare mount point was taken for the disk")
               + unless(!placeOf(inside), "a folder in the bare mount point was taken for it");
    });
}

TEST(BookmarkOfAMount, isNotFoundOnAnotherDiskAtTheSamePlace)
{
    const TemporaryDirectory directory;
    const std::string point = directory.folder("disk");
    EXPECT_WITH_MOUNTS([&] {
        test::mountMemory(point);
        const std::string bookmark = makeBookmark(FileURL(point));
        test::unmount(point);
        test::mountMemory(point);
        return unless(!placeOf(bookmark), "another disk was taken for the first");
    });
}

TEST(BookmarkOfAMount, followsTheDiskToAnotherNameBesideItsOldPlace)
{
    const TemporaryDirectory directory;
    const std::string first = directory.folder("media/disk");
    const std::string second = directory.folder("media/disk1");
    EXPECT_WITH_MOUNTS([&] {
        test::mountMemory(first);
        const std::string bookmark = makeBookmark(FileURL(first));
        if (::mount(first.c_str(), second.c_str(), nullptr, MS_MOVE, nullptr) != 0) {
            return std::string("the mount could not be moved");
        }
        return unless(placeOf(bookmark) == second, "the moved disk was not found");
    });
}

TEST(BookmarkOfADirectory, isNotTakenForADiskMountedOverIt)
{
    const TemporaryDirectory directory;
    const std::string realm = directory.folder("realm");
    EXPECT_WITH_MOUNTS([&] {
        const std::string bookmark = makeBookmark(FileURL(realm));
        test::mountMemory(realm);
        std::string complaint = unless(!placeOf(bookmark), "the disk was taken for the folder");
        test::unmount(realm);
        return complaint + unless(placeOf(bookmark) == realm, "the folder was not found again");
    });
}

TEST(BookmarkOfADirectory, isComparedByTheMountPointWhenNothingElseIsKnownOfTheVolume)
{
    const TemporaryDirectory directory;
    const std::string point = directory.folder("disk");
    EXPECT_WITH_MOUNTS([&] {
        test::mountMemory(point);
        const std::string made = withLine(makeBookmark(FileURL(point)), "volume-number", "");
        const std::string here = withLine(made, "mount-point", "file://" + point);
        const std::string there = withLine(made, "mount-point", "file://" + point + "s");
        return unless(placeOf(here) == point, "the mount was not found")
               + unless(!placeOf(there), "a volume mounted elsewhere was taken for it");
    });
}

TEST(BookmarkOfADirectory, madeWhereInodesAreMadeUpIsNotFoundWhereTheyAreKept)
{
    const TemporaryDirectory directory;
    const std::string realm = directory.folder("realm");
    // As on a file system that makes its inode numbers up, which records none.
    const std::string made = withLine(makeBookmark(FileURL(realm)), "inode", "");
    EXPECT_EQ(placeOf(made), std::nullopt);
}

/// Two disks in files, with the same folder on each.
class BookmarkOfADisk : public ::testing::Test {
protected:
    [[nodiscard]] std::string makeDisk(const std::string& name) const
    {
        const std::string image = directory_.path(name);
        const std::string folder = directory_.folder("content");
        (void)directory_.folder("content/photos");
        (void)directory_.file(name);
        std::filesystem::resize_file(image, 4'194'304);
        const std::string command =
            "PATH=$PATH:/usr/sbin:/sbin mkfs.ext4 -q -F -d '" + folder + "' '" + image + "'";
        return std::system(command.c_str()) == 0 ? image : "";
    }

    /// False where the system has no loop devices for this.
    static bool mountDisk(const std::string& image, const std::string& point)
    {
        const std::string command =
            "PATH=$PATH:/usr/sbin:/sbin mount -o loop '" + image + "' '" + point + "' 2>/dev/null";
        return std::system(command.c_str()) == 0;
    }

    TemporaryDirectory directory_;
};

constexpr const char* noLoopDevices = "no loop devices";

#define EXPECT_WITH_DISKS(body)                                                                    \
    do {                                                                                           \
        const test::MountedRun run = test::runWithPrivateMounts(body);                             \
        if (!run.isPermitted || run.complaint == noLoopDevices) {                                  \
            GTEST_SKIP() << "this user may not mount disks from files";                            \
        }                                                                                          \
        EXPECT_EQ(run.complaint, "");                                                              \
    } while (false)

TEST_F(BookmarkOfADisk, isFoundAgainOnThatDiskAlone)
{
    const std::string first = makeDisk("first.img");
    const std::string second = makeDisk("second.img");
    if (first.empty() || second.empty()) {
        GTEST_SKIP() << "there is no tool to make a disk";
    }
    const std::string point = directory_.folder("media/disk");
    const std::string other = directory_.folder("media/disk1");
    EXPECT_WITH_DISKS([&]() -> std::string {
        if (!mountDisk(first, point)) {
            return noLoopDevices;
        }
        const std::string top = makeBookmark(FileURL(point));
        const std::string inside = makeBookmark(FileURL(point + "/photos"));
        test::unmount(point);
        std::string complaint = unless(!placeOf(top) && !placeOf(inside), "found while away");
        // The other disk takes the loop device and the place of the first.
        complaint += unless(mountDisk(second, point), "the second disk could not be mounted");
        complaint += unless(!placeOf(top) && !placeOf(inside), "another disk was taken for it");
        complaint += unless(mountDisk(first, other), "the first disk could not be mounted again");
        complaint += unless(placeOf(top) == other, "the disk was not found beside its old place");
        test::unmount(other);
        test::unmount(point);
        complaint += unless(mountDisk(first, point), "the first disk could not be mounted at last");
        return complaint + unless(placeOf(top) == point, "the disk did not come back")
               + unless(placeOf(inside) == point + "/photos", "its folder did not come back");
    });
}

/// Lists `device` as the disk with this UUID, in a device folder of the test's own.
void listDisk(const std::string& node, dev_t device, const std::string& uuid)
{
    std::filesystem::create_directories("/dev/disk/by-uuid");
    if (::mknod(node.c_str(), S_IFBLK | 0600, device) != 0) {
        throw std::system_error(errno, std::generic_category(), node);
    }
    std::filesystem::create_symlink("../.." + node.substr(4), "/dev/disk/by-uuid/" + uuid);
}

TEST_F(BookmarkOfADisk, isRecognisedByTheUUIDThatTheSystemLists)
{
    const std::string image = makeDisk("disk.img");
    if (image.empty()) {
        GTEST_SKIP() << "there is no tool to make a disk";
    }
    const std::string point = directory_.folder("disk");
    EXPECT_WITH_DISKS([&]() -> std::string {
        if (!mountDisk(image, point)) {
            return noLoopDevices;
        }
        struct stat facts {};
        ::stat(point.c_str(), &facts);
        test::mountMemory("/dev");
        listDisk("/dev/elsewhere", makedev(major(facts.st_dev), minor(facts.st_dev) + 1), "WRONG");
        listDisk("/dev/disk0", facts.st_dev, "1234-ABCD");
        const std::string bookmark = makeBookmark(FileURL(point));
        // As of a file system that does not name itself.
        const std::string known = withLine(bookmark, "volume-number", "");
        const std::string wrong = withLine(known, "volume-uuid", "WRONG");
        std::string complaint =
            unless(bookmark.find("\nvolume-uuid 1234-ABCD\n") != std::string::npos,
                   "the UUID was not recorded: " + bookmark);
        complaint += unless(placeOf(known) == point, "the disk was not found by its UUID");
        complaint += unless(!placeOf(wrong), "a disk of another UUID was taken for it");
        std::filesystem::remove("/dev/disk/by-uuid/1234-ABCD");
        return complaint + unless(!placeOf(known), "an unlisted disk was taken for it")
               + unless(placeOf(bookmark) == point, "a disk that names itself needs no list");
    });
}

}  // namespace

}  // namespace gruk
