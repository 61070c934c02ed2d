#include "core/patrol/file_entry.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(FileEntry, badgesHaveTheirCaseNamesAsRawStrings)
{
    const std::pair<FileBadge, const char*> badges[] = {
        {FileBadge::sparse, "sparse"},         {FileBadge::cloned, "cloned"},
        {FileBadge::evicted, "evicted"},       {FileBadge::regenerable, "regenerable"},
        {FileBadge::restricted, "restricted"},
    };
    for (const auto& [badge, text] : badges) {
        EXPECT_EQ(rawString(badge), text);
        EXPECT_EQ(fileBadge(text), badge);
    }
    EXPECT_EQ(fileBadge("Sparse"), std::nullopt);
    EXPECT_EQ(fileBadge(""), std::nullopt);
}

TEST(FileEntry, theNameIsTheLastPathComponent)
{
    FileEntry entry;
    entry.id = FileURL("/a/b \xff.txt");
    EXPECT_EQ(entry.name(), "b \xff.txt");
}

TEST(FileEntry, twoEntriesAreEqualWhenEveryFieldIs)
{
    FileEntry entry;
    entry.id = FileURL("/a");
    entry.tags = {"red"};
    FileEntry other = entry;
    EXPECT_EQ(entry, other);
    other.badges.insert(FileBadge::sparse);
    EXPECT_NE(entry, other);
    other = entry;
    other.dateLastOpened = Date{1};
    EXPECT_NE(entry, other);
    other = entry;
    other.whereFrom = "";
    EXPECT_NE(entry, other);
}

}  // namespace gruk
