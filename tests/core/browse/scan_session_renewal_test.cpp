#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/browse/scan_session.h"
#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Names = std::vector<std::string>;
using Change = ScanSession::Change;

/// A session over a tree in memory that changes while it is browsed.
class ScanSessionRenewalTest : public testing::Test {
protected:
    FileURL folder(const std::string& name)
    {
        tree.directory(name);
        return FileURL::directory(disk.folder(name));
    }
    [[nodiscard]] FileURL place(const std::string& name) const { return FileURL(disk.path(name)); }

    void settle()
    {
        while (pool->runNext() || loop->run()) {
        }
    }
    /// Runs the piece that was started last, and what it posts; others on the pool hang.
    void runLast()
    {
        ASSERT_GT(pool->count(), 0U);
        pool->runAt(pool->count() - 1);
        while (loop->run()) {
        }
    }

    [[nodiscard]] std::shared_ptr<ScanNode> node(std::string_view name) const
    {
        for (const auto& one : session.nodes()) {
            if (one->entry().name() == name) {
                return one;
            }
        }
        ADD_FAILURE() << "no node " << name;
        return std::make_shared<ScanNode>(std::make_shared<const FileEntry>());
    }
    [[nodiscard]] Names shown() const
    {
        Names names;
        for (const auto& each : session.displayedNodes()) {
            names.emplace_back(each->entry().name());
        }
        return names;
    }
    [[nodiscard]] auto timesListed(const std::string& name) const
    {
        return std::ranges::count(tree.listed(), name);
    }

    test::TemporaryDirectory disk;
    test::FakeTree tree{disk.url()};
    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::shared_ptr<test::ManualTaskPool> pool = std::make_shared<test::ManualTaskPool>();
    ScanSession session{std::make_shared<ScanEngine>(tree.reader()), pool, loop, tree.reader()};
};

}  // namespace

TEST_F(ScanSessionRenewalTest, aFolderThatWasTouchedIsMeasuredAnewAndTheOthersAreNot)
{
    folder("a");
    folder("b");
    tree.file("a/x", 5);
    tree.file("b/y", 7);
    session.open(tree.root());
    settle();
    tree.file("a/more", 100);
    tree.file("new", 1);
    session.renew({place("a/more"), place("new")});
    EXPECT_EQ(session.nodes().size(), 2U) << "listed on the main thread";
    settle();
    EXPECT_EQ(node("a")->displaySize(), 105);
    EXPECT_EQ(node("b")->displaySize(), 7);
    EXPECT_EQ(node("new")->displaySize(), 1);
    EXPECT_EQ(timesListed("a"), 2);
    EXPECT_EQ(timesListed("b"), 1);
}

TEST_F(ScanSessionRenewalTest, aRowThatIsMeasuredAnewShowsWhatItCameToBefore)
{
    folder("a");
    tree.file("a/x", 5);
    session.open(tree.root());
    settle();
    tree.file("a/more", 100);
    tree.onListing("a", [this] {
        EXPECT_TRUE(node("a")->isComputing());
        EXPECT_EQ(node("a")->knownSize(), 5);
        EXPECT_EQ(node("a")->formerSize(), 5);
    });
    session.renew({tree.root()});
    settle();
    EXPECT_EQ(node("a")->displaySize(), 105);
    EXPECT_EQ(node("a")->formerSize(), std::nullopt);
}

TEST_F(ScanSessionRenewalTest, aRowWhoseNewMeasureFailsDoesNotKeepItsFormerSize)
{
    folder("a");
    tree.file("a/x", 5);
    session.open(tree.root());
    settle();
    tree.onListing("a",
                   [] { throw FileError(std::make_error_code(std::errc::io_error), "list", "a"); });
    session.renew({tree.root()});
    settle();
    EXPECT_TRUE(node("a")->hasFailed());
    EXPECT_EQ(node("a")->knownSize(), std::nullopt);
}

TEST_F(ScanSessionRenewalTest, aTouchElsewhereLeavesTheRowsAndIsFoundOnTheWayBack)
{
    const FileURL a = folder("a");
    folder("a/inner");
    tree.file("b/y", 7);
    folder("b");
    session.open(tree.root());
    settle();
    session.open(a);
    settle();
    const std::shared_ptr<ScanNode> inner = node("inner");
    tree.file("b/more", 100);
    session.renew({place("b/more")});
    settle();
    EXPECT_EQ(node("inner"), inner);
    session.goBack();
    settle();
    EXPECT_EQ(node("b")->displaySize(), 107);
}

TEST_F(ScanSessionRenewalTest, aTouchInTheMiddleOfALookIsLookedAtToo)
{
    folder("a");
    session.open(tree.root());
    settle();
    session.renew({place("first")});
    while (pool->count() == 0 || timesListed("") < 2) {
        if (!pool->runNext() && !loop->run()) {
            break;
        }
    }
    // The look has been taken, and the main thread has not heard of it yet.
    tree.file("second", 3);
    session.renew({place("second")});
    settle();
    EXPECT_EQ(node("second")->displaySize(), 3);
}

TEST_F(ScanSessionRenewalTest, aLookThatComesBackAfterAnotherFolderWasOpenedReachesNobody)
{
    const FileURL a = folder("a");
    tree.file("a/x", 5);
    session.open(tree.root());
    settle();
    session.renew({tree.root()});
    session.open(a);
    settle();
    EXPECT_EQ(shown(), Names{"x"});
    EXPECT_EQ(session.currentDirectory(), a);
}

TEST_F(ScanSessionRenewalTest, lookingAlwaysListsTheFolderAlsoWhenNothingInItWasTouched)
{
    folder("a");
    session.open(tree.root());
    settle();
    tree.file("empty");
    session.renew({FileURL("/somewhere/else")});
    settle();
    EXPECT_EQ(session.nodes().size(), 1U);
    session.renew({}, ScanSession::Look::always);
    settle();
    EXPECT_EQ(session.nodes().size(), 2U);
    EXPECT_EQ(timesListed("a"), 1);
}

TEST_F(ScanSessionRenewalTest, aWalkThatRunsWhereSomethingWasTouchedBeginsAgain)
{
    folder("a");
    tree.file("a/x", 5);
    bool isTouched = false;
    tree.onListing("a", [&] {
        if (!std::exchange(isTouched, true)) {
            session.renew({place("a/more")});
        }
    });
    session.open(tree.root());
    pool->runNext();
    tree.file("a/more", 100);
    settle();
    EXPECT_EQ(node("a")->displaySize(), 105);
}

TEST_F(ScanSessionRenewalTest, aFolderThatHangsLeavesTheOthersTheirSizesOnceItIsCancelled)
{
    for (const char* name : {"a", "b", "c"}) {
        tree.file(std::string(name) + "/x", 5);
        folder(name);
    }
    session.open(tree.root());
    ASSERT_EQ(pool->count(), 1U);
    // The walk of "a" stays on the pool; measured again, the folder goes on without it.
    session.renew({tree.root()});
    for (int pieces = 0; pieces < 4; ++pieces) {
        ASSERT_EQ(pool->count(), 2U) << pieces;
        runLast();
    }
    EXPECT_EQ(pool->count(), 1U);
    EXPECT_EQ(node("b")->displaySize(), 5);
    EXPECT_EQ(node("c")->displaySize(), 5);
    EXPECT_TRUE(node("a")->isComputing());
    EXPECT_EQ(timesListed("a"), 0);
    // When it answers at last, it is walked.
    settle();
    EXPECT_EQ(node("a")->displaySize(), 5);
}

TEST_F(ScanSessionRenewalTest, anotherFolderHasItsSizesWhileOneHangs)
{
    folder("a");
    const FileURL other = folder("other");
    tree.file("other/b/x", 5);
    folder("other/b");
    session.open(tree.root());
    ASSERT_EQ(pool->count(), 1U);
    session.open(other);
    ASSERT_EQ(pool->count(), 2U);
    runLast();
    EXPECT_EQ(node("b")->displaySize(), 5);
}

TEST_F(ScanSessionRenewalTest, foldersThatHangLeaveThePoolItsOtherThreads)
{
    std::vector<FileURL> folders;
    for (const char* name : {"a", "b", "c", "d"}) {
        folders.push_back(folder(name));
        folder(std::string(name) + "/inner");
    }
    for (const FileURL& each : folders) {
        session.open(each);
        EXPECT_LE(pool->count(), AggregateTasks::mostHanging + 1);
    }
    settle();
    EXPECT_EQ(node("inner")->aggregate(), DirectoryStats{});
}

TEST_F(ScanSessionRenewalTest, aResetStopsTheWalkThatRuns)
{
    tree.directory("a/deep");
    folder("a");
    tree.onListing("a", [this] { session.reset(); });
    session.open(tree.root());
    settle();
    EXPECT_EQ(timesListed("a"), 1);
    EXPECT_EQ(timesListed("a/deep"), 0);
}

TEST_F(ScanSessionRenewalTest, theOrderOfTheNamesIsThatOfTheFolderThatIsShown)
{
    const FileURL a = folder("a");
    const FileURL b = folder("b");
    for (const char* path : {"a/1", "a/2", "a/3", "b/z", "b/m", "b/c"}) {
        tree.file(path);
    }
    session.setSortOrder(SortOrder::name);
    session.open(a);
    EXPECT_EQ(shown(), (Names{"1", "2", "3"}));
    session.open(b);
    EXPECT_EQ(shown(), (Names{"c", "m", "z"}));
}

TEST_F(ScanSessionRenewalTest, theFilterLooksAtTheNamesOfTheFolderThatIsShown)
{
    const FileURL a = folder("a");
    for (const char* path : {"a/oak", "a/elm"}) {
        tree.file(path);
    }
    session.open(a);
    session.setFilterText("oak");
    EXPECT_EQ(shown(), Names{"oak"});
    const FileURL b = folder("b");
    for (const char* path : {"b/elm tree", "b/oak tree"}) {
        tree.file(path);
    }
    session.open(b);
    session.setFilterText("oak");
    EXPECT_EQ(shown(), Names{"oak tree"});
}

TEST_F(ScanSessionRenewalTest, leavingAFolderClearsItsFilter)
{
    const FileURL a = folder("a");
    const FileURL b = folder("b");
    session.open(a);
    session.setFilterText("oak");
    session.open(a);
    EXPECT_EQ(session.filterText(), "oak") << "a folder that is listed afresh is not left";
    session.renew({a});
    settle();
    EXPECT_EQ(session.filterText(), "oak");
    session.open(b);
    EXPECT_EQ(session.filterText(), "");
    session.setFilterText("elm");
    session.goBack();
    EXPECT_EQ(session.filterText(), "");
}

TEST_F(ScanSessionRenewalTest, anotherRealmBeginsWithoutTheFilterOfTheFormer)
{
    const FileURL a = folder("a");
    session.open(a);
    session.setFilterText("oak");
    session.reset();
    EXPECT_EQ(session.filterText(), "oak");
    session.open(folder("b"));
    EXPECT_EQ(session.filterText(), "");
}

TEST(ScanSessionLive, aFolderAtAPathBeyondTheLongestIsBrowsed)
{
    const test::TemporaryDirectory disk;
    const std::string name(200, 'd');
    FileURL deep = disk.url();
    ASSERT_EQ(::chdir(disk.path().c_str()), 0);
    for (int i = 0; i < 30; ++i) {
        ASSERT_EQ(::mkdir(name.c_str(), 0700), 0);
        ASSERT_EQ(::chdir(name.c_str()), 0);
        deep = deep.appending(name, FileURL::Names::directory);
    }
    ASSERT_EQ(::mkdir("below", 0700), 0);
    std::FILE* file = std::fopen("below/file", "w");
    ASSERT_NE(file, nullptr);
    std::fputs("twelve bytes", file);
    std::fclose(file);
    ASSERT_EQ(::symlink("below", "link"), 0);
    ASSERT_EQ(::chdir("/"), 0);
    ASSERT_GT(deep.path().size(), 4'096U);

    const auto loop = std::make_shared<test::ManualRunLoop>();
    const auto pool = std::make_shared<test::ManualTaskPool>();
    ScanSession session(std::make_shared<ScanEngine>(), pool, loop);
    session.open(deep);
    while (pool->runNext() || loop->run()) {
    }
    ASSERT_EQ(session.nodes().size(), 2U);
    for (const auto& node : session.nodes()) {
        EXPECT_EQ(node->entry().isSymlink, node->entry().name() == "link");
        if (node->entry().isDirectory) {
            EXPECT_EQ(node->aggregate().value().logical, 12);
        }
    }
    session.open(deep.appending("below", FileURL::Names::directory));
    ASSERT_EQ(session.nodes().size(), 1U);
    EXPECT_EQ(session.nodes().front()->entry().logicalSize, 12);
}

}  // namespace gruk
