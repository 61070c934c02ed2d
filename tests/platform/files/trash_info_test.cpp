#include "platform/linux/trash_info.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/utf8.h"
#include "tests/support/environment.h"

namespace gruk {

namespace {

TEST(TrashInfo, isWrittenToTheByte)
{
    EXPECT_EQ(trashInfoText({"/home/a b/\xff%.txt", "2026-11-21T01:28:28"}),
              "[Trash Info]\nPath=/home/a%20b/%FF%25.txt\nDeletionDate=2026-11-21T01:28:28\n");
    EXPECT_EQ(trashInfoText({"a/b", "2026-11-21T01:28:28"}),
              "[Trash Info]\nPath=a/b\nDeletionDate=2026-11-21T01:28:28\n");
}

TEST(TrashInfo, everyByteOfANameComesBack)
{
    std::string name;
    for (int byte = 1; byte < 256; ++byte) {
        name += byte == '/' ? '_' : static_cast<char>(byte);
    }
    for (const TrashInfo& info : {TrashInfo{"/x/" + name, "1"}, TrashInfo{"x/" + name, "1"}}) {
        const std::optional<TrashInfo> read = parseTrashInfo(trashInfoText(info));
        ASSERT_TRUE(read);
        EXPECT_EQ(*read, info);
    }
}

TEST(TrashInfo, theDateIsLocalTime)
{
    // 2026-07-01 12:00:00 UTC
    constexpr std::time_t moment = 1'782'907'200;
    const test::EnvironmentVariable east("TZ", "XYZ-5:30");
    EXPECT_EQ(deletionDateText(moment), "2026-07-01T17:30:00");
    const test::EnvironmentVariable summer("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(deletionDateText(moment), "2026-07-01T14:00:00");
}

TEST(TrashInfo, whatOtherProgramsWriteIsRead)
{
    const TrashInfo wanted{"/a b", "2026-11-21T01:28:28"};
    for (const char* text : {"[Trash Info]\nDeletionDate=2026-11-21T01:28:28\nPath=/a%20b\n",
                             "[Trash Info]\r\nPath=/a%20b\r\nDeletionDate=2026-11-21T01:28:28\r\n",
                             "[Trash Info]\nPath = /a b\nDeletionDate = 2026-11-21T01:28:28",
                             "[Trash Info]\n# a word\nX-Own=1\nPath=/a%20b\nPath=/second\n"
                             "DeletionDate=2026-11-21T01:28:28\n[Other]\nPath=/third\n"}) {
        const std::optional<TrashInfo> read = parseTrashInfo(text);
        ASSERT_TRUE(read) << text;
        EXPECT_EQ(*read, wanted) << text;
    }
    EXPECT_EQ(parseTrashInfo("[Trash Info]\nPath=/a\n")->deletionDate, "");
}

TEST(TrashInfo, whatIsNoInfoFileIsNone)
{
    for (const char* text :
         {"", "Path=/a\n", "[Desktop Entry]\nPath=/a\n", "[Trash Info]\n", "[Trash Info]\nPath=\n",
          "[Trash Info]\nPath=/a%2\n", "[Trash Info]\nPath=/a%00b\n", "[Trash Info]\nPath=/a%zz\n",
          "\n[Trash Info]\nPath=/a\n", "[Trash Info]\n[Other]\nPath=/a\n"}) {
        EXPECT_FALSE(parseTrashInfo(text)) << text;
    }
}

TEST(TrashInfo, aPathOfNothingButAnEncodedSlashIsNoPlace)
{
    EXPECT_FALSE(parseTrashInfo("[Trash Info]\nPath=%2F\n"));
    EXPECT_EQ(parseTrashInfo("[Trash Info]\nPath=%2Fa\n")->path, "/a");
}

TEST(TrashName, staysAsItIsWhereItMay)
{
    EXPECT_EQ(trashName("a.txt", "", 245), "a.txt");
    EXPECT_EQ(trashName("\xff", "", 245), "\xff");
    EXPECT_EQ(trashName(std::string(245, 'n'), "", 245), std::string(245, 'n'));
}

TEST(TrashName, carriesItsMarkBeforeTheExtension)
{
    EXPECT_EQ(trashName("a.txt", "2", 245), "a.2.txt");
    EXPECT_EQ(trashName("a", "17", 245), "a.17");
    EXPECT_EQ(trashName(".hidden", "2", 245), ".hidden.2");
    EXPECT_EQ(trashName("a.tar.gz", "2", 245), "a.tar.2.gz");
    EXPECT_EQ(trashName("sentence. And a long one more", "2", 245),
              "sentence. And a long one more.2");
    EXPECT_EQ(trashName("a.", "2", 245), "a.2.");
}

TEST(TrashName, isShortenedBeforeItsExtension)
{
    const std::string name = std::string(251, 'n') + ".txt";
    EXPECT_EQ(trashName(name, "", 245), std::string(241, 'n') + ".txt");
    EXPECT_EQ(trashName(name, "99", 245), std::string(238, 'n') + ".99.txt");
    EXPECT_EQ(trashName(name, "4294967295", 133).size(), 133U);
}

TEST(TrashName, isShortenedAtAWholeCharacter)
{
    const std::string euro = "\xe2\x82\xac";
    std::string name;
    while (name.size() < 255) {
        name += euro;
    }
    for (std::size_t longest = 130; longest < 150; ++longest) {
        const std::string shortened = trashName(name, "2", longest);
        EXPECT_TRUE(isValidUTF8(shortened)) << longest;
        EXPECT_LE(shortened.size(), longest);
        EXPECT_GT(shortened.size(), longest - 3);
    }
    EXPECT_EQ(trashName(std::string(255, '\xbf'), "", 245), std::string(245, '\xbf'))
        << "bytes that are no characters are cut anywhere";
}

}  // namespace

}  // namespace gruk
