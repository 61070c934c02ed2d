#include "core/patrol/snapshot_entries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "core/patrol/snapshot_entries_builder.h"
#include "platform/foundation/text_order.h"

namespace gruk {
namespace {

SnapshotEntry file(std::string path, Bytes size)
{
    return {std::move(path), size, Date{1'700'000'000}, FileKind::document, false};
}

SnapshotEntry folder(std::string path, Bytes size)
{
    return {std::move(path), size, std::nullopt, FileKind::folder, true};
}

std::vector<std::string> pathsOf(const SnapshotEntries& entries)
{
    std::vector<std::string> paths;
    for (const SnapshotEntry& entry : entries) {
        paths.push_back(entry.relativePath);
    }
    return paths;
}

/// A random list of distinct paths, with and without entries for the folders above them.
std::vector<SnapshotEntry> randomEntries(std::mt19937& random)
{
    static const std::vector<std::string> names = {
        "a", "A", "b", "a b", "a.txt", "file2", "file10", "File10", "é", "E", "中", "\xff", "z-1"};
    std::map<std::string, SnapshotEntry> entries;
    const auto count = random() % 40;
    for (unsigned i = 0; i < count; ++i) {
        std::string path;
        const auto depth = 1 + random() % 4;
        for (unsigned level = 0; level < depth; ++level) {
            path += (level > 0 ? "/" : "") + names[random() % names.size()];
        }
        entries[path] = random() % 2 == 0 ? file(path, static_cast<Bytes>(random() % 10'000))
                                          : folder(path, static_cast<Bytes>(random() % 10'000));
    }
    std::vector<SnapshotEntry> list;
    for (auto& [path, entry] : entries) {
        list.push_back(std::move(entry));
    }
    std::shuffle(list.begin(), list.end(), random);
    return list;
}

bool isEarlier(const SnapshotEntry& a, const SnapshotEntry& b)
{
    return localizedStandardCompare(a.relativePath, b.relativePath) < 0;
}

TEST(SnapshotEntries, isEmptyAtFirst)
{
    const SnapshotEntries entries;
    EXPECT_TRUE(entries.empty());
    EXPECT_EQ(entries.totalBytes(), 0);
    EXPECT_TRUE(PathCursor(entries).isAtEnd());
    EXPECT_FALSE(entries.find("a"));
}

TEST(SnapshotEntries, holdsEachValueInTheTextOrderOfThePaths)
{
    std::mt19937 random(11);
    for (int round = 0; round < 400; ++round) {
        std::vector<SnapshotEntry> list = randomEntries(random);
        const SnapshotEntries entries(list);
        std::sort(list.begin(), list.end(), isEarlier);
        ASSERT_EQ(std::vector<SnapshotEntry>(entries.begin(), entries.end()), list);
        ASSERT_EQ(entries, SnapshotEntries(list));
    }
}

TEST(SnapshotEntries, findsEveryPathAndNoOther)
{
    std::mt19937 random(12);
    for (int round = 0; round < 100; ++round) {
        const SnapshotEntries entries(randomEntries(random));
        for (SnapshotEntries::Index i = 0; i < entries.size(); ++i) {
            ASSERT_EQ(entries.find(entries.relativePath(i)), i);
            ASSERT_FALSE(entries.find(entries.relativePath(i) + "!"));
        }
    }
}

TEST(SnapshotEntries, endsASubtreeWhereThePathNoLongerLiesBelow)
{
    std::mt19937 random(13);
    for (int round = 0; round < 200; ++round) {
        const SnapshotEntries entries(randomEntries(random));
        for (SnapshotEntries::Index i = 0; i < entries.size(); ++i) {
            const std::string above = entries.relativePath(i) + "/";
            for (SnapshotEntries::Index j = 0; j < entries.size(); ++j) {
                const bool isBelow = entries.relativePath(j).starts_with(above);
                ASSERT_EQ(isBelow, j > i && j < entries.subtreeEnd(i));
            }
        }
    }
}

TEST(SnapshotEntries, endsSubtreesOfEveryLengthAndDepth)
{
    std::vector<SnapshotEntry> list;
    for (int length = 0; length < 70; ++length) {
        const std::string wide = "wide " + std::to_string(length);
        std::string deep = "deep " + std::to_string(length);
        list.push_back(folder(wide, length));
        list.push_back(folder(deep, 1));
        for (int i = 0; i < length; ++i) {
            list.push_back(file(wide + "/" + std::to_string(i), 1));
            deep += "/x";
            list.push_back(folder(deep, 1));
        }
    }
    const SnapshotEntries entries(list);
    for (SnapshotEntries::Index i = 0; i < entries.size(); ++i) {
        SnapshotEntries::Index end = i + 1;
        const std::string above = entries.relativePath(i) + "/";
        while (end < entries.size() && entries.relativePath(end).starts_with(above)) {
            ++end;
        }
        ASSERT_EQ(entries.subtreeEnd(i), end) << above;
    }
    EXPECT_EQ(entries.totalBytes(), 70 * 69 / 2 + 70);
}

TEST(SnapshotEntries, walksAllPathsWithTheCursor)
{
    std::mt19937 random(14);
    for (int round = 0; round < 200; ++round) {
        const SnapshotEntries entries(randomEntries(random));
        std::vector<std::string> walked;
        for (PathCursor at(entries); !at.isAtEnd(); at.advance()) {
            ASSERT_EQ(at.index(), walked.size());
            walked.emplace_back(at.path());
        }
        ASSERT_EQ(walked, pathsOf(entries));
    }
}

TEST(SnapshotEntries, countsTheTopLevelAsTheSizeOfTheRealm)
{
    const SnapshotEntries entries{folder("a", 30), file("a/x", 30), file("b", 5),
                                  file("lone/deep/file", 1000)};
    EXPECT_EQ(entries.totalBytes(), 35);
    EXPECT_FALSE(entries.isTopLevel(*entries.find("lone/deep/file")));
}

TEST(SnapshotEntriesBuilder, ordersAWalkSiblingBySiblingWithEachFolderBeforeItsContent)
{
    SnapshotEntriesBuilder builder;
    const auto none = SnapshotEntries::noIndex;
    builder.add(none, "z", 1, std::nullopt, FileKind::other, false);
    const auto b = builder.add(none, "b", 0, std::nullopt, FileKind::folder, true);
    const auto a = builder.add(none, "a", 0, std::nullopt, FileKind::folder, true);
    builder.add(none, "a b", 2, std::nullopt, FileKind::other, false);
    builder.add(a, "file10", 10, std::nullopt, FileKind::other, false);
    const auto deep = builder.add(a, "Deep", 0, std::nullopt, FileKind::folder, true);
    builder.add(a, "file2", 20, std::nullopt, FileKind::other, false);
    builder.add(deep, "x", 100, std::nullopt, FileKind::other, false);
    builder.add(b, "y", 7, std::nullopt, FileKind::other, false);
    EXPECT_EQ(builder.relativePath(deep), "a/Deep");
    const SnapshotEntries entries = builder.finish();
    EXPECT_EQ(pathsOf(entries), (std::vector<std::string>{"a", "a/Deep", "a/Deep/x", "a/file2",
                                                          "a/file10", "a b", "b", "b/y", "z"}));
    EXPECT_EQ(entries.allocatedSize(*entries.find("a")), 130);
    EXPECT_EQ(entries.allocatedSize(*entries.find("a/Deep")), 100);
    EXPECT_EQ(entries.allocatedSize(*entries.find("b")), 7);
    EXPECT_EQ(entries, SnapshotEntries(std::vector(entries.begin(), entries.end())));
}

TEST(SnapshotEntriesBuilder, keepsANameThatAFolderListedTwiceOnce)
{
    SnapshotEntriesBuilder builder;
    const auto none = SnapshotEntries::noIndex;
    const auto first = builder.add(none, "a", 0, std::nullopt, FileKind::folder, true);
    const auto second = builder.add(none, "a", 0, std::nullopt, FileKind::folder, true);
    builder.add(second, "x", 5, std::nullopt, FileKind::other, false);
    builder.add(first, "x", 5, std::nullopt, FileKind::other, false);
    const SnapshotEntries entries = builder.finish();
    EXPECT_EQ(pathsOf(entries), (std::vector<std::string>{"a", "a/x"}));
    EXPECT_EQ(entries.totalBytes(), 5);
}

TEST(SnapshotEntriesBuilder, refusesPathsThatNoSnapshotCanHold)
{
    using namespace std::string_literals;
    for (const std::string& path : {""s, "/"s, "/a"s, "a/"s, "a//b"s, "."s, ".."s, "a/./b"s,
                                    "a/../b"s, "a\0b"s, std::string(70'000, 'x')}) {
        SnapshotEntriesBuilder builder;
        EXPECT_THROW(builder.addPath(path, 0, std::nullopt, FileKind::other, false),
                     InvalidEntryPath)
            << path;
    }
    SnapshotEntriesBuilder builder;
    builder.addPath("...", 0, std::nullopt, FileKind::other, false);
    builder.addPath(".a/..b", 0, std::nullopt, FileKind::other, false);
    EXPECT_EQ(builder.finish().size(), 2U);
}

TEST(SnapshotEntriesBuilder, refusesAPathThatStandsTwice)
{
    SnapshotEntriesBuilder builder;
    for (const char* path : {"b", "a", "b"}) {
        builder.addPath(path, 0, std::nullopt, FileKind::other, false);
    }
    EXPECT_THROW(static_cast<void>(builder.finish()), InvalidEntryPath);
}

TEST(SnapshotEntriesBuilder, holdsNamesOfAnyLengthUpToItsLimit)
{
    SnapshotEntriesBuilder builder;
    std::vector<std::string> names;
    for (const std::size_t length : {1UL, 254UL, 255UL, 256UL, 4'000UL, 65'535UL}) {
        for (const char first : {'a', 'b'}) {
            names.push_back(std::string(1, first) + std::string(length - 1, 'x'));
        }
    }
    for (const std::string& name : names) {
        builder.add(SnapshotEntries::noIndex, name, 1, std::nullopt, FileKind::other, false);
    }
    const SnapshotEntries entries = builder.finish();
    for (const std::string& name : names) {
        EXPECT_TRUE(entries.find(name)) << name.size();
    }
}

TEST(SnapshotEntriesDeathTest, stopsTheProgramForADuplicatePath)
{
    EXPECT_DEATH(SnapshotEntries({file("a", 1), file("a", 2)}), "stands twice");
}

}  // namespace
}  // namespace gruk
