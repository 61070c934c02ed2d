#include "core/browse/breadcrumb_trail.h"

#include <gtest/gtest.h>

#include <string>

namespace gruk {

namespace {

using Paths = std::vector<std::string>;

Paths trail(const std::optional<FileURL>& root, const std::optional<FileURL>& current)
{
    Paths paths;
    for (const FileURL& url : BreadcrumbTrail::trail(root, current)) {
        EXPECT_TRUE(url.namesDirectory()) << url.path();
        paths.push_back(url.path());
    }
    return paths;
}

}  // namespace

TEST(BreadcrumbTrail, currentEqualToRootGivesOneURL)
{
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home/me")), Paths{"/home/me"});
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL::directory("/home/me/")), Paths{"/home/me"});
}

TEST(BreadcrumbTrail, everyFolderFromTheRootDownIsNamed)
{
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home/me/a/b c/d")),
              (Paths{"/home/me", "/home/me/a", "/home/me/a/b c", "/home/me/a/b c/d"}));
}

TEST(BreadcrumbTrail, theTrailBeginsAtTheRootDirectoryToo)
{
    EXPECT_EQ(trail(FileURL(), FileURL("/a/b")), (Paths{"/", "/a", "/a/b"}));
    EXPECT_EQ(trail(FileURL(), FileURL()), Paths{"/"});
}

TEST(BreadcrumbTrail, aSiblingWhoseNameMerelyBeginsWithTheRootsNameLiesOutside)
{
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home/me too")), Paths{});
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home/me too/a")), Paths{});
}

TEST(BreadcrumbTrail, aFolderAboveTheRootLiesOutside)
{
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home")), Paths{});
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home/you")), Paths{});
}

TEST(BreadcrumbTrail, withoutARootOrACurrentFolderThereIsNoTrail)
{
    EXPECT_EQ(trail(std::nullopt, FileURL("/a")), Paths{});
    EXPECT_EQ(trail(FileURL("/a"), std::nullopt), Paths{});
    EXPECT_EQ(trail(std::nullopt, std::nullopt), Paths{});
}

TEST(BreadcrumbTrail, bothAreStandardizedFirst)
{
    EXPECT_EQ(trail(FileURL("/home/./me"), FileURL("/home/me/a/../b")),
              (Paths{"/home/me", "/home/me/b"}));
    EXPECT_EQ(trail(FileURL("/home/me"), FileURL("/home/me/../you")), Paths{});
}

TEST(BreadcrumbTrail, namesOfAnyBytesAreKept)
{
    EXPECT_EQ(trail(FileURL("/\xff"), FileURL("/\xff/\n")), (Paths{"/\xff", "/\xff/\n"}));
}

}  // namespace gruk
