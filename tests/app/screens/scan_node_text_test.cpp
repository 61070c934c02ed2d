#include "app/screens/scan_node_text.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace gruk {

namespace {

std::shared_ptr<ScanNode> nodeOf(FileEntry entry)
{
    return std::make_shared<ScanNode>(std::make_shared<const FileEntry>(std::move(entry)));
}

std::shared_ptr<ScanNode> file(Bytes bytes)
{
    FileEntry entry;
    entry.id = FileURL("/a/file");
    entry.allocatedSize = bytes;
    return nodeOf(entry);
}

std::shared_ptr<ScanNode> folder()
{
    FileEntry entry;
    entry.id = FileURL::directory("/a/folder");
    entry.isDirectory = true;
    entry.kind = FileKind::folder;
    return nodeOf(entry);
}

}  // namespace

TEST(ScanNodeText, aFileWithNoLastOpenedDateShowsNotAvailable)
{
    EXPECT_EQ(ScanNodeText::lastOpened(file(1)->entry()), QStringLiteral("Not available"));
}

TEST(ScanNodeText, aDateIsOfMediumLengthAndWithoutTheTime)
{
    FileEntry entry;
    // In the user's own time, whichever that is.
    const QDateTime noon(QDate(2026, 5, 3), QTime(12, 0));
    entry.dateLastOpened = Date{static_cast<double>(noon.toSecsSinceEpoch())};
    EXPECT_EQ(ScanNodeText::lastOpened(entry), QStringLiteral("3 May 2026"));
}

TEST(ScanNodeText, aSizeIsShownAsFarAsItIsKnown)
{
    EXPECT_EQ(ScanNodeText::size(*file(2'500'000)), QStringLiteral("2.5 MB"));
    const auto node = folder();
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("–"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("Unknown size"));
    node->beginComputing();
    EXPECT_EQ(ScanNodeText::size(*node), QString());
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("Being measured"));
    node->report({3, 4'000});
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("4 KB"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("4 KB so far"));
    node->endComputing(DirectoryStats{9'000, 9'000, 4, 0});
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("9 KB"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("9 KB"));
}

TEST(ScanNodeText, aFolderThatCouldNotBeMeasuredIsAtLeastWhatItsWalkHadShown)
{
    const auto node = folder();
    node->beginComputing();
    node->report({3, 4'000});
    node->endComputing(std::nullopt);
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("at least 4 KB"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("at least 4 KB"));
}

TEST(ScanNodeText, aFolderOfWhichNothingWasFoundBeforeItsWalkFailedHasNoSize)
{
    const auto node = folder();
    node->beginComputing();
    node->report({0, 0});
    node->endComputing(std::nullopt);
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("–"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("Unknown size"));
    EXPECT_EQ(ScanNodeText::footer(ScanNodeText::sums({node})),
              QStringLiteral("1 items · – scanned · 0 restricted"));
}

TEST(ScanNodeText, theFooterOfAFolderThatCouldNotBeMeasuredToItsEndSaysSo)
{
    const auto node = folder();
    node->beginComputing();
    const auto before = ScanNodeText::sums({node, file(2'000'000)});
    EXPECT_EQ(ScanNodeText::footer(before),
              QStringLiteral("2 items · 2 MB scanned · 0 restricted"));
    node->report({1, 1'000'000});
    node->endComputing(std::nullopt);
    const auto after = ScanNodeText::sums({node, file(2'000'000)});
    EXPECT_EQ(after, (ScanNodeText::FolderSums{2, 3'000'000, 0, false, true}));
    EXPECT_EQ(ScanNodeText::footer(after),
              QStringLiteral("2 items · at least 3 MB scanned · 0 restricted"));
}

TEST(ScanNodeText, aFolderThatIsMeasuredAnewShowsWhatItCameToBefore)
{
    const auto node = folder();
    node->recallSize(4'000);
    node->beginComputing();
    node->report({1, 1'000});
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("4 KB"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("4 KB when last measured"));
    node->endComputing(DirectoryStats{9'000, 9'000, 4, 0});
    EXPECT_EQ(ScanNodeText::size(*node), QStringLiteral("9 KB"));
    EXPECT_EQ(ScanNodeText::spokenSize(*node), QStringLiteral("9 KB"));
}

TEST(ScanNodeText, foldersThatAreClosedAreToldOf)
{
    const auto node = folder();
    EXPECT_EQ(ScanNodeText::restrictedNote(*node), QString());
    node->endComputing(DirectoryStats{0, 0, 0, 1});
    EXPECT_EQ(ScanNodeText::restrictedNote(*node),
              QStringLiteral("One folder here is closed to the Gruk."));
    node->endComputing(DirectoryStats{0, 0, 0, 1'200});
    EXPECT_EQ(ScanNodeText::restrictedNote(*node),
              QStringLiteral("1,200 folders here are closed to the Gruk."));
}

TEST(ScanNodeText, theFooterIsTheSumOfTheRows)
{
    const auto measured = folder();
    measured->endComputing(DirectoryStats{3'000'000, 1, 1, 2});
    const auto running = folder();
    running->beginComputing();
    const auto sums = ScanNodeText::sums({file(1'000'000), measured, running});
    EXPECT_EQ(sums, (ScanNodeText::FolderSums{3, 4'000'000, 2, true, false}));
    EXPECT_EQ(ScanNodeText::footer(sums), QStringLiteral("3 items · 4 MB scanned · 2 restricted"));
    running->report({1, 500'000});
    EXPECT_EQ(ScanNodeText::sums({file(1'000'000), measured, running}).bytes, 4'500'000);
    running->endComputing(DirectoryStats{700'000, 1, 1, 0});
    EXPECT_FALSE(ScanNodeText::sums({measured, running}).areGrowing);
}

TEST(ScanNodeText, anEmptyFolderComesToNothing)
{
    EXPECT_EQ(ScanNodeText::footer(ScanNodeText::sums({})),
              QStringLiteral("0 items · 0 KB scanned · 0 restricted"));
}

}  // namespace gruk
