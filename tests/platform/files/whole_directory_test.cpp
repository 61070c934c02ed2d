#include "platform/files/whole_directory.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <sys/xattr.h>

#include <gtest/gtest.h>

#include "platform/files/tree_reader.h"
#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::TemporaryDirectory;

/// What is told of one child.
struct Told {
    std::string name;
    std::optional<ItemFacts> facts;
    bool isSymbolicLink = false;
    std::optional<std::string> mark;

    friend bool operator==(const Told&, const Told&) = default;
};

const std::vector<std::string> attributeNames{"gruk.other", "gruk.mark"};

std::vector<Told> readAll(const FileURL& directory)
{
    std::vector<Told> all;
    const auto begin = [&](std::size_t count) { all.resize(count); };
    const auto visit = [&](std::size_t number, const ListedChild& child, AttributeValue value) {
        Told& told = all[number];
        EXPECT_TRUE(told.name.empty()) << "visited twice";
        told = {std::string(child.name), child.facts, child.isSymbolicLink, std::nullopt};
        if ((child.attributes & 2U) != 0) {
            told.mark = value(1);
        }
    };
    readWholeDirectory(directory, attributeNames, {begin, visit});
    return all;
}

/// The same by the reader of trees, in one thread.
std::vector<Told> readOneByOne(const FileURL& directory)
{
    std::vector<Told> all;
    TreeReader reader(directory, attributeNames);
    reader.list(0, {}, [&](const ListedChild& child) {
        all.push_back({std::string(child.name), child.facts, child.isSymbolicLink, std::nullopt});
        if ((child.attributes & 2U) != 0) {
            all.back().mark = reader.attribute(child, 1);
        }
    });
    return all;
}

void furnish(const TemporaryDirectory& directory, int files)
{
    for (int i = 0; i < files; ++i) {
        const std::string path = directory.fileWith(
            "in/file " + std::to_string(i), std::string(static_cast<std::size_t>(i % 7), 'x'));
        if (i % 100 == 0) {
            (void)::setxattr(path.c_str(), "user.gruk.mark", path.data(), path.size(), 0);
        }
    }
    directory.folder("in/folder");
    directory.symbolicLink("in/link", "nowhere");
    directory.fileWith("in/\xFF bytes", "odd name");
}

TEST(WholeDirectory, tellsTheSameAsTheReaderOfTreesInTheSameOrder)
{
    for (const int files : {0, 1, 300, 9'000}) {
        const TemporaryDirectory directory;
        furnish(directory, files);
        const FileURL folder = FileURL::directory(directory.path("in"));
        EXPECT_EQ(readAll(folder), readOneByOne(folder)) << files;
    }
}

TEST(WholeDirectory, aLargeOneIsReadBySeveralThreadsWhereThereAreProcessors)
{
    if (std::thread::hardware_concurrency() < 2) {
        GTEST_SKIP() << "one processor";
    }
    const TemporaryDirectory directory;
    furnish(directory, 4'200);
    std::mutex lock;
    std::set<std::thread::id> threads;
    std::atomic<bool> isSecondThere = false;
    const auto begin = [](std::size_t) {};
    const auto visit = [&](std::size_t, const ListedChild&, AttributeValue) {
        {
            const std::lock_guard guard(lock);
            threads.insert(std::this_thread::get_id());
            isSecondThere = isSecondThere || threads.size() > 1;
        }
        isSecondThere.notify_all();
        isSecondThere.wait(false);
    };
    readWholeDirectory(FileURL::directory(directory.path("in")), {}, {begin, visit});
    EXPECT_GT(threads.size(), 1U);
}

TEST(WholeDirectory, anErrorOfTheVisitorComesOutAndEndsTheReading)
{
    const TemporaryDirectory directory;
    furnish(directory, 9'000);
    std::atomic<int> visits = 0;
    const auto begin = [](std::size_t) {};
    const auto visit = [&](std::size_t, const ListedChild&, AttributeValue) {
        if (++visits == 10) {
            throw std::runtime_error("enough");
        }
    };
    EXPECT_THROW(readWholeDirectory(FileURL::directory(directory.path("in")), {}, {begin, visit}),
                 std::runtime_error);
}

TEST(WholeDirectory, oneThatIsNotThereOrNoDirectoryThrows)
{
    const TemporaryDirectory directory;
    directory.file("file");
    EXPECT_THROW((void)readAll(FileURL(directory.path("missing"))), FileError);
    EXPECT_THROW((void)readAll(FileURL(directory.path("file"))), FileError);
}

TEST(WholeDirectory, aLinkToADirectoryIsReadAsTheDirectory)
{
    const TemporaryDirectory directory;
    furnish(directory, 3);
    directory.symbolicLink("way", "in");
    EXPECT_EQ(readAll(FileURL(directory.path("way"))).size(), 6U);
}

}  // namespace

}  // namespace gruk
