#include "platform/files/tree_reader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;
using Access = TreeReader::AttributeAccess;

constexpr Access everyAccess[] = {Access::best, Access::workingDirectory, Access::descriptorPath};

std::set<std::string> namesIn(TreeReader& reader, std::size_t depth, const std::string& name)
{
    std::set<std::string> names;
    reader.list(depth, name, [&](const ListedChild& child) { names.emplace(child.name); });
    return names;
}

/// Sets an attribute of the user's; false where the file system has none.
bool setAttribute(const std::string& path, const std::string& name, const std::string& value)
{
    return ::setxattr(path.c_str(), ("user." + name).c_str(), value.data(), value.size(), 0) == 0;
}

std::size_t openDescriptors()
{
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

TEST(TreeReader, describesEachChildWithoutDotAndDotDot)
{
    const TemporaryDirectory directory;
    directory.file("file", 5'000);
    directory.folder("folder");
    directory.symbolicLink("link", "nowhere");
    ASSERT_EQ(::mkfifo(directory.path("fifo").c_str(), 0600), 0);
    TreeReader reader(directory.url());
    std::map<std::string, ListedChild> children;
    reader.list(
        0, {}, [&](const ListedChild& child) { children.emplace(std::string(child.name), child); });
    ASSERT_EQ(children.size(), 4U);
    EXPECT_EQ(children["file"].facts->type, ItemType::regularFile);
    EXPECT_EQ(children["file"].facts->logicalSize, 5'000);
    EXPECT_GE(children["file"].facts->allocatedSize, 5'000);
    EXPECT_EQ(children["folder"].facts->type, ItemType::directory);
    EXPECT_EQ(children["fifo"].facts->type, ItemType::other);
    EXPECT_TRUE(children["link"].isSymbolicLink);
    EXPECT_FALSE(children["file"].isSymbolicLink);
}

TEST(TreeReader, listsADirectoryOfManyPiecesWholeAndOnce)
{
    const TemporaryDirectory directory;
    std::set<std::string> expected;
    for (int i = 0; i < 5'000; ++i) {
        const std::string name = "a rather long name to fill the pieces " + std::to_string(i);
        directory.file(name);
        expected.insert(name);
    }
    TreeReader reader(directory.url());
    std::size_t count = 0;
    reader.list(0, {}, [&](const ListedChild&) { ++count; });
    EXPECT_EQ(count, expected.size());
    EXPECT_EQ(namesIn(reader, 0, {}), expected) << "also when it is listed again";
}

TEST(TreeReader, tellsOfAttributesTheSameByEveryWay)
{
    const TemporaryDirectory directory;
    directory.file("none");
    directory.file("first");
    directory.file("both");
    directory.folder("folder");
    directory.file("other");
    directory.symbolicLink("link", "first");
    if (!setAttribute(directory.path("first"), "one", "1")) {
        GTEST_SKIP() << "this file system keeps no attributes of the user's";
    }
    ASSERT_TRUE(setAttribute(directory.path("both"), "one", "11"));
    ASSERT_TRUE(setAttribute(directory.path("both"), "two", std::string("2\0 2", 4)));
    ASSERT_TRUE(setAttribute(directory.path("folder"), "two", "222"));
    ASSERT_TRUE(setAttribute(directory.path("other"), "one.more", "x"));
    for (const Access access : everyAccess) {
        const std::string before = fs::current_path();
        {
            TreeReader reader(directory.url(), {"one", "two"}, access);
            std::map<std::string, std::uint32_t> attributes;
            std::map<std::string, std::string> values;
            reader.list(0, {}, [&](const ListedChild& child) {
                const std::string name(child.name);
                attributes[name] = child.attributes;
                values[name] = reader.attribute(child, 0).value_or("-") + "|"
                               + reader.attribute(child, 1).value_or("-");
            });
            EXPECT_EQ(attributes, (std::map<std::string, std::uint32_t>{{"none", 0},
                                                                        {"first", 1},
                                                                        {"both", 3},
                                                                        {"folder", 2},
                                                                        {"other", 0},
                                                                        {"link", 0}}));
            EXPECT_EQ(values["first"], "1|-");
            EXPECT_EQ(values["both"], std::string("11|2\0 2", 7));
            EXPECT_EQ(values["folder"], "-|222");
            EXPECT_EQ(values["link"], "-|-");
        }
        EXPECT_EQ(fs::current_path(), before) << "the thread is back where it was";
    }
}

TEST(TreeReader, findsAnAttributeAmongAThousandOthers)
{
    const TemporaryDirectory directory;
    directory.file("file");
    for (int i = 0; i < 60; ++i) {
        if (!setAttribute(directory.path("file"), "padding" + std::to_string(i), "x")) {
            break;
        }
    }
    if (!setAttribute(directory.path("file"), "zz", "yes")
        && (errno == ENOTSUP || errno == ENOSPC)) {
        GTEST_SKIP() << "this file system has no room for attributes";
    }
    TreeReader reader(directory.url(), {"zz"});
    reader.list(0, {}, [&](const ListedChild& child) {
        EXPECT_EQ(child.attributes, 1U);
        EXPECT_EQ(reader.attribute(child, 0), "yes");
    });
}

TEST(TreeReader, comesBackToEveryFolderOfATreeDeeperThanItHoldsOpen)
{
    const TemporaryDirectory directory;
    constexpr std::size_t depth = 400;
    int at = ::open(directory.path().c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC);
    for (std::size_t level = 0; level < depth; ++level) {
        const std::string next = std::string(40, 'd');
        ASSERT_EQ(::mkdirat(at, ("beside" + std::to_string(level)).c_str(), 0700), 0);
        ASSERT_EQ(::mkdirat(at, next.c_str(), 0700), 0);
        const int below = ::openat(at, next.c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC);
        ::close(at);
        at = below;
    }
    ::close(at);
    const std::size_t before = openDescriptors();
    TreeReader reader(directory.url());
    static_cast<void>(namesIn(reader, 0, {}));
    for (std::size_t level = 1; level <= depth; ++level) {
        static_cast<void>(namesIn(reader, level, std::string(40, 'd')));
    }
    EXPECT_LT(openDescriptors() - before, 100U);
    for (std::size_t level = depth; level-- > 0;) {
        EXPECT_TRUE(namesIn(reader, level + 1, "beside" + std::to_string(level)).empty());
        EXPECT_LT(openDescriptors() - before, 200U);
    }
}

TEST(TreeReader, refusesAnotherDirectoryInThePlaceOfOneThatItComesBackTo)
{
    const TemporaryDirectory directory;
    std::string path = directory.path();
    for (int level = 0; level < 100; ++level) {
        path += "/d";
        ASSERT_EQ(::mkdir(path.c_str(), 0700), 0);
    }
    directory.folder("d/x");
    TreeReader reader(directory.url());
    static_cast<void>(namesIn(reader, 0, {}));
    for (std::size_t level = 1; level <= 100; ++level) {
        static_cast<void>(namesIn(reader, level, "d"));
    }
    fs::rename(directory.path("d"), directory.path("moved"));
    directory.folder("d/x/secret");
    try {
        static_cast<void>(namesIn(reader, 2, "x"));
        FAIL() << "listed what lies in another directory";
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
    }
}

TEST(TreeReader, neverFollowsALinkInThePlaceOfADirectory)
{
    const TemporaryDirectory directory;
    directory.folder("elsewhere/inside");
    directory.folder("realm/folder");
    TreeReader reader(FileURL::directory(directory.path("realm")));
    static_cast<void>(namesIn(reader, 0, {}));
    fs::remove(directory.path("realm/folder"));
    directory.symbolicLink("realm/folder", "../elsewhere");
    EXPECT_THROW(static_cast<void>(namesIn(reader, 1, "folder")), FileError);
}

TEST(TreeReader, aChildThatIsGoneWhenItIsLookedAtIsToldAsThat)
{
    const TemporaryDirectory directory;
    for (const char* name : {"a", "b", "c"}) {
        directory.file(name);
    }
    TreeReader reader(directory.url());
    std::vector<std::pair<bool, bool>> told;
    reader.list(0, {}, [&](const ListedChild& child) {
        told.emplace_back(child.hasVanished, child.facts.has_value());
        for (const char* name : {"a", "b", "c"}) {
            fs::remove(directory.path(name));
        }
    });
    EXPECT_EQ(told,
              (std::vector<std::pair<bool, bool>>{{false, true}, {true, false}, {true, false}}));
}

TEST(TreeReader, aChildThatMayNotBeLookedAtHasNotVanished)
{
    const TemporaryDirectory directory;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& own) {
            const std::string closed = own.folder("closed");
            own.file("closed/x");
            ::chmod(closed.c_str(), 0400);
            TreeReader reader(FileURL::directory(closed));
            int children = 0;
            bool isRight = true;
            reader.list(0, {}, [&](const ListedChild& child) {
                ++children;
                isRight = isRight && !child.facts && !child.hasVanished;
            });
            ::chmod(closed.c_str(), 0700);
            return isRight && children == 1;
        },
        directory));
}

TEST(TreeReader, saysWhatCannotBeOpenedAndWhy)
{
    const TemporaryDirectory directory;
    directory.file("file");
    EXPECT_THROW(TreeReader(FileURL(directory.path("missing"))), FileError);
    TreeReader reader(directory.url());
    static_cast<void>(namesIn(reader, 0, {}));
    try {
        static_cast<void>(namesIn(reader, 1, "file"));
        FAIL() << "listed a file";
    } catch (const FileError& error) {
        EXPECT_EQ(error.code(), std::errc::not_a_directory);
        EXPECT_EQ(error.path(), directory.path("file"));
    }
}

}  // namespace
}  // namespace gruk
