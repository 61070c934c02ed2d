#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <exception>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/browse/scan_engine.h"
#include "core/patrol/snapshot_scanner.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

/// What a body complains of with an overlay at "seen", whose layers "lower" and "upper" are on two
/// disks of memory: "lower" has "below/old" and its second name "twin", "upper" the file "new".
class OverlayOfTwoDisks {
public:
    /// Empty when all is well; none when nothing may be mounted here, or the system gives the files
    /// of such an overlay the overlay's own device.
    static std::optional<std::string> complaint(
        const std::function<std::string()>& body, const std::function<void()>& fillLower = [] {})
    {
        // Made here, so that it is removed by this process.
        static_cast<void>(disk());
        const test::MountedRun run =
            test::runWithPrivateMounts([&] { return mounted(body, fillLower); });
        return run.isPermitted && run.complaint != notMountable ? std::optional(run.complaint)
                                                                : std::nullopt;
    }

    static const test::TemporaryDirectory& disk()
    {
        static const test::TemporaryDirectory directory;
        return directory;
    }
    static FileURL root() { return FileURL::directory(disk().path("seen")); }

private:
    static constexpr const char* notMountable = "no overlay of two disks can be mounted";

    static std::string mounted(const std::function<std::string()>& body,
                               const std::function<void()>& fillLower)
    {
        for (const char* name : {"lower", "upper", "seen"}) {
            disk().folder(name);
        }
        test::mountMemory(disk().path("lower"));
        test::mountMemory(disk().path("upper"));
        disk().file("lower/below/old", 30'000);
        disk().hardLink("lower/twin", "lower/below/old");
        fillLower();
        disk().folder("upper/files");
        disk().folder("upper/work");
        try {
            test::mountOverlay(disk().path("lower"), disk().path("upper/files"),
                               disk().path("upper/work"), disk().path("seen"));
        } catch (const std::exception&) {
            return notMountable;
        }
        disk().file("seen/new", 50'000);
        struct stat folder {};
        struct stat file {};
        if (::stat(disk().path("seen").c_str(), &folder) != 0
            || ::stat(disk().path("seen/below/old").c_str(), &file) != 0
            || folder.st_dev == file.st_dev) {
            return notMountable;
        }
        return body();
    }
};

Bytes bytesOf(const std::string& path)
{
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 ? static_cast<Bytes>(facts.st_blocks) * 512 : -1;
}

constexpr int linkedFiles = 64;

/// Files that have a second name each.
void makeLinked(const std::string& names)
{
    const test::TemporaryDirectory& disk = OverlayOfTwoDisks::disk();
    for (int i = 0; i < linkedFiles; ++i) {
        const std::string name = names + std::to_string(i);
        disk.file(name, 4'096);
        disk.hardLink(name + " again", name);
    }
}

constexpr const char* reason = "no overlay whose files have devices of their own can be mounted";

}  // namespace

TEST(OverlayWalk, filesOfEveryLayerAreOnTheVolumeOfTheRoot)
{
    const auto complaint = OverlayOfTwoDisks::complaint([]() -> std::string {
        const ScanSnapshot snapshot = SnapshotScanner().scan(OverlayOfTwoDisks::root(), {});
        if (!snapshot.issues.empty()) {
            return std::to_string(snapshot.issues.size()) + " issues, the first of "
                   + snapshot.issues.front().relativePath;
        }
        if (snapshot.entries.size() != 4) {
            return std::to_string(snapshot.entries.size()) + " entries";
        }
        // The file of two names counts once.
        struct stat old {};
        struct stat fresh {};
        ::stat(OverlayOfTwoDisks::disk().path("seen/twin").c_str(), &old);
        ::stat(OverlayOfTwoDisks::disk().path("seen/new").c_str(), &fresh);
        const Bytes expected = (old.st_blocks + fresh.st_blocks) * 512;
        return expected >= 80'000 && snapshot.entries.totalBytes() == expected
                   ? ""
                   : std::to_string(snapshot.entries.totalBytes()) + " bytes";
    });
    if (!complaint) {
        GTEST_SKIP() << reason;
    }
    EXPECT_EQ(*complaint, "");
}

TEST(OverlayWalk, browsingCountsTheSame)
{
    const auto complaint = OverlayOfTwoDisks::complaint([]() -> std::string {
        const DirectoryStats stats = ScanEngine().stats(OverlayOfTwoDisks::root());
        return stats.fileCount == 3 && stats.logical == 80'000
                   ? ""
                   : std::to_string(stats.fileCount) + " files of " + std::to_string(stats.logical);
    });
    if (!complaint) {
        GTEST_SKIP() << reason;
    }
    EXPECT_EQ(*complaint, "");
}

TEST(OverlayWalk, filesOfTheSameNumberInTwoLayersAreDifferentFiles)
{
    const auto complaint = OverlayOfTwoDisks::complaint(
        []() -> std::string {
            const test::TemporaryDirectory& disk = OverlayOfTwoDisks::disk();
            makeLinked("seen/upper ");
            std::set<ino_t> numbers;
            Bytes expected = bytesOf(disk.path("seen/twin")) + bytesOf(disk.path("seen/new"));
            bool isMet = false;
            for (const char* layer : {"seen/lower ", "seen/upper "}) {
                for (int i = 0; i < linkedFiles; ++i) {
                    struct stat facts {};
                    ::stat(disk.path(layer + std::to_string(i)).c_str(), &facts);
                    expected += facts.st_blocks * 512;
                    isMet = isMet || !numbers.insert(facts.st_ino).second;
                }
            }
            const ScanSnapshot snapshot = SnapshotScanner().scan(OverlayOfTwoDisks::root(), {});
            if (snapshot.entries.totalBytes() != expected) {
                return std::to_string(snapshot.entries.totalBytes()) + " bytes instead of "
                       + std::to_string(expected);
            }
            return isMet ? "" : "no two files had the same number";
        },
        [] {
            // Disks of memory number their files one after the other, for each processor.
            cpu_set_t one;
            CPU_ZERO(&one);
            CPU_SET(static_cast<std::size_t>(::sched_getcpu()), &one);
            ::sched_setaffinity(0, sizeof one, &one);
            makeLinked("lower/lower ");
        });
    if (!complaint) {
        GTEST_SKIP() << reason;
    }
    EXPECT_EQ(*complaint, "");
}

TEST(OverlayWalk, whatIsMountedInAnOverlayIsAnotherVolumeAlsoTheOverlayItself)
{
    const auto complaint = OverlayOfTwoDisks::complaint([]() -> std::string {
        const test::TemporaryDirectory& disk = OverlayOfTwoDisks::disk();
        disk.folder("seen/disk");
        disk.folder("seen/again");
        test::mountMemory(disk.path("seen/disk"));
        disk.file("seen/disk/x", 10);
        test::mountAgain(disk.path("seen/below"), disk.path("seen/again"));
        const ScanSnapshot snapshot = SnapshotScanner().scan(OverlayOfTwoDisks::root(), {});
        using Reason = ScanIssue::Reason;
        const std::vector<ScanIssue> expected = {{"again", Reason::differentFilesystem},
                                                 {"disk", Reason::differentFilesystem}};
        return snapshot.issues == expected && snapshot.entries.size() == 4
                   ? ""
                   : std::to_string(snapshot.issues.size()) + " issues";
    });
    if (!complaint) {
        GTEST_SKIP() << reason;
    }
    EXPECT_EQ(*complaint, "");
}

TEST(OverlayWalk, attributesOfFilesInItAreRead)
{
    const auto complaint = OverlayOfTwoDisks::complaint([]() -> std::string {
        constexpr char yes[] = "<?xml version=\"1.0\"?><plist version=\"1.0\"><true/></plist>";
        const std::string path = OverlayOfTwoDisks::disk().path("seen/new");
        if (::setxattr(path.c_str(),
                       (std::string("user.") + MetadataReader::screenCaptureAttribute).c_str(), yes,
                       sizeof yes - 1, 0)
            != 0) {
            return "";  // A disk of memory that keeps none.
        }
        const ScanSnapshot snapshot = SnapshotScanner().scan(OverlayOfTwoDisks::root(), {});
        const auto entry = snapshot.entries.find("new");
        return entry && snapshot.entries.kind(*entry) == FileKind::screenshot ? ""
                                                                              : "no screenshot";
    });
    if (!complaint) {
        GTEST_SKIP() << reason;
    }
    EXPECT_EQ(*complaint, "");
}

}  // namespace gruk
