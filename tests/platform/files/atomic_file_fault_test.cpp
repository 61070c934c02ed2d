#include "platform/files/atomic_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "tests/support/fault_calls.h"
#include "tests/support/temporary_directory.h"

// A fault at every single call that a replacement makes.

namespace gruk {

namespace {

using test::FaultCalls;
using test::TemporaryDirectory;

const std::string former = "the former content, whole";
const std::string wanted = "the new content, which takes several short writes, whole";
constexpr std::size_t shortWrite = 11;

/// Where a replacement begins: over a file that is there, or with folders that are not.
enum class Start { formerFile, missingFolders };

class Scene {
public:
    explicit Scene(Start start) : start_(start)
    {
        if (start == Start::formerFile) {
            (void)directory_.fileWith("data/deep/a", former);
        }
    }

    [[nodiscard]] FileURL target() const { return FileURL(directory_.path("data/deep/a")); }

    /// What a reader finds; empty when there is no file.
    [[nodiscard]] std::string content() const
    {
        return std::filesystem::exists(target().path()) ? directory_.read("data/deep/a") : "";
    }

    [[nodiscard]] std::string contentBefore() const
    {
        return start_ == Start::formerFile ? former : "";
    }

    /// How many files there are beside the target.
    [[nodiscard]] std::size_t othersCount() const
    {
        std::size_t count = 0;
        for (const auto& item : std::filesystem::recursive_directory_iterator(directory_.path())) {
            count += item.is_directory() || item.path() == target().path() ? 0 : 1;
        }
        return count;
    }

private:
    Start start_;
    TemporaryDirectory directory_;
};

/// The calls of a replacement in which nothing fails.
std::vector<std::string> callsWithoutFault(Start start)
{
    const Scene scene(start);
    FaultCalls faults;
    faults.longestWrite = shortWrite;
    replaceFile(scene.target(), wanted, faults.calls());
    EXPECT_EQ(scene.content(), wanted);
    return faults.names();
}

/// Replaces with a fault and returns whether it was reported; whatever comes, a reader must find
/// one content or the other, the one that was reported, and nothing beside it.
bool replaceWith(const FaultCalls& faults, Start start, const std::string& what)
{
    const Scene scene(start);
    bool isReported = false;
    try {
        replaceFile(scene.target(), wanted, faults.calls());
    } catch (const FileError& error) {
        isReported = true;
        EXPECT_EQ(error.code().value(), faults.error) << what;
    }
    EXPECT_EQ(scene.content(), isReported ? scene.contentBefore() : wanted) << what;
    EXPECT_EQ(scene.othersCount(), 0U) << what;
    return isReported;
}

TEST(AtomicFileFault, theCallsAreThoseThatCanFail)
{
    const std::vector<std::string> calls = callsWithoutFault(Start::formerFile);
    EXPECT_EQ(calls, (std::vector<std::string>{"makeDirectory", "createExclusive", "write", "write",
                                               "write", "write", "write", "write", "synchronize",
                                               "close", "rename", "synchronizeDirectory"}));
    const std::vector<std::string> more = callsWithoutFault(Start::missingFolders);
    EXPECT_EQ(std::set<std::string>(more.begin(), more.end()),
              std::set<std::string>(calls.begin(), calls.end()));
    EXPECT_EQ(std::count(more.begin(), more.end(), "synchronizeDirectory"), 3)
        << "each folder in which a name appeared";
}

TEST(AtomicFileFault, anErrorAtAnyCallLeavesTheFormerContentOrTheNew)
{
    for (const Start start : {Start::formerFile, Start::missingFolders}) {
        const std::vector<std::string> calls = callsWithoutFault(start);
        for (const int error : {ENOSPC, EDQUOT, EIO, EACCES, EROFS}) {
            for (const auto span : {FaultCalls::Span::once, FaultCalls::Span::fromThenOn}) {
                for (std::size_t number = 0; number < calls.size(); ++number) {
                    FaultCalls faults;
                    faults.failAt = number;
                    faults.error = error;
                    faults.span = span;
                    faults.longestWrite = shortWrite;
                    const bool isReported =
                        replaceWith(faults, start, calls[number] + ": " + std::to_string(error));
                    EXPECT_EQ(isReported, calls[number] != "synchronizeDirectory");
                }
            }
        }
    }
}

TEST(AtomicFileFault, anInterruptionAtAnyCallIsWaitedOut)
{
    for (const Start start : {Start::formerFile, Start::missingFolders}) {
        const std::vector<std::string> calls = callsWithoutFault(start);
        for (std::size_t number = 0; number < calls.size(); ++number) {
            FaultCalls faults;
            faults.failAt = number;
            faults.error = EINTR;
            faults.longestWrite = shortWrite;
            EXPECT_FALSE(replaceWith(faults, start, calls[number]));
        }
    }
}

TEST(AtomicFileFault, interruptionsForEverEnd)
{
    const std::vector<std::string> calls = callsWithoutFault(Start::formerFile);
    for (std::size_t number = 0; number < calls.size(); ++number) {
        FaultCalls faults;
        faults.failAt = number;
        faults.error = EINTR;
        faults.span = FaultCalls::Span::fromThenOn;
        faults.longestWrite = shortWrite;
        EXPECT_EQ(replaceWith(faults, Start::formerFile, calls[number]),
                  calls[number] != "synchronizeDirectory");
    }
}

TEST(AtomicFileFault, aWriteThatTakesNothingIsAnError)
{
    const Scene scene(Start::formerFile);
    FileCalls calls = FileCalls::live();
    calls.write = [](int, const char*, std::size_t) { return 0L; };
    EXPECT_THROW(replaceFile(scene.target(), wanted, calls), FileError);
    EXPECT_EQ(scene.content(), former);
    EXPECT_EQ(scene.othersCount(), 0U);
}

TEST(AtomicFileFault, writesOfOneByteEachComeToTheWhole)
{
    const Scene scene(Start::formerFile);
    FaultCalls faults;
    faults.longestWrite = 1;
    replaceFile(scene.target(), wanted, faults.calls());
    EXPECT_EQ(scene.content(), wanted);
}

TEST(AtomicFileFault, aNameThatIsTakenIsTriedAgainButNotForEver)
{
    const Scene scene(Start::formerFile);
    FaultCalls faults;
    faults.failAt = 1;
    faults.error = EEXIST;
    replaceFile(scene.target(), wanted, faults.calls());
    EXPECT_EQ(scene.content(), wanted);
    faults.span = FaultCalls::Span::fromThenOn;
    faults.failAt = faults.names().size() + 1;
    EXPECT_THROW(replaceFile(scene.target(), former, faults.calls()), FileError);
    EXPECT_EQ(scene.content(), wanted);
}

TEST(AtomicFileFault, whatCannotBeRemovedIsRemovedByTheNextReplacement)
{
    const Scene scene(Start::formerFile);
    FaultCalls faults;
    faults.failAt = 3;
    faults.error = EIO;
    faults.span = FaultCalls::Span::fromThenOn;
    faults.removeFails = true;
    faults.longestWrite = shortWrite;
    EXPECT_THROW(replaceFile(scene.target(), wanted, faults.calls()), FileError);
    EXPECT_EQ(scene.content(), former);
    EXPECT_EQ(scene.othersCount(), 1U);
    replaceFile(scene.target(), wanted);
    EXPECT_EQ(scene.content(), wanted);
    EXPECT_EQ(scene.othersCount(), 0U);
}

TEST(AtomicFileFault, aLeftOverThatCannotBeRemovedHindersNothing)
{
    const TemporaryDirectory directory;
    (void)directory.fileWith(".a.00000000.gruk-new", "half");
    FaultCalls faults;
    faults.failAt = 1;
    faults.error = EACCES;
    faults.removeFails = true;
    replaceFile(FileURL(directory.path("a")), wanted, faults.calls());
    EXPECT_EQ(faults.names()[1], "remove");
    EXPECT_EQ(directory.read("a"), wanted);
}

/// Replaces in a child process that is killed just before the call `number`. False when it came to
/// its end instead.
bool isKilledBefore(std::size_t number, const FileURL& target)
{
    const pid_t child = ::fork();
    if (child == 0) {
        FaultCalls faults;
        faults.longestWrite = shortWrite;
        faults.before = [number](std::size_t at) {
            if (at == number) {
                ::kill(::getpid(), SIGKILL);
            }
        };
        replaceFile(target, wanted, faults.calls());
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

TEST(AtomicFileFault, aKillAtAnyCallLeavesTheFormerContentOrTheNewAndTheNextClearsUp)
{
    for (const Start start : {Start::formerFile, Start::missingFolders}) {
        const std::size_t count = callsWithoutFault(start).size();
        std::set<std::string> found;
        std::size_t leftOvers = 0;
        for (std::size_t number = 0; number < count; ++number) {
            const Scene scene(start);
            ASSERT_TRUE(isKilledBefore(number, scene.target()));
            EXPECT_TRUE(scene.content() == scene.contentBefore() || scene.content() == wanted);
            found.insert(scene.content());
            leftOvers += scene.othersCount();
            replaceFile(scene.target(), "after");
            EXPECT_EQ(scene.content(), "after");
            EXPECT_EQ(scene.othersCount(), 0U) << number;
        }
        EXPECT_EQ(found.size(), 2U) << "some kills come before the replacement, some after";
        EXPECT_GE(leftOvers, 8U) << "most leave a temporary file";
    }
}

}  // namespace

}  // namespace gruk
