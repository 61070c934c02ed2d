#include "platform/files/own_folders.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::TemporaryDirectory;

TEST(OwnFolders, holdWhatLiesBelowThemAndNothingBesides)
{
    const OwnFolders own({FileURL::directory("/home/a/.local/share/Gruk"),
                          FileURL::directory("/home/a/.config/Gruk")});
    EXPECT_TRUE(own.contains(FileURL("/home/a/.local/share/Gruk")));
    EXPECT_TRUE(own.contains(FileURL("/home/a/.local/share/Gruk/snapshots.json")));
    EXPECT_TRUE(own.contains(FileURL("/home/a/.local/../.config/Gruk/settings.json")));
    EXPECT_FALSE(own.contains(FileURL("/home/a/.local/share")));
    EXPECT_FALSE(own.contains(FileURL("/home/a/.local/share/Gruk2/snapshots.json")));
    EXPECT_FALSE(OwnFolders().contains(FileURL("/home/a")));
}

TEST(OwnFolders, areKnownByTheirRealPathToo)
{
    TemporaryDirectory disk;
    disk.folder("other/share/Gruk");
    std::filesystem::create_directory_symlink(disk.path("other"), disk.path("home"));

    const OwnFolders own = OwnFolders::resolved({FileURL::directory(disk.path("home/share/Gruk"))});

    EXPECT_TRUE(own.contains(FileURL(disk.path("home/share/Gruk/grants.json"))));
    EXPECT_TRUE(own.contains(FileURL(disk.path("other/share/Gruk/grants.json"))));
    EXPECT_FALSE(own.contains(FileURL(disk.path("other/share"))));
}

TEST(OwnFolders, areKnownBeforeTheyAreMade)
{
    TemporaryDirectory disk;
    disk.folder("other");
    std::filesystem::create_directory_symlink(disk.path("other"), disk.path("home"));

    const OwnFolders own = OwnFolders::resolved({FileURL::directory(disk.path("home/share/Gruk"))});

    EXPECT_TRUE(own.contains(FileURL(disk.path("other/share/Gruk/grants.json"))));
}

}  // namespace

}  // namespace gruk
