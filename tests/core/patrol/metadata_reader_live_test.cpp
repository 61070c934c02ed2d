#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <map>

#include "core/patrol/metadata_reader.h"
#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

std::map<std::string, FileEntry> listing(const FileURL& directory)
{
    std::map<std::string, FileEntry> result;
    for (const FileEntry& entry : MetadataReader::entries(directory)) {
        EXPECT_TRUE(result.emplace(entry.name(), entry).second) << entry.name();
    }
    return result;
}

/// False where the file system keeps no attributes.
bool setAttribute(const std::string& path, const char* name, const std::string& value)
{
    return ::lsetxattr(path.c_str(), (std::string("user.") + name).c_str(), value.data(),
                       value.size(), 0)
           == 0;
}

std::string list(const char* content)
{
    return std::string("<?xml version=\"1.0\"?><plist version=\"1.0\">") + content + "</plist>";
}

}  // namespace

TEST(MetadataReaderLive, everyChildIsListedHiddenOnesAndLinksToo)
{
    const test::TemporaryDirectory disk;
    disk.file(".hidden");
    disk.file("\xff\n");
    disk.folder("folder/inner");
    disk.symbolicLink("link", "folder");
    const auto children = listing(disk.url());
    ASSERT_EQ(children.size(), 4U);
    EXPECT_TRUE(children.at("folder").isDirectory);
    EXPECT_EQ(children.at("folder").id, disk.url().appending("folder", FileURL::Names::directory));
    EXPECT_TRUE(children.at("link").isSymlink);
    EXPECT_FALSE(children.at("link").isDirectory);
    EXPECT_EQ(children.at(".hidden").id, disk.url().appending(".hidden"));
    EXPECT_TRUE(children.contains("\xff\n"));
}

TEST(MetadataReaderLive, theFactsAreThoseOfTheSystem)
{
    const test::TemporaryDirectory disk;
    const std::string path = disk.file("x.zip", 10'000);
    disk.hardLink("second", "x.zip");
    struct stat facts {};
    ASSERT_EQ(::lstat(path.c_str(), &facts), 0);
    const FileEntry entry = MetadataReader::entry(FileURL(path));
    EXPECT_EQ(entry.logicalSize, 10'000);
    EXPECT_EQ(entry.allocatedSize, facts.st_blocks * 512);
    EXPECT_EQ(entry.inode, facts.st_ino);
    EXPECT_NE(entry.deviceID, 0);
    EXPECT_EQ(entry.linkCount, 2);
    EXPECT_EQ(entry.kind, FileKind::archive);
    EXPECT_EQ(entry.dateModified, Date{static_cast<double>(facts.st_mtim.tv_sec)
                                       + static_cast<double>(facts.st_mtim.tv_nsec) * 1e-9});
    EXPECT_TRUE(entry.dateLastOpened);
    EXPECT_FALSE(entry.dateAdded);
    EXPECT_TRUE(entry.tags.empty());
    EXPECT_TRUE(entry.badges.empty());
}

TEST(MetadataReaderLive, anEntryReadAloneIsTheOneOfTheListing)
{
    const test::TemporaryDirectory disk;
    disk.file("a.png", 70'000);
    disk.folder("b");
    disk.symbolicLink("c", "nowhere");
    ASSERT_EQ(::mkfifo(disk.path("d").c_str(), 0600), 0);
    ASSERT_EQ(::truncate(disk.file("e").c_str(), 1'000'000), 0);
    for (const FileEntry& listed : MetadataReader::entries(disk.url())) {
        FileEntry alone = MetadataReader::entry(listed.id);
        EXPECT_EQ(alone, listed) << listed.name();
        EXPECT_EQ(listed.badges.contains(FileBadge::sparse), listed.name() == "e");
    }
}

TEST(MetadataReaderLive, anItemThatIsNotThereHasDefaultsOnly)
{
    const test::TemporaryDirectory disk;
    FileEntry expected;
    expected.id = FileURL(disk.path("Screenshot 1.png"));
    expected.kind = FileKind::screenshot;
    EXPECT_EQ(MetadataReader::entry(expected.id), expected);
    EXPECT_TRUE(MetadataReader::isScreenshot(expected.id));
    EXPECT_FALSE(MetadataReader::isScreenshot(FileURL(disk.path("x.png"))));
}

TEST(MetadataReaderLive, aDirectoryThatIsNotThereThrows)
{
    const test::TemporaryDirectory disk;
    try {
        static_cast<void>(MetadataReader::entries(FileURL(disk.path("gone"))));
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
    }
    EXPECT_THROW(static_cast<void>(MetadataReader::entries(FileURL(disk.file("file")))), FileError);
}

TEST(MetadataReaderLive, theTwoAttributesAreReadAloneAndInAListing)
{
    const test::TemporaryDirectory disk;
    const std::string path = disk.file("Screenshot 1.png");
    const std::string origins = list("<array><string>https://x/y</string></array>");
    if (!setAttribute(path, MetadataReader::screenCaptureAttribute, list("<false/>"))
        || !setAttribute(path, MetadataReader::whereFromsAttribute, origins)) {
        GTEST_SKIP() << "this file system keeps no attributes";
    }
    ASSERT_TRUE(
        setAttribute(disk.folder("b"), MetadataReader::screenCaptureAttribute, list("<true/>")));
    ASSERT_TRUE(setAttribute(disk.file("c"), "other", "x"));
    const auto children = listing(disk.url());
    EXPECT_EQ(children.at("Screenshot 1.png").kind, FileKind::image);
    EXPECT_EQ(children.at("Screenshot 1.png").whereFrom, "https://x/y");
    EXPECT_EQ(children.at("b").kind, FileKind::screenshot);
    EXPECT_EQ(children.at("c").kind, FileKind::other);
    for (const auto& [name, child] : children) {
        EXPECT_EQ(MetadataReader::entry(child.id), child) << name;
    }
    EXPECT_FALSE(MetadataReader::isScreenshot(FileURL(path)));
}

TEST(MetadataReaderLive, anUnreadableChildDoesNotStopTheListing)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            const std::string closed = folder.folder("closed");
            folder.file("closed/x", 10);
            folder.folder("closed/y");
            ::chmod(closed.c_str(), 0400);
            const auto children = MetadataReader::entries(FileURL::directory(closed));
            ::chmod(closed.c_str(), 0700);
            return children.size() == 2
                   && std::all_of(children.begin(), children.end(), [](const FileEntry& child) {
                          return child.deviceID == 0 && child.linkCount == 1
                                 && child.allocatedSize == 0;
                      });
        },
        disk));
}

}  // namespace gruk
