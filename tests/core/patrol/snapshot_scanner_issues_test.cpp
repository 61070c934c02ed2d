#include <gtest/gtest.h>

#include <chrono>
#include <system_error>

#include "core/patrol/snapshot_scanner.h"
#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Reason = ScanIssue::Reason;

std::function<void()> throwing(std::errc code)
{
    return [code] { throw FileError(std::make_error_code(code), "list", "there"); };
}

/// An error that is none of the system's, around whatever is thrown while it is made.
struct WrappedError : std::runtime_error {
    WrappedError() : std::runtime_error("wrapped") {}
};

/// `innermost` wrapped that many times.
std::exception_ptr wrapped(const std::function<void()>& innermost, int times)
{
    try {
        if (times == 0) {
            innermost();
        } else {
            std::rethrow_exception(wrapped(innermost, times - 1));
        }
    } catch (...) {
        if (times == 0) {
            return std::current_exception();
        }
        try {
            std::throw_with_nested(WrappedError());
        } catch (...) {
            return std::current_exception();
        }
    }
    return nullptr;
}

Reason reasonOf(const std::exception_ptr& error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& caught) {
        return issueReason(caught);
    }
}

class SnapshotScannerIssuesTest : public testing::Test {
protected:
    ScanSnapshot scan(const PatrolProgressFunction& progress = {})
    {
        return SnapshotScanner(tree.reader(), [this] { return time; })
            .scan(tree.root(), Date{}, progress);
    }

    test::TemporaryDirectory disk;
    test::FakeTree tree{disk.url()};
    /// What the scanner's clock says.
    std::chrono::nanoseconds time{0};
};

}  // namespace

TEST_F(SnapshotScannerIssuesTest, aDirectoryThatDeniesListingKeepsItsEntryAndHasOneIssue)
{
    tree.file("a/secret/x", 100);
    tree.file("a/open/y", 10);
    tree.onListing("a/secret", throwing(std::errc::permission_denied));
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(snapshot.issues, (std::vector<ScanIssue>{{"a/secret", Reason::permissionDenied}}));
    EXPECT_TRUE(snapshot.isComplete);
    const auto secret = snapshot.entries.find("a/secret");
    ASSERT_TRUE(secret);
    EXPECT_TRUE(snapshot.entries.isDirectory(*secret));
    EXPECT_EQ(snapshot.entries.allocatedSize(*secret), 0);
    EXPECT_EQ(snapshot.entries.totalBytes(), 10);
}

TEST_F(SnapshotScannerIssuesTest, theWalkGoesOnBehindADirectoryThatCannotBeListed)
{
    for (const char* path : {"a", "b", "c"}) {
        tree.file(std::string(path) + "/x", 1);
    }
    tree.onListing("b", throwing(std::errc::io_error));
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(tree.listed(), (std::vector<std::string>{"", "c", "b", "a"}));
    EXPECT_EQ(snapshot.entries.totalBytes(), 2);
    EXPECT_EQ(snapshot.issues, (std::vector<ScanIssue>{{"b", Reason::unreadable}}));
}

TEST_F(SnapshotScannerIssuesTest, noProgressIsReportedForADirectoryThatFailed)
{
    tree.directory("good");
    tree.directory("bad");
    tree.onListing("bad", [this] {
        time += std::chrono::milliseconds(101);
        throwing(std::errc::permission_denied)();
    });
    std::vector<std::string> reported;
    static_cast<void>(
        scan([&](std::int64_t, std::string_view path) { reported.emplace_back(path); }));
    // "bad" comes before "good" and a report is due at its end.
    EXPECT_EQ(reported, (std::vector<std::string>{"", "good"}));
}

TEST_F(SnapshotScannerIssuesTest, aDirectoryThatIsGoneWhenItsTurnComesHasDisappeared)
{
    tree.file("gone/x", 1);
    tree.onListing("gone", throwing(std::errc::no_such_file_or_directory));
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(snapshot.issues, (std::vector<ScanIssue>{{"gone", Reason::disappeared}}));
    EXPECT_TRUE(snapshot.entries.find("gone"));
}

TEST_F(SnapshotScannerIssuesTest, aRootThatCannotBeListedRethrowsTheErrorAsItStands)
{
    struct OwnError : std::runtime_error {
        OwnError() : std::runtime_error("mine") {}
    };
    tree.onListing("", [] { throw OwnError(); });
    EXPECT_THROW(static_cast<void>(scan()), OwnError);
    tree.onListing("", throwing(std::errc::permission_denied));
    EXPECT_THROW(static_cast<void>(scan()), FileError);
}

TEST(IssueReason, accessRefusedAndNoSuchItemAreToldApartFromAllElse)
{
    const std::pair<std::errc, Reason> rows[] = {
        {std::errc::permission_denied, Reason::permissionDenied},
        {std::errc::operation_not_permitted, Reason::permissionDenied},
        {std::errc::no_such_file_or_directory, Reason::disappeared},
        {std::errc::not_a_directory, Reason::unreadable},
        {std::errc::io_error, Reason::unreadable},
        {std::errc::too_many_symbolic_link_levels, Reason::unreadable},
        {std::errc::too_many_files_open, Reason::unreadable},
    };
    for (const auto& [code, reason] : rows) {
        for (int depth = 0; depth < 4; ++depth) {
            EXPECT_EQ(reasonOf(wrapped(throwing(code), depth)), reason)
                << std::make_error_code(code).message() << " " << depth;
        }
    }
}

TEST(IssueReason, anErrorOfTheSystemWithAnotherCodeIsJudgedByTheOneNestedInIt)
{
    try {
        try {
            throwing(std::errc::permission_denied)();
        } catch (...) {
            std::throw_with_nested(std::system_error(std::make_error_code(std::errc::io_error)));
        }
    } catch (const std::exception& error) {
        EXPECT_EQ(issueReason(error), Reason::permissionDenied);
    }
}

TEST(IssueReason, theOutermostErrorThatTellsDecides)
{
    try {
        try {
            throwing(std::errc::no_such_file_or_directory)();
        } catch (...) {
            std::throw_with_nested(
                std::system_error(std::make_error_code(std::errc::permission_denied)));
        }
    } catch (const std::exception& error) {
        EXPECT_EQ(issueReason(error), Reason::permissionDenied);
    }
}

TEST(IssueReason, anErrorThatIsNotTheSystemsIsUnreadable)
{
    EXPECT_EQ(issueReason(std::runtime_error("what?")), Reason::unreadable);
    EXPECT_EQ(reasonOf(wrapped([] { throw 42; }, 1)), Reason::unreadable);
}

TEST_F(SnapshotScannerIssuesTest, wantOfMemoryWhileAFolderIsListedEndsTheWalk)
{
    tree.file("a/x");
    tree.onListing("a", [] { throw std::bad_alloc(); });
    EXPECT_THROW(static_cast<void>(scan()), std::bad_alloc);
}

}  // namespace gruk
