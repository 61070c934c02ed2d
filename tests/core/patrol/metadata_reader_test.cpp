#include "core/patrol/metadata_reader.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

using MetadataReader::Attributes;
using MetadataReader::LstatInfo;
using MetadataReader::makeEntry;
using MetadataReader::ResourceValues;

const std::string trueList = "<?xml version=\"1.0\"?><plist version=\"1.0\"><true/></plist>";
const std::string falseList = "<?xml version=\"1.0\"?><plist version=\"1.0\"><false/></plist>";

std::string textList(std::string_view content)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\">" + std::string(content) + "</plist>";
}

ResourceValues file(Bytes logical, Bytes allocated)
{
    ResourceValues values;
    values.fileSize = logical;
    values.totalFileAllocatedSize = allocated;
    return values;
}

std::set<FileBadge> badges(const ResourceValues& values)
{
    return makeEntry(FileURL("/r/x"), values, LstatInfo{}, {}).badges;
}

FileKind kindWith(const char* name, const std::optional<std::string>& screenCapture,
                  bool isDirectory = false)
{
    ResourceValues values;
    values.isDirectory = isDirectory;
    return makeEntry(FileURL(std::string("/r/") + name), values, LstatInfo{}, {screenCapture, {}})
        .kind;
}

std::optional<std::string> whereFrom(const std::optional<std::string>& attribute)
{
    return makeEntry(FileURL("/r/x"), {}, LstatInfo{}, {{}, attribute}).whereFrom;
}

using Badges = std::set<FileBadge>;

}  // namespace

TEST(MetadataReader, aFileOf65536BytesWithNothingAllocatedIsNotSparseAndOneByteMoreIs)
{
    EXPECT_EQ(badges(file(65'536, 0)), Badges{});
    EXPECT_EQ(badges(file(65'537, 0)), Badges{FileBadge::sparse});
}

TEST(MetadataReader, aFileOf200000BytesIsSparseBelowExactlyHalf)
{
    EXPECT_EQ(badges(file(200'000, 100'000)), Badges{});
    EXPECT_EQ(badges(file(200'000, 99'999)), Badges{FileBadge::sparse});
}

TEST(MetadataReader, theHalfOfAnOddSizeRoundsTowardZero)
{
    EXPECT_EQ(badges(file(200'001, 100'000)), Badges{});
    EXPECT_EQ(badges(file(200'001, 99'999)), Badges{FileBadge::sparse});
}

TEST(MetadataReader, aDirectoryIsNeverSparseButMayBeEvicted)
{
    ResourceValues directory = file(1'000'000, 0);
    directory.isDirectory = true;
    EXPECT_EQ(badges(directory), Badges{});
    directory.isDownloadedAndCurrent = false;
    EXPECT_EQ(badges(directory), Badges{FileBadge::evicted});
}

TEST(MetadataReader, aCloudItemThatIsNotCurrentIsEvictedOnlyWithContentAndUnder4096Bytes)
{
    const auto cloud = [](Bytes logical, Bytes allocated, bool current) {
        ResourceValues values = file(logical, allocated);
        values.isDownloadedAndCurrent = current;
        return badges(values);
    };
    EXPECT_EQ(cloud(0, 0, false), Badges{});
    EXPECT_EQ(cloud(10'000, 4'096, false), Badges{});
    EXPECT_EQ(cloud(10'000, 4'095, false), Badges{FileBadge::evicted});
    EXPECT_EQ(cloud(1, 0, false), Badges{FileBadge::evicted});
    EXPECT_EQ(cloud(10'000, 0, true), Badges{});
    EXPECT_EQ(badges(file(10'000, 0)), Badges{});
}

TEST(MetadataReader, oneItemMayBeSparseAndEvicted)
{
    ResourceValues values = file(100'000, 0);
    values.isDownloadedAndCurrent = false;
    EXPECT_EQ(badges(values), (Badges{FileBadge::sparse, FileBadge::evicted}));
}

TEST(MetadataReader, withoutValuesAnItemIsAPlainFileWithTheFigureOfItsBlocks)
{
    const FileEntry entry = makeEntry(FileURL("/r/x.pdf"), {}, LstatInfo{7, 8, 12'288, 3}, {});
    FileEntry expected;
    expected.id = FileURL("/r/x.pdf");
    expected.allocatedSize = 12'288;
    expected.kind = FileKind::pdf;
    expected.inode = 7;
    expected.deviceID = 8;
    expected.linkCount = 3;
    EXPECT_EQ(entry, expected);
}

TEST(MetadataReader, withoutItsRecordAnItemHasDeviceZeroAndOneLink)
{
    const FileEntry entry = makeEntry(FileURL("/r/x"), {}, std::nullopt, {});
    EXPECT_EQ(entry.deviceID, 0);
    EXPECT_EQ(entry.inode, 0U);
    EXPECT_EQ(entry.linkCount, 1);
    EXPECT_EQ(entry.allocatedSize, 0);
    // What the values tell is used all the same.
    EXPECT_EQ(makeEntry(FileURL("/r/x"), file(10, 20), std::nullopt, {}).allocatedSize, 20);
}

TEST(MetadataReader, theAllocatedSizeComesFromTheValuesFirst)
{
    EXPECT_EQ(makeEntry(FileURL("/r/x"), file(1, 20), LstatInfo{1, 1, 30, 1}, {}).allocatedSize,
              20);
}

TEST(MetadataReader, aDirectoryIsZeroBytesWhateverIsSaidOfIt)
{
    ResourceValues values = file(4'096, 4'096);
    values.isDirectory = true;
    const FileEntry entry =
        makeEntry(FileURL::directory("/r/d"), values, LstatInfo{1, 1, 4'096, 2}, {});
    EXPECT_EQ(entry.allocatedSize, 0);
    EXPECT_EQ(entry.kind, FileKind::folder);
    EXPECT_TRUE(entry.isDirectory);
}

TEST(MetadataReader, datesAndTagsAreTakenOverAndStayNoneWhenAbsent)
{
    ResourceValues values;
    values.isSymlink = true;
    values.dateAdded = Date{1};
    values.dateCreated = Date{2};
    values.dateModified = Date{3};
    values.dateLastOpened = Date{4};
    values.tags = {"red", "green"};
    const FileEntry entry = makeEntry(FileURL("/r/x"), values, LstatInfo{}, {});
    EXPECT_TRUE(entry.isSymlink);
    EXPECT_EQ(entry.dateAdded, Date{1});
    EXPECT_EQ(entry.dateCreated, Date{2});
    EXPECT_EQ(entry.dateModified, Date{3});
    EXPECT_EQ(entry.dateLastOpened, Date{4});
    EXPECT_EQ(entry.tags, (std::vector<std::string>{"red", "green"}));
    const FileEntry bare = makeEntry(FileURL("/r/x"), {}, LstatInfo{}, {});
    EXPECT_FALSE(bare.dateAdded || bare.dateCreated || bare.dateModified || bare.dateLastOpened);
    EXPECT_TRUE(bare.tags.empty());
}

TEST(MetadataReader, anAttributeThatHoldsFalseMakesAScreenshotAnImageAndTheNameIsNotConsulted)
{
    EXPECT_EQ(kindWith("Screenshot 1.png", falseList), FileKind::image);
}

TEST(MetadataReader, anAttributeThatHoldsTrueMakesAnythingAScreenshot)
{
    EXPECT_EQ(kindWith("x.png", trueList), FileKind::screenshot);
    EXPECT_EQ(kindWith("folder", trueList, true), FileKind::screenshot);
}

TEST(MetadataReader, anAttributeThatIsNoBooleanLeavesTheDecisionToTheName)
{
    for (const std::string& attribute :
         {std::string("rubbish"), std::string("\0\xff", 2), textList("<string>true</string>"),
          textList("<integer>1</integer>"), textList("<array><true/></array>")}) {
        EXPECT_EQ(kindWith("Screenshot 1.png", attribute), FileKind::screenshot) << attribute;
        EXPECT_EQ(kindWith("x.png", attribute), FileKind::image) << attribute;
    }
}

TEST(MetadataReader, withoutTheAttributeTheNameMustBeginWithScreenshotAndABlank)
{
    EXPECT_EQ(kindWith("Screenshot 2024", std::nullopt, true), FileKind::screenshot);
    EXPECT_EQ(kindWith("Screenshot ", std::nullopt), FileKind::screenshot);
    for (const char* name :
         {"Screenshot", "screenshot 1", "Screenshots 1", "My Screenshot 1", "Screenshot\u00a01"}) {
        EXPECT_EQ(kindWith(name, std::nullopt), FileKind::other) << name;
    }
}

TEST(MetadataReader, theFirstOriginIsWhereItCameFrom)
{
    EXPECT_EQ(whereFrom(textList("<array><string>https://a</string><string>b</string></array>")),
              "https://a");
}

TEST(MetadataReader, anOriginThatCannotBeReadIsNone)
{
    EXPECT_EQ(whereFrom(std::nullopt), std::nullopt);
    EXPECT_EQ(whereFrom("rubbish"), std::nullopt);
    EXPECT_EQ(whereFrom(textList("<array/>")), std::nullopt);
    EXPECT_EQ(whereFrom(textList("<string>https://a</string>")), std::nullopt);
    EXPECT_EQ(whereFrom(textList("<array><string>a</string><integer>1</integer></array>")),
              std::nullopt);
}

}  // namespace gruk
