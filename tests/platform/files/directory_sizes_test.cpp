#include "platform/linux/directory_sizes.h"

#include <chrono>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "platform/files/trash.h"
#include "platform/linux/descriptor.h"
#include "tests/support/trash_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::TemporaryDirectory;
using test::TrashHouse;

Bytes blocksOf(const std::string& path)
{
    struct stat facts {};
    EXPECT_EQ(::lstat(path.c_str(), &facts), 0);
    return static_cast<Bytes>(facts.st_blocks) * 512;
}

Bytes blocksOfTree(const std::string& root)
{
    Bytes total = blocksOf(root);
    for (const auto& item : fs::recursive_directory_iterator(root)) {
        total += item.is_symlink() ? 0 : blocksOf(item.path().string());
    }
    return total;
}

TEST(DirectorySizes, aFolderInTheTrashIsNotedAndForgottenWhenItLeaves)
{
    const TrashHouse house;
    house.directory().file("home/a b/one", 10'000);
    house.directory().file("home/a b/deep/er/two", 5'000);
    house.directory().fileWith("data/Trash/directorysizes", "1 2 other\nnoise");
    const Bytes size = blocksOfTree(house.path("home/a b"));

    const FileURL now = trashItem(house.url("home/a b"));

    struct stat info {};
    ASSERT_EQ(::stat(house.trash("info/a b.trashinfo").c_str(), &info), 0);
    EXPECT_EQ(house.directory().read("data/Trash/directorysizes"),
              "1 2 other\nnoise\n" + std::to_string(size) + " "
                  + std::to_string(info.st_mtim.tv_sec) + " a%20b\n");
    restoreTrashedItem(now, house.url("home/a b"));
    EXPECT_EQ(house.directory().read("data/Trash/directorysizes"), "1 2 other\nnoise\n");
}

TEST(DirectorySizes, aFileIsNotNoted)
{
    const TrashHouse house;
    house.directory().file("home/a");
    (void)trashItem(house.url("home/a"));
    EXPECT_FALSE(test::stands(house.trash("directorysizes")));
}

TEST(DirectorySizes, aFileThatIsNoneOfOursIsLeftAlone)
{
    const TrashHouse house;
    house.directory().folder("home/a");
    house.directory().fileWith("elsewhere", "theirs");
    house.directory().symbolicLink("data/Trash/directorysizes", house.path("elsewhere"));
    (void)trashItem(house.url("home/a"));
    EXPECT_EQ(house.directory().read("elsewhere"), "theirs");
    EXPECT_TRUE(fs::is_symlink(house.trash("directorysizes")));
}

TEST(DirectorySizes, aFolderDeeperThanTheLimitHasNoSize)
{
    const TemporaryDirectory disk;
    std::string path = "top";
    for (int depth = 1; depth < 5; ++depth) {
        path += "/down";
    }
    disk.file(path + "/x", 10'000);
    const Descriptor parent(::open(disk.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    WalkLimits limits;
    limits.depth = 5;
    EXPECT_EQ(sizeOnDisk(parent.number(), "top", limits), blocksOfTree(disk.path("top")));
    limits.depth = 4;
    EXPECT_EQ(sizeOnDisk(parent.number(), "top", limits), std::nullopt);
    // Each level of a folder holds a descriptor, of which a process has few.
    EXPECT_LE(WalkLimits().depth, 200U);
}

TEST(DirectorySizes, theLineOfAFolderTakesThePlaceOfItsFormerOnes)
{
    EXPECT_EQ(withSizeOf("", "a", 5, 7), "5 7 a\n");
    EXPECT_EQ(withSizeOf("1 1 a\n2 2 b\n3 3 a\n", "a", 5, 7), "2 2 b\n5 7 a\n");
    EXPECT_EQ(withSizeOf("1 1 a\n2 2 b", "a", std::nullopt, 0), "2 2 b");
    EXPECT_EQ(withSizeOf("2 2 %61\n\n", "\xff", 5, 7), "2 2 %61\n\n5 7 %FF\n");
    EXPECT_EQ(withSizeOf("1 1 a", "b", 5, 7), "1 1 a\n5 7 b\n");
}

TEST(DirectorySizes, aFileOfSeveralNamesCountsOnce)
{
    const TemporaryDirectory directory;
    directory.file("folder/a", 100'000);
    const auto before = sizeOnDisk(AT_FDCWD, directory.path("folder"), {});
    directory.hardLink("folder/b", "folder/a");
    EXPECT_EQ(sizeOnDisk(AT_FDCWD, directory.path("folder"), {}), before);
    EXPECT_EQ(before, blocksOf(directory.path("folder")) + blocksOf(directory.path("folder/a")));
}

TEST(DirectorySizes, aWalkThatGrowsTooLongComesToNothing)
{
    const TemporaryDirectory directory;
    for (int i = 0; i < 20; ++i) {
        directory.file("folder/" + std::to_string(i) + "/x", 1);
    }
    const std::string folder = directory.path("folder");
    EXPECT_TRUE(sizeOnDisk(AT_FDCWD, folder, {40, std::chrono::minutes(1)}));
    EXPECT_FALSE(sizeOnDisk(AT_FDCWD, folder, {39, std::chrono::minutes(1)}));
    EXPECT_FALSE(sizeOnDisk(AT_FDCWD, folder, {40, std::chrono::milliseconds(-1)}));
    EXPECT_FALSE(sizeOnDisk(AT_FDCWD, directory.path("missing"), {}));
}

}  // namespace

}  // namespace gruk
