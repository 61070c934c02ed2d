#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <system_error>
#include <utility>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "platform/files/moves.h"
#include "platform/files/trash.h"
#include "platform/files/volumes.h"
#include "platform/foundation/errors.h"
#include "tests/support/private_mounts.h"
#include "tests/support/trash_house.h"

// The Trash of volumes other than the home's, and where volumes are mounted.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::itemRecord;
using test::stands;
using test::TrashHouse;
using test::treeRecord;

/// A volume in memory, for as long as the object lives.
class Volume {
public:
    explicit Volume(std::string path, std::size_t bytes = 0) : path_(std::move(path))
    {
        test::mountMemory(path_, bytes);
    }
    ~Volume() { ::umount2(path_.c_str(), MNT_DETACH); }
    Volume(const Volume&) = delete;
    Volume& operator=(const Volume&) = delete;

    void makeReadOnly() const
    {
        if (::mount(nullptr, path_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
            throw std::system_error(errno, std::generic_category(), path_);
        }
    }

private:
    std::string path_;
};

/// A house with a volume mounted in it as "disk" and a file on that.
struct Scene {
    explicit Scene(std::size_t bytes = 0) : volume(house.directory().folder("disk"), bytes)
    {
        house.directory().fileWith("disk/folder/a b", "content");
    }

    [[nodiscard]] FileURL item() const { return house.url("disk/folder/a b"); }
    [[nodiscard]] std::string own() const { return ".Trash-" + std::to_string(::geteuid()); }
    [[nodiscard]] std::string shared() const { return ".Trash/" + std::to_string(::geteuid()); }

    TrashHouse house;
    Volume volume;
};

/// What to say when `condition` does not hold.
std::string unless(bool condition, const std::string& complaint)
{
    return condition ? "" : complaint + ". ";
}

/// The error of trashing the item; an empty one when there is none.
std::string errorOf(const FileURL& url, std::errc wanted, const MoveCalls& calls = {})
{
    try {
        static_cast<void>(trashItem(url, {}, calls));
    } catch (const FileError& error) {
        return unless(error.code() == wanted, std::string("the wrong error: ") + error.what());
    }
    return "no error. ";
}

/// Trashes the scene's item, which must come to that Trash of the volume, and puts it back.
std::string complaintUnlessTrashedTo(const Scene& scene, const std::string& trash,
                                     const MoveCalls& calls = {})
{
    const std::string before = itemRecord(scene.item().path());
    const FileURL now = trashItem(scene.item(), {scene.house.url("disk"), std::nullopt}, calls);
    std::string complaint =
        unless(now == scene.house.url("disk/" + trash + "/files/a b"), "it is at " + now.path())
        + unless(itemRecord(now.path()) == before, "it is another one")
        + unless(!stands(scene.house.trash()), "a Trash was made at home");
    const std::string info = scene.house.directory().read("disk/" + trash + "/info/a b.trashinfo");
    complaint += unless(info.starts_with("[Trash Info]\nPath=folder/a%20b\nDeletionDate="), info);
    restoreTrashedItem(now, scene.item(), {scene.house.url("disk"), std::nullopt}, calls);
    return complaint + unless(itemRecord(scene.item().path()) == before, "it did not come back")
           + unless(fs::is_empty(scene.house.path("disk/" + trash + "/info")), "a ghost stayed");
}

void expectWithMounts(const std::function<std::string()>& body)
{
    const test::MountedRun run = test::runWithPrivateMounts(body);
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(TrashOfAVolume, isMadeForItsOwnerAloneAtTheTop)
{
    expectWithMounts([] {
        const Scene scene;
        std::string complaint = complaintUnlessTrashedTo(scene, scene.own());
        for (const char* part : {"", "/files", "/info"}) {
            const std::string path = scene.house.path("disk/" + scene.own() + part);
            complaint += unless(fs::status(path).permissions() == fs::perms::owner_all, path);
        }
        return complaint;
    });
}

TEST(TrashOfAVolume, isTheOneForAllUsersWhereThatIsFit)
{
    expectWithMounts([] {
        const Scene scene;
        const std::string shared = scene.house.directory().folder("disk/.Trash");
        fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
        return complaintUnlessTrashedTo(scene, scene.shared())
               + unless(!stands(scene.house.path("disk/" + scene.own())), "two were made");
    });
}

TEST(TrashOfAVolume, isNeverOneForAllUsersThatIsALinkOrNotSticky)
{
    expectWithMounts([] {
        std::string complaint;
        {
            const Scene scene;
            const std::string elsewhere = scene.house.directory().folder("disk/elsewhere");
            fs::permissions(elsewhere, fs::perms::all | fs::perms::sticky_bit);
            scene.house.directory().symbolicLink("disk/.Trash", elsewhere);
            complaint += complaintUnlessTrashedTo(scene, scene.own())
                         + unless(fs::is_empty(elsewhere), "a link was followed");
        }
        {
            const Scene scene;
            fs::permissions(scene.house.directory().folder("disk/.Trash"), fs::perms::all);
            complaint += complaintUnlessTrashedTo(scene, scene.own());
        }
        {
            const Scene scene;
            scene.house.directory().file("disk/.Trash");
            complaint += complaintUnlessTrashedTo(scene, scene.own());
        }
        return complaint;
    });
}

TEST(TrashOfAVolume, isNeverALinkOrSomebodyElses)
{
    expectWithMounts([]() -> std::string {
        std::string complaint;
        const Scene scene;
        const std::string before = itemRecord(scene.item().path());
        scene.house.directory().folder("disk/elsewhere");
        scene.house.directory().symbolicLink("disk/" + scene.own(), "elsewhere");
        complaint += errorOf(scene.item(), std::errc::cross_device_link);
        fs::remove(scene.house.path("disk/" + scene.own()));
        if (::geteuid() == 0) {
            const std::string theirs = scene.house.directory().folder("disk/" + scene.own());
            if (::chown(theirs.c_str(), 12'345, 12'345) != 0) {
                return "chown";
            }
            complaint += errorOf(scene.item(), std::errc::cross_device_link);
        }
        return complaint + unless(fs::is_empty(scene.house.path("disk/elsewhere")), "followed")
               + unless(itemRecord(scene.item().path()) == before, "it moved");
    });
}

TEST(TrashOfAVolume, thatIsReadOnlyIsRefusedWithAReasonAndNothingChanges)
{
    expectWithMounts([] {
        const Scene scene;
        scene.volume.makeReadOnly();
        const auto before = treeRecord(scene.house.directory().path());
        std::string complaint = errorOf(scene.item(), std::errc::cross_device_link);
        try {
            static_cast<void>(trashItem(scene.item()));
        } catch (const FileError& error) {
            complaint += unless(describe(error).find("Read-only file system") != std::string::npos,
                                describe(error));
        }
        return complaint
               + unless(treeRecord(scene.house.directory().path()) == before, "it changed");
    });
}

/// Takes the rest of the room; whatever is written next finds none.
void fill(const std::string& path)
{
    std::ofstream out(path, std::ios::binary);
    const std::string block(4'096, 'x');
    while (out.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
    }
}

TEST(TrashOfAVolume, thatIsFullIsRefusedOrTakesTheItemButNeverLosesIt)
{
    expectWithMounts([] {
        const Scene scene(262'144);
        const FileURL former = trashItem(scene.item());
        restoreTrashedItem(former, scene.item());
        fill(scene.house.path("disk/filler"));
        const auto before = treeRecord(scene.house.directory().path());
        return errorOf(scene.item(), std::errc::no_space_on_device)
               + unless(treeRecord(scene.house.directory().path()) == before,
                        "something was left or is gone");
    });
}

TEST(TrashOfAVolume, isFoundWhereTheSystemDoesNotNumberItsMounts)
{
    expectWithMounts([] {
        const Scene scene;
        MoveCalls calls;
        calls.facts = [live = calls.facts](int folder, const char* name, LastLink link,
                                           PlaceFacts& facts) {
            const int result = live(folder, name, link, facts);
            facts.mount = 0;
            return result;
        };
        return complaintUnlessTrashedTo(scene, scene.own(), calls);
    });
}

TEST(TrashOfAVolume, countsThePathFromTheTopAlsoBehindALink)
{
    expectWithMounts([] {
        const Scene scene;
        scene.house.directory().symbolicLink("way", "disk/folder");
        const FileURL now = trashItem(scene.house.url("way/a b"));
        const std::string info =
            scene.house.directory().read("disk/" + scene.own() + "/info/a b.trashinfo");
        return unless(info.starts_with("[Trash Info]\nPath=folder/a%20b\n"), info);
    });
}

TEST(TrashOfAVolume, isNotTheOneAtHomeOfTheSameDiskThatIsMountedTwice)
{
    expectWithMounts([]() -> std::string {
        const TrashHouse house;
        house.directory().fileWith("real/a", "content");
        const std::string second = house.directory().folder("second");
        if (::mount(house.path("real").c_str(), second.c_str(), nullptr, MS_BIND, nullptr) != 0) {
            return "bind";
        }
        const FileURL now = trashItem(house.url("second/a"));
        const std::string complaint =
            unless(now.path().starts_with(second + "/.Trash-"), "it is at " + now.path())
            + unless(mountPoint(house.url("second")).path() == second, "another top");
        test::unmount(second);
        return complaint;
    });
}

TEST(TrashOfAVolume, ofADiskThatIsPulledOutMeanwhileTakesNothing)
{
    expectWithMounts([]() -> std::string {
        const Scene scene;
        // Seen from here also when it is pulled out.
        test::mountAgain(scene.house.path("disk"), scene.house.directory().folder("other"));
        bool isOut = false;
        MoveCalls calls;
        // At the first look at the table of mounts everything on the way is open.
        calls.mounts = [&, live = calls.mounts](MoveCalls::MountVisitor visit) {
            if (!std::exchange(isOut, true)) {
                test::detach(scene.house.path("disk"));
            }
            return live(visit);
        };
        const std::string complaint =
            errorOf(scene.item(), std::errc::no_such_device, calls)
            + unless(stands(scene.house.path("other/folder/a b")), "it was moved")
            + unless(!stands(scene.house.path("other/" + scene.own())), "a Trash was made");
        test::unmount(scene.house.path("other"));
        return complaint;
    });
}

TEST(TrashOfAVolume, isNoPlaceForTheTopOfAVolumeItself)
{
    expectWithMounts([] {
        const Scene scene;
        const auto before = treeRecord(scene.house.directory().path());
        return errorOf(scene.house.url("disk"), std::errc::device_or_resource_busy)
               + unless(treeRecord(scene.house.directory().path()) == before, "it changed");
    });
}

TEST(Volumes, theTopIsWhereTheVolumeIsMounted)
{
    expectWithMounts([] {
        const Scene scene;
        const Volume inner(scene.house.directory().folder("disk/folder/in ner"));
        scene.house.directory().symbolicLink("link", scene.house.path("disk"));
        const auto top = [&](const char* relative) {
            return mountPoint(scene.house.url(relative)).path();
        };
        const std::string disk = scene.house.path("disk");
        return unless(top("disk") == disk, "its own top")
               + unless(top("disk/folder/a b") == disk, "a")
               + unless(top("disk/folder/in ner") == disk + "/folder/in ner", "inner")
               + unless(top("link/folder/a b") == disk, "behind a link")
               + unless(top("link") == mountPoint(scene.house.directory().url()).path(),
                        "the link itself")
               + unless(top("home") != disk, "beside");
    });
}

TEST(Volumes, theTopOfTheDiskAndOfWhatIsNotThereIsTheRoot)
{
    EXPECT_EQ(mountPoint(FileURL()), FileURL());
    EXPECT_EQ(mountPoint(FileURL("/no such item/anywhere")), FileURL());
}

}  // namespace

}  // namespace gruk
