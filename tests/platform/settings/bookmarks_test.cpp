#include "platform/settings/bookmarks.h"

#include <filesystem>
#include <functional>
#include <iterator>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::TemporaryDirectory;

std::errc errorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const FileError& error) {
        return static_cast<std::errc>(error.code().value());
    }
    return {};
}

std::errc errorOfResolving(const std::string& bookmark)
{
    return errorOf([&] { (void)resolveBookmark(bookmark); });
}

/// The bookmark without the line that begins with `key`.
std::string without(const std::string& key, std::string bookmark)
{
    const std::size_t start = bookmark.find("\n" + key + " ");
    if (start != std::string::npos) {
        bookmark.erase(start, bookmark.find('\n', start + 1) - start);
    }
    return bookmark;
}

std::size_t openDescriptors()
{
    const auto all = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

TEST(Bookmark, isMadeAnewWhereverItsVeryDirectoryIs)
{
    const TemporaryDirectory directory;
    const std::string path = directory.folder("realm");
    const std::string bookmark = makeBookmark(FileURL(path));
    const std::string away = directory.folder("deep") + "/away";
    std::filesystem::rename(path, away);
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
    EXPECT_EQ(resolveBookmark(renewBookmark(bookmark, FileURL(away))), FileURL::directory(away));
    const FileURL other(directory.folder("other"));
    EXPECT_EQ(errorOf([&] { (void)renewBookmark(bookmark, other); }),
              std::errc::no_such_file_or_directory);
}

TEST(Bookmark, ofADirectoryWithoutANumberIsNotMadeAnewElsewhere)
{
    const TemporaryDirectory directory;
    const FileURL realm(directory.folder("realm"));
    // As on file systems that deal the numbers out anew at each mount.
    const std::string bookmark = without("born", without("inode", makeBookmark(realm)));
    const FileURL other(directory.folder("other"));
    EXPECT_EQ(errorOf([&] { (void)renewBookmark(bookmark, other); }),
              std::errc::no_such_file_or_directory)
        << "any folder of the volume would do";
}

TEST(Bookmark, leadsBackToItsDirectory)
{
    const TemporaryDirectory directory;
    const std::string path = directory.folder("realm");
    const FileURL resolved = resolveBookmark(makeBookmark(FileURL(path)));
    EXPECT_EQ(resolved, FileURL::directory(path));
    EXPECT_EQ(resolveBookmark(makeBookmark(FileURL())), FileURL());
}

TEST(Bookmark, isTextThatOutlivesTheProcess)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("a realm")));
    EXPECT_TRUE(
        bookmark.starts_with("gruk-bookmark 1\nplace file://" + directory.path() + "/a%20realm/\n"))
        << bookmark;
    EXPECT_EQ(bookmark, makeBookmark(FileURL(directory.path("a realm"))));
}

TEST(Bookmark, doesNotMindWhatChangesInside)
{
    const TemporaryDirectory directory;
    const std::string path = directory.folder("realm");
    const std::string bookmark = makeBookmark(FileURL(path));
    (void)directory.folder("realm/new/folders");
    (void)directory.file("realm/file", 100'000);
    ASSERT_EQ(::chmod(path.c_str(), 0500), 0);
    EXPECT_EQ(resolveBookmark(bookmark).path(), path);
}

TEST(Bookmark, survivesBeingRenamedBesideItsOldPlace)
{
    const TemporaryDirectory directory;
    (void)directory.folder("other");
    (void)directory.file("file");
    const std::string bookmark = makeBookmark(FileURL(directory.folder("realm")));
    std::filesystem::rename(directory.path("realm"), directory.path("new\xFFname"));
    EXPECT_EQ(resolveBookmark(bookmark), FileURL::directory(directory.path("new\xFFname")));
}

TEST(Bookmark, followsTheDirectoryAndNotTheName)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("realm")));
    std::filesystem::rename(directory.path("realm"), directory.path("former"));
    (void)directory.folder("realm");
    EXPECT_EQ(resolveBookmark(bookmark), FileURL::directory(directory.path("former")));
}

TEST(Bookmark, isRenewedAtTheNewPlaceOfItsDirectory)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("realm")));
    (void)directory.folder("elsewhere");
    std::filesystem::rename(directory.path("realm"), directory.path("elsewhere/realm"));
    const FileURL place = FileURL::directory(directory.path("elsewhere/realm"));
    EXPECT_EQ(resolveBookmark(renewBookmark(bookmark, place)), place);
}

TEST(Bookmark, isNotRenewedForADifferentDirectory)
{
    const TemporaryDirectory directory;
    const FileURL place = FileURL::directory(directory.folder("realm"));
    const std::string bookmark = makeBookmark(place);
    std::filesystem::rename(place.path(), directory.path("former"));
    EXPECT_EQ(errorOf([&] { (void)renewBookmark(bookmark, place); }),
              std::errc::no_such_file_or_directory);
    (void)directory.folder("realm");
    EXPECT_EQ(errorOf([&] { (void)renewBookmark(bookmark, place); }),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(errorOf([&] { (void)renewBookmark("no bookmark", place); }),
              std::errc::invalid_argument);
}

TEST(Bookmark, failsForADifferentDirectoryAtTheSamePath)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("realm")));
    // Kept elsewhere, so that its number cannot be given to the new one.
    (void)directory.folder("elsewhere");
    std::filesystem::rename(directory.path("realm"), directory.path("elsewhere/realm"));
    (void)directory.folder("realm");
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
}

TEST(Bookmark, failsForANewDirectoryThatGotTheNumberOfTheOld)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("realm")));
    if (bookmark.find("\nborn ") == std::string::npos) {
        GTEST_SKIP() << "this file system keeps no birth times";
    }
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(::stat(directory.path("realm").c_str(), &before), 0);
    for (int i = 0; i < 1'000 && after.st_ino != before.st_ino; ++i) {
        std::filesystem::remove(directory.path("realm"));
        ASSERT_EQ(::stat(directory.folder("realm").c_str(), &after), 0);
    }
    if (after.st_ino != before.st_ino) {
        GTEST_SKIP() << "this file system does not give a number out again so soon";
    }
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
}

TEST(Bookmark, failsForARemovedDirectory)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("parent/realm")));
    std::filesystem::remove(directory.path("parent/realm"));
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
    std::filesystem::remove(directory.path("parent"));
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
    (void)directory.file("parent");
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
}

TEST(Bookmark, failsWhenAFileStandsAtThePath)
{
    const TemporaryDirectory directory;
    const std::string bookmark = makeBookmark(FileURL(directory.folder("realm")));
    std::filesystem::remove(directory.path("realm"));
    (void)directory.file("realm");
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
}

TEST(Bookmark, namesTheDirectoryThatALinkLeadsTo)
{
    const TemporaryDirectory directory;
    (void)directory.folder("disk/realm");
    const std::string link = directory.symbolicLink("realm", "disk/realm");
    const std::string bookmark = makeBookmark(FileURL(link));
    EXPECT_EQ(resolveBookmark(bookmark), FileURL::directory(link));
    (void)directory.folder("disk/other");
    std::filesystem::remove(link);
    (void)directory.symbolicLink("realm", "disk/other");
    EXPECT_EQ(errorOfResolving(bookmark), std::errc::no_such_file_or_directory);
}

TEST(Bookmark, isNotMadeOfWhatIsNoDirectory)
{
    const TemporaryDirectory directory;
    const auto making = [&](const std::string& path) {
        return errorOf([&] { (void)makeBookmark(FileURL(path)); });
    };
    EXPECT_EQ(making(directory.path("missing")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(making(directory.file("file")), std::errc::not_a_directory);
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(making(pipe), std::errc::not_a_directory);
}

TEST(Bookmark, isNotMadeOfADirectoryThatCannotBeRead)
{
    const TemporaryDirectory directory;
    (void)directory.folder("closed");
    ASSERT_EQ(::chmod(directory.path("closed").c_str(), 0), 0);
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& d) {
            return errorOf([&] { (void)makeBookmark(FileURL(d.path("closed"))); })
                       == std::errc::permission_denied
                   && !startAccessing(FileURL(d.path("closed")));
        },
        directory));
}

TEST(Bookmark, ofADirectoryThatBecameClosedStillLeadsThere)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(::chmod(directory.folder("realm").c_str(), 0777), 0);
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& d) {
            // The ordinary user owns only the folder above.
            std::filesystem::create_directory(d.path("own"));
            const std::string bookmark = makeBookmark(FileURL(d.path("own")));
            ::chmod(d.path("own").c_str(), 0);
            return resolveBookmark(bookmark).path() == d.path("own")
                   && !startAccessing(FileURL(d.path("own")));
        },
        directory));
}

TEST(Bookmark, holdsNothingOpen)
{
    const TemporaryDirectory directory;
    const FileURL realm(directory.folder("realm"));
    const std::size_t before = openDescriptors();
    const std::string bookmark = makeBookmark(realm);
    (void)resolveBookmark(bookmark);
    std::filesystem::rename(realm.path(), directory.path("renamed"));
    EXPECT_TRUE(startAccessing(resolveBookmark(bookmark)));
    stopAccessing(realm);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(Bookmark, thatIsNotOneIsRefused)
{
    const TemporaryDirectory directory;
    const std::string good = makeBookmark(FileURL(directory.folder("realm")));
    for (const std::string& bad :
         {std::string(), std::string("gruk-bookmark 1"), std::string("gruk-bookmark 1\n"),
          "gruk-bookmark 2" + good.substr(15), good + "more", good + "more words\n",
          good + "kind ef53\n", good.substr(0, good.size() - 1), "\n" + good, good + "\n",
          without("place", good), without("kind", good), without("mount-root", good),
          without("inode", good) + "inode -1\n", without("inode", good) + "inode 1 \n",
          without("born", good) + "born 1.5\n", without("place", good) + "place /realm\n",
          without("mount-root", good) + "mount-root maybe\n"}) {
        EXPECT_EQ(errorOfResolving(bad), std::errc::invalid_argument) << bad;
    }
}

TEST(Bookmark, mayHaveItsLinesInAnyOrder)
{
    const TemporaryDirectory directory;
    const std::string path = directory.folder("realm");
    const std::string good = makeBookmark(FileURL(path));
    const std::string moved =
        without("place", good) + "place " + FileURL(path).fileURLText() + "\n";
    EXPECT_EQ(resolveBookmark(moved).path(), path);
}

RC_GTEST_PROP(Bookmark, isRefusedOrRightWhateverByteIsChanged, ())
{
    const TemporaryDirectory directory;
    const std::string path = directory.folder("realm");
    std::string bookmark = makeBookmark(FileURL(path));
    bookmark[*rc::gen::inRange<std::size_t>(0, bookmark.size())] = *rc::gen::arbitrary<char>();
    try {
        // A changed path may lead to the same directory by "%2f" or the like, never to another.
        RC_ASSERT(std::filesystem::equivalent(resolveBookmark(bookmark).path(), path));
    } catch (const FileError&) {
        RC_SUCCEED("refused");
    }
}

TEST(StartAccessing, answersWhetherTheDirectoryCanBeListed)
{
    const TemporaryDirectory directory;
    EXPECT_TRUE(startAccessing(directory.url()));
    EXPECT_FALSE(startAccessing(FileURL(directory.file("file"))));
    EXPECT_FALSE(startAccessing(FileURL(directory.path("missing"))));
}

}  // namespace

}  // namespace gruk
