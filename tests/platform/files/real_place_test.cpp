#include "platform/files/real_place.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

class RealPlace : public testing::Test {
protected:
    [[nodiscard]] FileURL at(const std::string& relative) const
    {
        return FileURL::directory(disk.path(relative));
    }

    test::TemporaryDirectory disk;
    test::EnvironmentVariable home{"HOME", disk.folder("users/me")};
};

}  // namespace

TEST_F(RealPlace, isThePlaceItselfWhereNoLinkIsOnTheWay)
{
    disk.folder("a/b");
    EXPECT_EQ(realPlace(at("a/b")), at("a/b"));
    const FileURL roundabout(disk.path("a/../a/b"));
    EXPECT_EQ(realPlace(roundabout).path(), roundabout.path()) << "as it was handed in";
    EXPECT_EQ(realPlace(FileURL()), FileURL());
}

TEST_F(RealPlace, followsEveryLinkOnTheWay)
{
    disk.folder("disk/Videos/old");
    disk.symbolicLink("first", "second");
    disk.symbolicLink("second", disk.path("disk/Videos"));
    EXPECT_EQ(realPlace(at("first")), at("disk/Videos"));
    EXPECT_EQ(realPlace(at("first/old")), at("disk/Videos/old"));
    EXPECT_FALSE(realPlace(FileURL(disk.path("first"))).namesDirectory());
}

TEST_F(RealPlace, whatLeadsNowhereIsLeftAsItIs)
{
    disk.symbolicLink("nowhere", "gone");
    disk.symbolicLink("round", "round");
    EXPECT_EQ(realPlace(at("nowhere")), at("nowhere"));
    EXPECT_EQ(realPlace(at("round")), at("round"));
    EXPECT_EQ(realPlace(at("gone")), at("gone"));
}

TEST_F(RealPlace, homeKeepsTheNameThatItGoesBy)
{
    disk.folder("users/me/Music");
    disk.folder("users/mean");
    disk.symbolicLink("home", disk.path("users"));
    const test::EnvironmentVariable linked("HOME", disk.path("home/me"));
    EXPECT_EQ(realPlace(at("home/me/Music")), at("home/me/Music"));
    EXPECT_EQ(realPlace(at("users/me/Music")), at("home/me/Music")) << "one place, one name";
    EXPECT_EQ(realPlace(at("home/mean")), at("users/mean")) << "that is not home";
}

}  // namespace gruk
