#include "platform/files/metadata.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::TemporaryDirectory;

struct stat statOf(const std::string& path)
{
    struct stat facts {};
    EXPECT_EQ(::lstat(path.c_str(), &facts), 0) << path;
    return facts;
}

void setDates(const std::string& path, timespec accessed, timespec modified)
{
    const std::array<timespec, 2> times{accessed, modified};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0) << path;
}

/// Makes folders of long names inside each other until the path is longer than any one call
/// takes, with a file at the end; returns the path of the file.
std::string makeDeepFile(const TemporaryDirectory& directory)
{
    std::string path = directory.path();
    int at = ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    while (path.size() < 9'000) {
        const std::string name(200, 'd');
        EXPECT_EQ(::mkdirat(at, name.c_str(), 0700), 0);
        const int next = ::openat(at, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        ::close(at);
        at = next;
        path += "/" + name;
    }
    const int file = ::openat(at, "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    EXPECT_EQ(::write(file, "hello", 5), 5);
    if (::fsetxattr(file, "user.gruk.test", "deep", 4, 0) != 0) {
        EXPECT_EQ(errno, ENOTSUP);
    }
    ::close(file);
    ::close(at);
    return path + "/file";
}

bool hasAttributes(const std::string& path)
{
    return ::setxattr(path.c_str(), "user.gruk.probe", "1", 1, 0) == 0;
}

TEST(ItemFacts, tellWhatTheSystemTells)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("a", 10'000);
    (void)directory.hardLink("b", "a");
    const struct stat expected = statOf(path);
    const ItemFacts facts = itemFacts(FileURL(path));
    EXPECT_EQ(facts.type, ItemType::regularFile);
    EXPECT_EQ(facts.logicalSize, 10'000);
    EXPECT_EQ(facts.allocatedSize, expected.st_blocks * 512);
    EXPECT_EQ(facts.inode, expected.st_ino);
    EXPECT_EQ(facts.linkCount, 2);
    EXPECT_NEAR(facts.modified.secondsSince1970,
                static_cast<double>(expected.st_mtim.tv_sec)
                    + static_cast<double>(expected.st_mtim.tv_nsec) / 1e9,
                1e-6);
    EXPECT_EQ(facts.deviceID, itemFacts(directory.url()).deviceID);
    EXPECT_NE(facts.deviceID, itemFacts(FileURL("/proc")).deviceID);
}

TEST(ItemFacts, tellTheTypeOfEveryKindWithoutOpeningIt)
{
    const TemporaryDirectory directory;
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string socket = directory.path("socket");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(descriptor);
    EXPECT_EQ(itemFacts(FileURL(pipe)).type, ItemType::other);
    EXPECT_EQ(itemFacts(FileURL(socket)).type, ItemType::other);
    EXPECT_EQ(itemFacts(FileURL("/dev/null")).type, ItemType::other);
    EXPECT_EQ(itemFacts(directory.url()).type, ItemType::directory);
    EXPECT_EQ(itemFacts(FileURL()).type, ItemType::directory);
}

TEST(ItemFacts, describeALinkAndNotWhatItPointsTo)
{
    const TemporaryDirectory directory;
    (void)directory.file("target", 5'000);
    const ItemFacts facts = itemFacts(FileURL(directory.symbolicLink("link", "target")));
    EXPECT_EQ(facts.type, ItemType::symbolicLink);
    EXPECT_EQ(facts.logicalSize, 6);
    EXPECT_EQ(itemFacts(FileURL(directory.symbolicLink("dangling", "nowhere"))).type,
              ItemType::symbolicLink);
}

TEST(ItemFacts, tellAHoleAsNotAllocated)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("sparse");
    ASSERT_EQ(::truncate(path.c_str(), 10'000'000), 0);
    const ItemFacts facts = itemFacts(FileURL(path));
    EXPECT_EQ(facts.logicalSize, 10'000'000);
    EXPECT_EQ(facts.allocatedSize, 0);
}

TEST(ItemFacts, tellDatesBefore1970AndAfter2106)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("a");
    setDates(path, {-1'000'000'000, 250'000'000}, {5'000'000'000, 500'000'000});
    const ItemFacts facts = itemFacts(FileURL(path));
    EXPECT_EQ(facts.accessed.secondsSince1970, -999'999'999.75);
    EXPECT_EQ(facts.modified.secondsSince1970, 5'000'000'000.5);
}

TEST(ItemFacts, anItemIsBornBeforeItIsChanged)
{
    const TemporaryDirectory directory;
    const ItemFacts facts = itemFacts(FileURL(directory.file("a", 1)));
    if (!facts.created) {
        GTEST_SKIP() << "this file system keeps no birth times";
    }
    EXPECT_LE(*facts.created, facts.modified);
    EXPECT_GT(facts.created->secondsSince1970, 1'600'000'000);
}

TEST(ItemFacts, ofAMissingItemAreAnErrorWithItsPath)
{
    const TemporaryDirectory directory;
    try {
        (void)itemFacts(FileURL(directory.path("missing")));
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
        EXPECT_EQ(error.path(), directory.path("missing"));
    }
}

TEST(ItemFacts, ofANameThatIsTooLongAreAnError)
{
    const TemporaryDirectory directory;
    EXPECT_THROW((void)itemFacts(FileURL(directory.path(std::string(256, 'n')))), FileError);
    EXPECT_THROW((void)itemFacts(FileURL(directory.path(std::string(9'000, 'n')))), FileError);
}

TEST(ItemFacts, areFoundThroughAnyBytesInAName)
{
    const TemporaryDirectory directory;
    const std::string name = "\x01\x7F\xFF\xC3\n\"'\\%";
    EXPECT_EQ(itemFacts(FileURL(directory.file(name, 3))).logicalSize, 3);
}

TEST(ItemFacts, areFoundBeyondTheLengthOfOneCall)
{
    const TemporaryDirectory directory;
    const FileURL file(makeDeepFile(directory));
    EXPECT_EQ(itemFacts(file).logicalSize, 5);
    EXPECT_EQ(itemFacts(file.deletingLastPathComponent()).type, ItemType::directory);
    try {
        (void)itemFacts(file.deletingLastPathComponent().appending("missing"));
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
    }
}

TEST(ItemFacts, ofAFolderThatRefusesEntryAreAccessRefused)
{
    const TemporaryDirectory directory;
    (void)directory.file("closed/a");
    ASSERT_EQ(::chmod(directory.path("closed").c_str(), 0), 0);
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& d) {
            try {
                (void)itemFacts(FileURL(d.path("closed/a")));
                return false;
            } catch (const FileError& error) {
                return meaning(error) == ErrorMeaning::accessRefused;
            }
        },
        directory));
}

TEST(ExtendedAttribute, isReadUnderTheUsersPrefix)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("a");
    if (!hasAttributes(path)) {
        GTEST_SKIP() << "this file system keeps no attributes";
    }
    using namespace std::string_literals;
    const std::string value = "any\0bytes\xFF"s;
    ASSERT_EQ(::setxattr(path.c_str(), "user.com.example:key", value.data(), value.size(), 0), 0);
    EXPECT_EQ(extendedAttribute(FileURL(path), "com.example:key"), value);
    EXPECT_EQ(extendedAttribute(FileURL(path), "user.com.example:key"), std::nullopt);
    EXPECT_EQ(extendedAttribute(FileURL(path), "com.example:other"), std::nullopt);
}

TEST(ExtendedAttribute, thatIsEmptyIsNone)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("a");
    if (!hasAttributes(path)) {
        GTEST_SKIP() << "this file system keeps no attributes";
    }
    ASSERT_EQ(::setxattr(path.c_str(), "user.empty", "", 0, 0), 0);
    EXPECT_EQ(extendedAttribute(FileURL(path), "empty"), std::nullopt);
}

TEST(ExtendedAttribute, ofALinkIsNotThatOfItsTarget)
{
    const TemporaryDirectory directory;
    if (!hasAttributes(directory.file("a"))) {
        GTEST_SKIP() << "this file system keeps no attributes";
    }
    const FileURL link(directory.symbolicLink("link", "a"));
    EXPECT_EQ(extendedAttribute(FileURL(directory.path("a")), "gruk.probe"), "1");
    EXPECT_EQ(extendedAttribute(link, "gruk.probe"), std::nullopt);
}

TEST(ExtendedAttribute, ofAMissingItemIsNone)
{
    const TemporaryDirectory directory;
    EXPECT_EQ(extendedAttribute(FileURL(directory.path("missing")), "a"), std::nullopt);
    EXPECT_EQ(extendedAttribute(FileURL("/proc/self/status"), "a"), std::nullopt);
}

TEST(ExtendedAttribute, isReadBeyondTheLengthOfOneCall)
{
    const TemporaryDirectory directory;
    if (!hasAttributes(directory.file("a"))) {
        GTEST_SKIP() << "this file system keeps no attributes";
    }
    const FileURL file(makeDeepFile(directory));
    EXPECT_EQ(extendedAttribute(file, "gruk.test"), "deep");
    EXPECT_EQ(extendedAttribute(file, "gruk.other"), std::nullopt);
    EXPECT_EQ(extendedAttribute(file.appending("below"), "gruk.test"), std::nullopt);
}

}  // namespace

}  // namespace gruk
