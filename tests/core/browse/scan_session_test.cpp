#include "core/browse/scan_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Names = std::vector<std::string>;
using Change = ScanSession::Change;
constexpr Bytes mebibyte = 1'048'576;

/// A session over a tree in memory, whose folders exist on the disk too, since a walk asks the
/// system for the device of its root.
class ScanSessionTest : public testing::Test {
protected:
    FileURL folder(const std::string& name)
    {
        tree.directory(name);
        return FileURL::directory(disk.folder(name));
    }

    /// Runs pool and main thread until neither has anything left.
    void settle()
    {
        while (pool->runNext() || loop->run()) {
        }
    }

    [[nodiscard]] Names shown() const
    {
        Names names;
        for (const auto& node : session->displayedNodes()) {
            names.emplace_back(node->entry().name());
        }
        return names;
    }

    [[nodiscard]] std::shared_ptr<ScanNode> node(std::string_view name) const
    {
        for (const auto& one : session->nodes()) {
            if (one->entry().name() == name) {
                return one;
            }
        }
        ADD_FAILURE() << "no node " << name;
        return nullptr;
    }

    [[nodiscard]] Names visits() const
    {
        Names paths;
        for (const FileURL& url : session->breadcrumbs()) {
            paths.emplace_back(url.lastPathComponent());
        }
        return paths;
    }

    test::TemporaryDirectory disk;
    test::FakeTree tree{disk.url()};
    std::chrono::nanoseconds time{0};
    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::shared_ptr<test::ManualTaskPool> pool = std::make_shared<test::ManualTaskPool>();
    std::shared_ptr<ScanEngine> engine =
        std::make_shared<ScanEngine>(tree.reader(), [this] { return time; });
    std::unique_ptr<ScanSession> session =
        std::make_unique<ScanSession>(engine, pool, loop, tree.reader());
};

}  // namespace

TEST_F(ScanSessionTest, aNewSessionIsEmptyAndSortsByDescendingSize)
{
    EXPECT_EQ(session->currentDirectory(), std::nullopt);
    EXPECT_TRUE(session->nodes().empty());
    EXPECT_TRUE(session->breadcrumbs().empty());
    EXPECT_TRUE(session->displayedNodes().empty());
    EXPECT_EQ(session->sortOrder(), SortOrder::sizeDescending);
    EXPECT_EQ(session->filterText(), "");
}

TEST_F(ScanSessionTest, openingShowsTheChildrenAtOnceAndTheSizesArriveLater)
{
    folder("a");
    tree.file("a/x", 100);
    tree.file("file", 7);
    session->open(tree.root());
    ASSERT_EQ(session->nodes().size(), 2U);
    EXPECT_TRUE(node("a")->isComputing());
    EXPECT_FALSE(node("file")->isComputing());
    EXPECT_EQ(node("a")->knownSize(), std::nullopt);
    EXPECT_EQ(node("a")->displaySize(), 0);
    EXPECT_EQ(node("file")->displaySize(), 7);
    EXPECT_EQ(shown(), (Names{"file", "a"}));
    settle();
    EXPECT_FALSE(node("a")->isComputing());
    EXPECT_EQ(node("a")->aggregate(), (DirectoryStats{100, 100, 1, 0}));
    EXPECT_EQ(node("a")->progress(), (ScanProgress{1, 100}));
    EXPECT_EQ(shown(), (Names{"a", "file"}));
}

TEST_F(ScanSessionTest, linksAreRowsWithoutAWalk)
{
    tree.symbolicLink("link").allocatedSize = 3;
    session->open(tree.root());
    EXPECT_EQ(pool->count(), 0U);
    EXPECT_EQ(node("link")->displaySize(), 3);
}

TEST_F(ScanSessionTest, openingAThenBThenALeavesBothAsVisitsAndGoingBackShowsB)
{
    const FileURL a = folder("a");
    const FileURL b = folder("b");
    session->open(a);
    EXPECT_TRUE(session->breadcrumbs().empty());
    session->open(b);
    session->open(a);
    EXPECT_EQ(visits(), (Names{"a", "b"}));
    session->goBack();
    EXPECT_EQ(session->currentDirectory(), b);
    EXPECT_EQ(visits(), Names{"a"});
}

TEST_F(ScanSessionTest, openingTheSameFolderTwiceIsAFreshListingWithNewNodesAndNewWalks)
{
    folder("a");
    session->open(tree.root());
    const auto former = node("a");
    settle();
    session->open(FileURL(disk.path()));
    EXPECT_TRUE(session->breadcrumbs().empty());
    EXPECT_NE(node("a"), former);
    EXPECT_TRUE(node("a")->isComputing());
    EXPECT_EQ(pool->count(), 1U);
    EXPECT_EQ(tree.listed(), (Names{"", "a", ""}));
}

TEST_F(ScanSessionTest, afterGoingBackTheFolderLeftIsOnNoForwardStack)
{
    const FileURL a = folder("a");
    session->open(a);
    session->open(folder("b"));
    session->goBack();
    EXPECT_TRUE(session->breadcrumbs().empty());
    session->goBack();
    EXPECT_EQ(session->currentDirectory(), a);
}

TEST_F(ScanSessionTest, goingBackWithNoVisitsDoesNothing)
{
    int changes = 0;
    const Subscription subscription = session->subscribe([&](Change) { ++changes; });
    session->goBack();
    EXPECT_EQ(session->currentDirectory(), std::nullopt);
    EXPECT_EQ(changes, 0);
}

TEST_F(ScanSessionTest, aFolderThatCannotBeListedShowsAsEmpty)
{
    session->open(FileURL(disk.path("gone")));
    EXPECT_EQ(session->currentDirectory(), FileURL(disk.path("gone")));
    EXPECT_TRUE(session->nodes().empty());
}

TEST_F(ScanSessionTest, theWalksOfOneFolderTakeOnePlaceInThePool)
{
    for (const char* name : {"a", "b", "c"}) {
        folder(name);
    }
    session->open(tree.root());
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_TRUE(node(name)->isComputing());
    }
    int pieces = 0;
    while (pool->count() > 0) {
        EXPECT_EQ(pool->count(), 1U);
        pool->runNext();
        loop->run();
        ++pieces;
    }
    EXPECT_EQ(pieces, 3);
    EXPECT_FALSE(node("c")->isComputing());
}

TEST_F(ScanSessionTest, aDirectoryWhoseWalkHasNotBegunIsInTheSecondGroupUntilItsProgressReaches)
{
    folder("big");
    tree.file("big/1", 60 * mebibyte);
    tree.file("big/deep/2", 40 * mebibyte);
    tree.file("big/deep/deeper/3", 1);
    tree.onListing("big/deep", [this] { time += std::chrono::milliseconds(100); });
    tree.directory("big").dateLastOpened = Date{5};
    tree.file("small", 10).dateLastOpened = Date{1};
    session->setSortOrder(SortOrder::oldForgotten);
    session->open(tree.root());
    EXPECT_EQ(shown(), (Names{"small", "big"}));
    Names seen;
    const Subscription subscription = session->subscribe([&](Change) {
        if (!node("big")->aggregate()) {
            seen.push_back(shown().front() + " at "
                           + std::to_string(node("big")->displaySize() / mebibyte));
        }
    });
    settle();
    EXPECT_EQ(seen, (Names{"small at 60", "big at 100"}));
    EXPECT_EQ(shown(), (Names{"big", "small"}));
}

TEST_F(ScanSessionTest, theFilterPhotoInCapitalsKeepsPhotos)
{
    for (const char* name : {"Photos", "photo album", "Music", "autophoto"}) {
        tree.file(name);
    }
    session->open(tree.root());
    session->setFilterText("PHOTO");
    EXPECT_EQ(shown(), (Names{"Photos", "photo album", "autophoto"}));
    session->setFilterText("");
    EXPECT_EQ(shown().size(), 4U);
}

TEST_F(ScanSessionTest, aFilterOfOneBlankKeepsOnlyNamesHoldingABlank)
{
    for (const char* name : {"a b", "ab", " ab"}) {
        tree.file(name);
    }
    session->open(tree.root());
    session->setFilterText(" ");
    EXPECT_EQ(shown(), (Names{"a b", " ab"}));
}

TEST_F(ScanSessionTest, theFilterLooksAtTheLastPathComponentOnly)
{
    const FileURL photos = folder("photos");
    tree.file("photos/x");
    session->open(photos);
    session->setFilterText("photos");
    EXPECT_TRUE(shown().empty());
}

TEST_F(ScanSessionTest, namesStandInTheTextOrderAndTheFilterKeepsIt)
{
    for (const char* name : {"file10", "file2", "B", "ä", "a", "\xff"}) {
        tree.file(name);
    }
    session->setSortOrder(SortOrder::name);
    session->open(tree.root());
    EXPECT_EQ(shown(), (Names{"a", "ä", "B", "file2", "file10", "\xff"}));
    session->setFilterText("file");
    EXPECT_EQ(shown(), (Names{"file2", "file10"}));
}

TEST_F(ScanSessionTest, aChangeOfOrderOrFilterStartsNoWalkAndIsTold)
{
    folder("a");
    session->open(tree.root());
    settle();
    std::vector<Change> changes;
    const Subscription subscription =
        session->subscribe([&](Change change) { changes.push_back(change); });
    session->setSortOrder(SortOrder::name);
    session->setSortOrder(SortOrder::name);
    session->setFilterText("a");
    session->setFilterText("a");
    EXPECT_EQ(changes, (std::vector<Change>{Change::arrangement, Change::arrangement}));
    EXPECT_EQ(pool->count(), 0U);
    EXPECT_EQ(tree.listed(), (Names{"", "a"}));
}

TEST_F(ScanSessionTest, everyStepIsTold)
{
    folder("a");
    std::vector<Change> changes;
    const Subscription subscription =
        session->subscribe([&](Change change) { changes.push_back(change); });
    session->open(tree.root());
    EXPECT_EQ(changes, std::vector<Change>{Change::folder});
    int nodeChanges = 0;
    const Subscription ofNode = node("a")->subscribe([&] { ++nodeChanges; });
    settle();
    EXPECT_EQ(changes, (std::vector<Change>{Change::folder, Change::node, Change::node}));
    EXPECT_EQ(nodeChanges, 2);
    session->reset();
    EXPECT_EQ(changes.back(), Change::folder);
}

TEST_F(ScanSessionTest, aWalkThatFailsLeavesTheRowWithItsLastProgress)
{
    folder("a");
    tree.file("a/x", 5);
    tree.directory("a/gone");
    tree.onListing("a/gone", [] {
        throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), "open", "a");
    });
    folder("b");
    tree.file("b/y", 3);
    session->open(tree.root());
    settle();
    EXPECT_FALSE(node("a")->isComputing());
    EXPECT_EQ(node("a")->aggregate(), std::nullopt);
    EXPECT_EQ(node("a")->displaySize(), 5);
    EXPECT_EQ(node("b")->displaySize(), 3);
}

TEST_F(ScanSessionTest, whatAWalkThrowsThatIsNoExceptionIsDroppedToo)
{
    folder("a");
    tree.onListing("a", [] { throw 5; });
    session->open(tree.root());
    settle();
    EXPECT_FALSE(node("a")->isComputing());
    EXPECT_EQ(node("a")->knownSize(), std::nullopt);
}

TEST_F(ScanSessionTest, openingAnotherFolderCancelsTheWalksAndTheirLateResultsReachNobody)
{
    folder("a");
    folder("b");
    folder("other/c");
    session->open(tree.root());
    const auto a = node("a");
    const auto b = node("b");
    pool->runNext();  // "a" has been walked, but the main thread has not heard of it yet.
    session->open(FileURL::directory(disk.path("other")));
    EXPECT_FALSE(a->isComputing());
    EXPECT_FALSE(b->isComputing());
    settle();
    EXPECT_EQ(a->aggregate(), std::nullopt);
    EXPECT_EQ(a->progress(), std::nullopt);
    EXPECT_EQ(node("c")->aggregate(), DirectoryStats{});
    EXPECT_EQ(std::ranges::count(tree.listed(), "b"), 0);
}

TEST_F(ScanSessionTest, openingAnotherFolderStopsTheWalkThatRuns)
{
    folder("a");
    tree.directory("a/deep");
    folder("other");
    tree.onListing("a", [this] { session->open(FileURL::directory(disk.path("other"))); });
    session->open(tree.root());
    settle();
    EXPECT_EQ(std::ranges::count(tree.listed(), "a/deep"), 0);
}

TEST_F(ScanSessionTest, resetDuringRunningWalksCancelsThemAndALateResultSetsNothingVisible)
{
    folder("a");
    session->open(tree.root());
    session->open(tree.root());
    session->setSortOrder(SortOrder::name);
    session->setFilterText("a");
    pool->runNext();
    const std::weak_ptr<ScanNode> a = node("a");
    session->reset();
    EXPECT_TRUE(a.expired());
    EXPECT_TRUE(session->nodes().empty());
    EXPECT_TRUE(session->displayedNodes().empty());
    EXPECT_EQ(session->currentDirectory(), std::nullopt);
    EXPECT_TRUE(session->breadcrumbs().empty());
    int changes = 0;
    const Subscription subscription = session->subscribe([&](Change) { ++changes; });
    settle();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(session->sortOrder(), SortOrder::name);
    EXPECT_EQ(session->filterText(), "a");
}

TEST_F(ScanSessionTest, resetEmptiesTheEnginesCacheBeforeTheNextFolderIsWalked)
{
    folder("a");
    tree.file("a/x", 5);
    session->open(tree.root());
    settle();
    tree.file("a/y", 10);
    session->open(tree.root());
    settle();
    EXPECT_EQ(node("a")->displaySize(), 5);
    session->reset();
    session->open(tree.root());
    // Left and entered again before anything ran: what was asked of the engine still holds.
    session->open(tree.root());
    settle();
    EXPECT_EQ(node("a")->displaySize(), 15);
}

TEST_F(ScanSessionTest, aReturnVisitTakesTheSizesFromTheCache)
{
    const FileURL a = folder("a");
    tree.file("a/x", 5);
    session->open(tree.root());
    settle();
    session->open(a);
    session->goBack();
    settle();
    EXPECT_EQ(node("a")->displaySize(), 5);
    EXPECT_EQ(node("a")->progress(), std::nullopt);
    EXPECT_EQ(std::ranges::count(tree.listed(), "a"), 2);  // Its walk, and its own listing.
}

TEST_F(ScanSessionTest, aSessionThatEndsBeforeItsWalksLeavesNothingBehind)
{
    folder("a");
    folder("b");
    session->open(tree.root());
    const std::weak_ptr<ScanNode> a = node("a");
    pool->runNext();
    session.reset();
    EXPECT_TRUE(a.expired());
    loop->run();
    EXPECT_EQ(pool->count(), 0U);
}

TEST_F(ScanSessionTest, anObserverMayOpenAnotherFolderOrEndTheSession)
{
    folder("a");
    folder("other/c");
    session->open(tree.root());
    Subscription subscription = session->subscribe([&](Change change) {
        if (change == Change::node && session->nodes().size() == 2) {
            session->open(FileURL::directory(disk.path("other")));
        }
    });
    settle();
    EXPECT_EQ(shown(), Names{"c"});
    subscription = session->subscribe([&](Change) { session.reset(); });
    session->setFilterText("x");
    EXPECT_EQ(session, nullptr);
}

TEST_F(ScanSessionTest, displayedNodesIsAtEveryReadWhatARecomputationWouldReturn)
{
    folder("a");
    tree.file("a/x", 50);
    tree.file("file", 7);
    session->open(tree.root());
    EXPECT_EQ(shown(), (Names{"file", "a"}));
    node("a")->report({1, 50});
    EXPECT_EQ(shown(), (Names{"a", "file"}));
    session->setSortOrder(SortOrder::sizeAscending);
    EXPECT_EQ(shown(), (Names{"file", "a"}));
    const ScanNode* front = session->displayedNodes().front();
    EXPECT_EQ(session->displayedNodes().front(), front);
}

TEST_F(ScanSessionTest, manyRowsAreInTheirOrderAfterEachSizeThatComes)
{
    constexpr int folders = 20;
    for (int i = 0; i < 10 * folders; ++i) {
        const std::string name = "item " + std::to_string(i);
        if (i % 10 == 0) {
            folder(name);
        } else {
            tree.file(name, static_cast<Bytes>(i) * 37 % 500);
        }
    }
    session->open(tree.root());
    settle();
    session->setFilterText("m 1");
    std::mt19937 random(20261121);
    for (const SortOrder order : {SortOrder::sizeDescending, SortOrder::sizeAscending}) {
        session->setSortOrder(order);
        for (int step = 0; step < 200; ++step) {
            const auto name = "item " + std::to_string(random() % folders * 10);
            node(name)->endComputing(
                DirectoryStats{.allocated = static_cast<Bytes>(random() % 500)});
            if (random() % 3 == 0) {
                continue;
            }
            ScanSession::Rows plain;
            for (const auto& one : session->nodes()) {
                if (one->entry().name().find("m 1") != std::string::npos) {
                    plain.push_back(one.get());
                }
            }
            std::stable_sort(plain.begin(), plain.end(), [&](auto* a, auto* b) {
                return order == SortOrder::sizeAscending ? a->displaySize() < b->displaySize()
                                                         : a->displaySize() > b->displaySize();
            });
            ASSERT_EQ(session->displayedNodes(), plain) << step;
        }
    }
}

TEST(ScanSessionLive, theLiveSessionListsAndWalksTheDisk)
{
    const test::TemporaryDirectory disk;
    disk.file("a/b/x", 5);
    disk.file("file", 7);
    const auto loop = std::make_shared<test::ManualRunLoop>();
    const auto pool = std::make_shared<test::ManualTaskPool>();
    ScanSession session(std::make_shared<ScanEngine>(), pool, loop);
    session.open(disk.url());
    while (pool->runNext() || loop->run()) {
    }
    ASSERT_EQ(session.nodes().size(), 2U);
    for (const auto& node : session.nodes()) {
        if (node->entry().isDirectory) {
            EXPECT_EQ(node->aggregate().value().logical, 5);
        } else {
            EXPECT_EQ(node->entry().logicalSize, 7);
        }
    }
}

}  // namespace gruk
