#include "platform/files/file_lock.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;
using test::TemporaryDirectory;

/// The error that taking the lock at once gives; none when it is ours.
std::error_code errorOfTaking(const FileURL& url)
{
    try {
        const FileLock lock(url, 0ms);
        return {};
    } catch (const FileError& error) {
        return error.code();
    }
}

}  // namespace

TEST(FileLock, anotherOneHasToWaitAndIsToldSo)
{
    const TemporaryDirectory disk;
    const FileURL url(disk.path("lock"));
    {
        const FileLock lock(url);
        EXPECT_EQ(errorOfTaking(url), std::errc::resource_unavailable_try_again);
    }
    EXPECT_EQ(errorOfTaking(url), std::error_code());
}

TEST(FileLock, isHeldByWhomItWasMovedTo)
{
    const TemporaryDirectory disk;
    const FileURL url(disk.path("lock"));
    FileLock first(url);
    FileLock second(std::move(first));
    EXPECT_EQ(errorOfTaking(url), std::errc::resource_unavailable_try_again);
    FileLock third(FileURL(disk.path("other")));
    third = std::move(second);
    EXPECT_EQ(errorOfTaking(url), std::errc::resource_unavailable_try_again);
}

TEST(FileLock, theFileIsForTheUserAloneAndStays)
{
    const TemporaryDirectory disk;
    {
        const FileLock lock(FileURL(disk.path("lock")));
    }
    struct stat facts {};
    ASSERT_EQ(::stat(disk.path("lock").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 0600U);
}

TEST(FileLock, aProcessThatIsKilledLetsGoOfIt)
{
    const TemporaryDirectory disk;
    const FileURL url(disk.path("lock"));
    int pipe[2] = {};
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const FileLock lock(url);
        if (::write(pipe[1], "x", 1) == 1) {
            ::pause();
        }
        ::_exit(1);
    }
    char byte = 0;
    ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
    EXPECT_EQ(errorOfTaking(url), std::errc::resource_unavailable_try_again);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(errorOfTaking(url), std::error_code());
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST(FileLock, oneAtATimeAmongThreads)
{
    const TemporaryDirectory disk;
    const FileURL url(disk.path("lock"));
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int turn = 0; turn < 50; ++turn) {
                    const FileLock lock(url, 60'000ms);
                    most = std::max(most.load(), ++inside);
                    --inside;
                }
            });
        }
    }
    EXPECT_EQ(most.load(), 1);
}

TEST(FileLock, aFolderThatIsMissingAndALinkAreRefused)
{
    const TemporaryDirectory disk;
    EXPECT_EQ(errorOfTaking(FileURL(disk.path("no/lock"))), std::errc::no_such_file_or_directory);
    const FileURL link(disk.symbolicLink("link", disk.file("elsewhere")));
    EXPECT_EQ(errorOfTaking(link), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(errorOfTaking(FileURL(disk.folder("folder"))), std::errc::is_a_directory);
}

}  // namespace gruk
