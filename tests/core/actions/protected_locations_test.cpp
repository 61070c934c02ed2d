#include "core/actions/protected_locations.h"

#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

TEST(ProtectedLocations, aPathIsInsideItsRootAndTheRootItself)
{
    EXPECT_TRUE(isInsideRoot(FileURL("/data/photos"), FileURL("/data/photos")));
    EXPECT_TRUE(isInsideRoot(FileURL("/data/photos/a"), FileURL::directory("/data/photos")));
    EXPECT_FALSE(isInsideRoot(FileURL("/data"), FileURL("/data/photos")));
}

TEST(ProtectedLocations, aSiblingThatBeginsWithTheRootsNameIsNotInside)
{
    EXPECT_FALSE(isInsideRoot(FileURL("/data/photos2"), FileURL("/data/photos")));
}

TEST(ProtectedLocations, withRootSlashEveryAbsolutePathIsInside)
{
    EXPECT_TRUE(isInsideRoot(FileURL("/"), FileURL("/")));
    EXPECT_TRUE(isInsideRoot(FileURL("/a/b"), FileURL("/")));
}

TEST(ProtectedLocations, theDefaultVolumeRootIsTheVolumesFolderOrSlash)
{
    EXPECT_EQ(defaultVolumeRoot(FileURL("/Volumes/Disk")), FileURL::directory("/Volumes/Disk"));
    EXPECT_EQ(defaultVolumeRoot(FileURL("/Volumes/Disk/a/b")), FileURL::directory("/Volumes/Disk"));
    EXPECT_EQ(defaultVolumeRoot(FileURL("/Volumes/x/../Disk/a")),
              FileURL::directory("/Volumes/Disk"));
    EXPECT_EQ(defaultVolumeRoot(FileURL("/Volumes")), FileURL::directory("/"));
    EXPECT_EQ(defaultVolumeRoot(FileURL("/VolumesToo/Disk")), FileURL::directory("/"));
    EXPECT_EQ(defaultVolumeRoot(FileURL("/home/a")), FileURL::directory("/"));
    EXPECT_EQ(defaultVolumeRoot(FileURL("/")), FileURL::directory("/"));
}

TEST(ProtectedLocations, exactlySlashHomeAndTheVolumeRootAreProtected)
{
    const test::EnvironmentVariable home("HOME", "/home/someone");
    const FileURL slash = FileURL::directory("/");
    EXPECT_TRUE(isProtectedLocation(FileURL("/"), slash));
    EXPECT_TRUE(isProtectedLocation(FileURL("/home/someone"), slash));
    EXPECT_TRUE(isProtectedLocation(FileURL::directory("/home/x/../someone"), slash));
    EXPECT_TRUE(isProtectedLocation(FileURL("/Volumes/Disk"), FileURL::directory("/Volumes/Disk")));
    EXPECT_FALSE(isProtectedLocation(FileURL("/home/someone/a"), slash));
    EXPECT_FALSE(isProtectedLocation(FileURL("/home"), slash));
    EXPECT_FALSE(isProtectedLocation(FileURL("/usr"), slash));
    EXPECT_FALSE(
        isProtectedLocation(FileURL("/Volumes/Disk/a"), FileURL::directory("/Volumes/Disk")));
}

TEST(ProtectedLocations, aLinkToSlashAsRealmIsAsProtectedAsSlash)
{
    const test::TemporaryDirectory directory;
    const FileURL link = FileURL::directory(directory.symbolicLink("link", "/"));
    EXPECT_TRUE(isProtectedLocation(link, liveFolderVolumeRoot(link)));
    // As an item, the link itself may go.
    EXPECT_FALSE(isProtectedLocation(link, liveVolumeRoot(link)));
    const FileURL harmless =
        FileURL::directory(directory.symbolicLink("harmless", directory.folder("folder")));
    EXPECT_FALSE(isProtectedLocation(harmless, liveFolderVolumeRoot(harmless)));
}

}  // namespace

}  // namespace gruk
