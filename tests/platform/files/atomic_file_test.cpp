#include "platform/files/atomic_file.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::TemporaryDirectory;

std::vector<std::string> namesIn(const std::string& path)
{
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(path)) {
        names.push_back(item.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

mode_t modeOf(const std::string& path)
{
    struct stat facts {};
    EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
    return facts.st_mode & 07777U;
}

TEST(AtomicFile, replacesTheContentWhole)
{
    const TemporaryDirectory directory;
    const FileURL target(directory.fileWith("a", "a much longer former content"));
    replaceFile(target, "new");
    EXPECT_EQ(directory.read("a"), "new");
    EXPECT_EQ(namesIn(directory.path()), std::vector<std::string>{"a"});
}

TEST(AtomicFile, writesAnEmptyFile)
{
    const TemporaryDirectory directory;
    replaceFile(FileURL(directory.fileWith("a", "former")), "");
    EXPECT_EQ(directory.read("a"), "");
}

TEST(AtomicFile, keepsTheOrderOfSmallAndLargePieces)
{
    const TemporaryDirectory directory;
    std::string expected;
    AtomicFile file(FileURL(directory.path("a")));
    for (const std::size_t size : {1U, 10U, 1'048'575U, 1U, 2'000'000U, 3U, 1'048'576U, 0U, 5U}) {
        const std::string piece(size, static_cast<char>('a' + expected.size() % 26));
        file.write(piece);
        expected += piece;
    }
    file.commit();
    EXPECT_TRUE(directory.read("a") == expected);
}

TEST(AtomicFile, leavesTheTargetAloneUntilItIsCommitted)
{
    const TemporaryDirectory directory;
    {
        AtomicFile file(FileURL(directory.fileWith("a", "former")));
        file.write(std::string(3'000'000, 'x'));
        EXPECT_EQ(directory.read("a"), "former");
        EXPECT_EQ(namesIn(directory.path()).size(), 2U);
    }
    EXPECT_EQ(directory.read("a"), "former");
    EXPECT_EQ(namesIn(directory.path()), std::vector<std::string>{"a"});
}

TEST(AtomicFile, makesMissingFoldersForTheUserAlone)
{
    const TemporaryDirectory directory;
    const mode_t former = ::umask(0);
    replaceFile(FileURL(directory.path("one/two/three/a")), "new");
    ::umask(former);
    EXPECT_EQ(directory.read("one/two/three/a"), "new");
    EXPECT_EQ(modeOf(directory.path("one")), 0700U);
    EXPECT_EQ(modeOf(directory.path("one/two/three")), 0700U);
    EXPECT_EQ(modeOf(directory.path("one/two/three/a")), 0600U);
}

TEST(AtomicFile, leavesTheModeOfAFolderThatIsThere)
{
    const TemporaryDirectory directory;
    (void)directory.folder("open");
    ASSERT_EQ(::chmod(directory.path("open").c_str(), 0755), 0);
    replaceFile(FileURL(directory.path("open/a")), "new");
    EXPECT_EQ(modeOf(directory.path("open")), 0755U);
}

TEST(AtomicFile, replacesWhatALinkPointsTo)
{
    const TemporaryDirectory directory;
    (void)directory.fileWith("elsewhere/data", "former");
    (void)directory.symbolicLink("home/second", "../elsewhere/data");
    const FileURL link(directory.symbolicLink("home/first", directory.path("home/second")));
    replaceFile(link, "new");
    EXPECT_EQ(directory.read("elsewhere/data"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("home/first")));
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("home/second")));
    EXPECT_EQ(namesIn(directory.path("elsewhere")), std::vector<std::string>{"data"});
}

TEST(AtomicFile, makesTheFileThatADanglingLinkNames)
{
    const TemporaryDirectory directory;
    const FileURL link(directory.symbolicLink("link", directory.path("new/data")));
    replaceFile(link, "new");
    EXPECT_EQ(directory.read("new/data"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("link")));
}

TEST(AtomicFile, refusesLinksThatGoRound)
{
    const TemporaryDirectory directory;
    (void)directory.symbolicLink("a", "b");
    EXPECT_THROW(replaceFile(FileURL(directory.symbolicLink("b", "a")), "new"), FileError);
    EXPECT_EQ(namesIn(directory.path()), (std::vector<std::string>{"a", "b"}));
}

TEST(AtomicFile, doesNotReplaceAFolder)
{
    const TemporaryDirectory directory;
    EXPECT_THROW(replaceFile(FileURL(directory.folder("a")), "new"), FileError);
    EXPECT_EQ(namesIn(directory.path()), std::vector<std::string>{"a"});
    EXPECT_TRUE(std::filesystem::is_directory(directory.path("a")));
}

TEST(AtomicFile, takesNamesOfAnyBytesAndTheFullLength)
{
    const TemporaryDirectory directory;
    for (const std::string& name : {std::string(255, 'n'), std::string("\xFF\n.json")}) {
        replaceFile(FileURL(directory.path(name)), "one");
        replaceFile(FileURL(directory.path(name)), "two");
        EXPECT_EQ(directory.read(name), "two");
    }
    EXPECT_EQ(namesIn(directory.path()).size(), 2U);
}

TEST(AtomicFile, clearsWhatKilledProcessesLeftOfTheSameTarget)
{
    const TemporaryDirectory directory;
    (void)directory.fileWith(".a.0123abcd.gruk-new", "half");
    (void)directory.fileWith(".a.ffffffff.gruk-new", "");
    const std::vector<std::string> others{".a.0123abcd.gruk-new.bak", ".a.0123ABCD.gruk-new",
                                          ".a.0123abc.gruk-new",      ".a.b.0123abcd.gruk-new",
                                          ".b.0123abcd.gruk-new",     "a.0123abcd.gruk-new"};
    for (const std::string& name : others) {
        (void)directory.fileWith(name, "kept");
    }
    (void)directory.folder(".a.00000000.gruk-new");
    (void)directory.symbolicLink(".a.11111111.gruk-new", "a");
    replaceFile(FileURL(directory.path("a")), "new");
    std::vector<std::string> expected = others;
    expected.insert(expected.end(), {"a", ".a.00000000.gruk-new", ".a.11111111.gruk-new"});
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesIn(directory.path()), expected);
}

TEST(AtomicFile, leavesAReplacementAtWorkAlone)
{
    const TemporaryDirectory directory;
    const FileURL target(directory.path("a"));
    AtomicFile first(target);
    first.write("first");
    AtomicFile second(target);
    second.write("second");
    second.commit();
    EXPECT_EQ(directory.read("a"), "second");
    first.commit();
    EXPECT_EQ(directory.read("a"), "first");
    EXPECT_EQ(namesIn(directory.path()), std::vector<std::string>{"a"});
}

TEST(AtomicFile, saysThatAFolderRefuses)
{
    const TemporaryDirectory directory;
    (void)directory.fileWith("closed/a", "former");
    ASSERT_EQ(::chmod(directory.path("closed").c_str(), 0555), 0);
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory& d) {
            try {
                replaceFile(FileURL(d.path("closed/a")), "new");
                return false;
            } catch (const FileError& error) {
                return meaning(error) == ErrorMeaning::accessRefused;
            }
        },
        directory));
    EXPECT_EQ(directory.read("closed/a"), "former");
    EXPECT_EQ(namesIn(directory.path("closed")), std::vector<std::string>{"a"});
}

TEST(AtomicFile, leavesTheFormerFileOnAFullDisk)
{
    const TemporaryDirectory directory;
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        constexpr std::size_t room = 1'048'576;
        test::mountMemory(directory.path(), room);
        const FileURL target(directory.fileWith("a", std::string(room / 2, 'o')));
        try {
            replaceFile(target, std::string(room, 'n'));
            return "a file was written that has no room";
        } catch (const FileError& error) {
            if (error.code() != std::errc::no_space_on_device) {
                return error.what();
            }
        }
        if (namesIn(directory.path()) != std::vector<std::string>{"a"}) {
            return "something was left behind";
        }
        return readFile(target) == std::string(room / 2, 'o') ? "" : "the former file is damaged";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this user may not mount a small disk";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(ReadFile, readsAnyContent)
{
    const TemporaryDirectory directory;
    for (const std::size_t size : {0U, 1U, 4'095U, 4'096U, 4'097U, 3'000'000U}) {
        EXPECT_EQ(readFile(FileURL(directory.file("a", size))).size(), size);
    }
    using namespace std::string_literals;
    EXPECT_EQ(readFile(FileURL(directory.fileWith("b", "a\0b"s))), "a\0b"s);
    EXPECT_EQ(readFile(FileURL(directory.symbolicLink("c", "b"))), "a\0b"s);
}

TEST(ReadFile, readsAFileThatTellsNoLength)
{
    EXPECT_NE(readFile(FileURL("/proc/self/status")).find("Pid:"), std::string::npos);
}

TEST(ReadFile, saysWhatIsWrong)
{
    const TemporaryDirectory directory;
    try {
        (void)readFile(FileURL(directory.path("missing")));
        FAIL();
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
        EXPECT_EQ(error.path(), directory.path("missing"));
    }
    EXPECT_THROW((void)readFile(directory.url()), FileError);
}

TEST(ReadFile, doesNotWaitForAPipe)
{
    const TemporaryDirectory directory;
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_THROW((void)readFile(FileURL(pipe)), FileError);
}

}  // namespace

}  // namespace gruk
