#include "app/tour/tree_copy.h"

#include <sys/stat.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

}  // namespace

TEST(TreeCopy, keepsNamesLengthsAndDatesAndNoContent)
{
    const test::TemporaryDirectory directory;
    directory.fileWith("from/caf\xe9/secret.txt", "the content");
    fs::last_write_time(directory.path("from/caf\xe9/secret.txt"),
                        fs::file_time_type::clock::now() - std::chrono::hours(1'000));
    const tour::TreeCopy copy = tour::copyTree(directory.path("from"), directory.path("to"));
    EXPECT_EQ(copy.copied, 2);
    EXPECT_EQ(copy.skipped, 0);
    EXPECT_EQ(directory.read("to/caf\xe9/secret.txt"), std::string(11, '\0'));
    EXPECT_EQ(fs::last_write_time(directory.path("to/caf\xe9/secret.txt")),
              fs::last_write_time(directory.path("from/caf\xe9/secret.txt")));
    EXPECT_EQ(directory.read("from/caf\xe9/secret.txt"), "the content");
}

TEST(TreeCopy, takesTheSpaceOfTheOriginal)
{
    const test::TemporaryDirectory directory;
    directory.file("from/big", 300'000);
    directory.file("from/sparse", 0);
    fs::resize_file(directory.path("from/sparse"), 5'000'000);
    const tour::TreeCopy copy = tour::copyTree(directory.path("from"), directory.path("to"));
    EXPECT_TRUE(copy.hasSpaceOfOriginal);
    for (const char* name : {"big", "sparse"}) {
        const ItemFacts from = itemFacts(FileURL(directory.path(std::string("from/") + name)));
        const ItemFacts to = itemFacts(FileURL(directory.path(std::string("to/") + name)));
        EXPECT_EQ(to.logicalSize, from.logicalSize);
        EXPECT_EQ(to.allocatedSize, from.allocatedSize) << name;
    }
}

TEST(TreeCopy, keepsHardLinksAndTheTextOfLinksAndLeavesOutTheRest)
{
    const test::TemporaryDirectory directory;
    directory.file("from/one", 10);
    directory.hardLink("from/sub/../two", "from/one");
    directory.symbolicLink("from/link", "/nowhere/at all");
    ASSERT_EQ(::mkfifo(directory.path("from/pipe").c_str(), 0600), 0);
    const tour::TreeCopy copy = tour::copyTree(directory.path("from"), directory.path("to"));
    EXPECT_EQ(fs::hard_link_count(directory.path("to/one")), 2U);
    EXPECT_EQ(fs::read_symlink(directory.path("to/link")), "/nowhere/at all");
    EXPECT_FALSE(fs::exists(directory.path("to/pipe")));
    EXPECT_EQ(copy.skipped, 1);
}

TEST(TreeCopy, aChangedCopyHasSomethingNewSomethingLargerAndSomethingLess)
{
    const test::TemporaryDirectory directory;
    directory.file("to/large", 100'000);
    directory.file("to/tiny", 1);
    tour::changeCopy(directory.path("to"));
    EXPECT_TRUE(fs::exists(directory.path("to/gruk-tour-new-file.bin")));
    EXPECT_FALSE(fs::exists(directory.path("to/tiny")));
    EXPECT_EQ(fs::file_size(directory.path("to/large")), 200'000U);
}

TEST(TreeCopy, ofAFolderThatHoldsTheCopyEnds)
{
    const test::TemporaryDirectory directory;
    directory.file("from/one", 10);
    const tour::TreeCopy copy = tour::copyTree(directory.path("from"), directory.path("from/a/to"));
    EXPECT_TRUE(fs::exists(directory.path("from/a/to/one")));
    EXPECT_TRUE(fs::exists(directory.path("from/a/to/a")));
    EXPECT_FALSE(fs::exists(directory.path("from/a/to/a/to")));
    EXPECT_EQ(copy.skipped, 1);
}

}  // namespace gruk
