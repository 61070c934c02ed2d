#include "platform/foundation/file_url.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace gruk {

namespace {

using Names = FileURL::Names;
using namespace std::string_literals;

/// Paths of any bytes that a file system takes, with the separators and dots that matter.
rc::Gen<std::string> anyPath()
{
    const auto byte = rc::gen::oneOf(rc::gen::elementOf("/./..//a%?#: "s),
                                     rc::gen::cast<char>(rc::gen::inRange(1, 256)));
    return rc::gen::map(rc::gen::container<std::string>(byte),
                        [](const std::string& bytes) { return "/" + bytes; });
}

TEST(FileURL, isTheRootAtFirst)
{
    EXPECT_EQ(FileURL().path(), "/");
    EXPECT_TRUE(FileURL().namesDirectory());
    EXPECT_EQ(FileURL(""), FileURL());
    EXPECT_EQ(FileURL("///"), FileURL());
}

TEST(FileURL, aTrailingSlashMakesItADirectory)
{
    EXPECT_EQ(FileURL("/a/b/").path(), "/a/b");
    EXPECT_TRUE(FileURL("/a/b/").namesDirectory());
    EXPECT_FALSE(FileURL("/a/b").namesDirectory());
    EXPECT_EQ(FileURL("/a/b//"), FileURL::directory("/a/b"));
    EXPECT_NE(FileURL("/a/b"), FileURL("/a/b/"));
}

TEST(FileURL, takesARelativePathFromTheRootAndStopsAtNul)
{
    EXPECT_EQ(FileURL("a/b").path(), "/a/b");
    EXPECT_EQ(FileURL("/a\0b"s).path(), "/a");
    EXPECT_EQ(FileURL("/a/\0b"s), FileURL::directory("/a"));
}

TEST(FileURL, keepsDotsAndDoubledSlashesUntilAsked)
{
    EXPECT_EQ(FileURL("/a//b/../c").path(), "/a//b/../c");
}

TEST(FileURL, namesItsLastComponent)
{
    EXPECT_EQ(FileURL("/a/b.txt").lastPathComponent(), "b.txt");
    EXPECT_EQ(FileURL("/a/b/").lastPathComponent(), "b");
    EXPECT_EQ(FileURL().lastPathComponent(), "/");
}

TEST(FileURL, goesUpToTheRootAndNoFurther)
{
    EXPECT_EQ(FileURL("/a/b").deletingLastPathComponent(), FileURL::directory("/a"));
    EXPECT_EQ(FileURL("/a").deletingLastPathComponent(), FileURL());
    EXPECT_EQ(FileURL().deletingLastPathComponent(), FileURL());
    EXPECT_EQ(FileURL("/a//b").deletingLastPathComponent(), FileURL::directory("/a"));
}

TEST(FileURL, appendsBelow)
{
    EXPECT_EQ(FileURL("/a").appending("b/c"), FileURL("/a/b/c"));
    EXPECT_EQ(FileURL().appending("b"), FileURL("/b"));
    EXPECT_EQ(FileURL("/a").appending("b", Names::directory), FileURL("/a/b/"));
    EXPECT_EQ(FileURL("/a").appending("b/"), FileURL("/a/b/"));
    EXPECT_EQ(FileURL("/a").appending("/b"), FileURL("/a/b"));
    EXPECT_EQ(FileURL("/a").appending(""), FileURL("/a"));
    EXPECT_EQ(FileURL("/a").appending("", Names::directory), FileURL("/a"));
    EXPECT_EQ(FileURL("/a").appending("/"), FileURL("/a"));
    EXPECT_EQ(FileURL("/a").appending("\0b"s), FileURL("/a"));
}

TEST(FileURL, standardizesInTheTextAlone)
{
    EXPECT_EQ(FileURL("/a/./b/../c//d").standardized(), FileURL("/a/c/d"));
    EXPECT_EQ(FileURL("/../../a").standardized(), FileURL("/a"));
    EXPECT_EQ(FileURL("/a/..").standardized(), FileURL());
    EXPECT_EQ(FileURL("/a/b/.").standardized().path(), "/a/b");
    EXPECT_EQ(FileURL("/a/...").standardized(), FileURL("/a/..."));
    EXPECT_EQ(FileURL("/a/b/").standardized(), FileURL("/a/b/"));
}

TEST(FileURL, encodesEveryByteThatIsNotUnreserved)
{
    EXPECT_EQ(FileURL("/home/me/a b-._~9").fileURLText(), "file:///home/me/a%20b-._~9");
    EXPECT_EQ(FileURL("/caf\xE9").fileURLText(), "file:///caf%E9");
    EXPECT_EQ(FileURL("/a%?#&+:").fileURLText(), "file:///a%25%3F%23%26%2B%3A");
    EXPECT_EQ(FileURL("/a/").fileURLText(), "file:///a/");
    EXPECT_EQ(FileURL().fileURLText(), "file:///");
}

TEST(FileURL, readsWhatOthersWrite)
{
    EXPECT_EQ(FileURL::fromFileURLText("file://localhost/a"), FileURL("/a"));
    EXPECT_EQ(FileURL::fromFileURLText("FILE://LocalHost/a/"), FileURL("/a/"));
    EXPECT_EQ(FileURL::fromFileURLText("file:///a%c3%a9(b)"), FileURL("/a\xC3\xA9(b)"));
}

TEST(FileURL, refusesEveryOtherText)
{
    for (const char* text :
         {"", "/a", "file:", "file:a", "file:/a", "file://", "file://host/a", "file://localhosta/b",
          "http:///a", "file:///%", "file:///%4", "file:///%4g", "file:///%G4", "file:///a%00b",
          "file:///a?b", "file:///a#b", " file:///a"}) {
        EXPECT_EQ(FileURL::fromFileURLText(text), std::nullopt) << text;
    }
    EXPECT_EQ(FileURL::fromFileURLText("file:///a\0b"s), std::nullopt);
}

TEST(PathIsAtOrBelow, comparesWholeComponents)
{
    EXPECT_TRUE(pathIsAtOrBelow("/a", "/a"));
    EXPECT_TRUE(pathIsAtOrBelow("/a/bc", "/a"));
    EXPECT_FALSE(pathIsAtOrBelow("/a/bc", "/a/b"));
    EXPECT_FALSE(pathIsAtOrBelow("/a", "/a/b"));
    EXPECT_TRUE(pathIsAtOrBelow("/a", "/"));
    EXPECT_TRUE(pathIsAtOrBelow("/", "/"));
}

RC_GTEST_PROP(FileURL, readsBackItsTextForAnyBytes, ())
{
    const FileURL url(*anyPath(), *rc::gen::element(Names::item, Names::directory));
    const std::string text = url.fileURLText();
    for (const char c : text) {
        RC_ASSERT(c > ' ' && c < '\x7F');
    }
    RC_ASSERT(FileURL::fromFileURLText(text) == url);
}

RC_GTEST_PROP(FileURL, standardizingTwiceChangesNothingMore, ())
{
    const FileURL once = FileURL(*anyPath()).standardized();
    RC_ASSERT(once.standardized() == once);
    RC_ASSERT(once.path().find("//") == std::string::npos);
}

RC_GTEST_PROP(FileURL, goingUpUndoesAppendingAName, ())
{
    const FileURL base = FileURL(*anyPath()).standardized();
    const std::string name = *rc::gen::nonEmpty(rc::gen::container<std::string>(
        rc::gen::distinctFrom(rc::gen::inRange<char>(1, 127), '/')));
    const FileURL below = base.appending(name);
    RC_ASSERT(below.lastPathComponent() == name);
    RC_ASSERT(below.deletingLastPathComponent().path() == base.path());
    RC_ASSERT(pathIsAtOrBelow(below.path(), base.path()));
    RC_ASSERT(!pathIsAtOrBelow(base.path(), below.path()));
}

}  // namespace

}  // namespace gruk
