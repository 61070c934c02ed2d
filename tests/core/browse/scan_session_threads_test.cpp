#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "core/browse/scan_session.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/thread_task_pool.h"

namespace gruk {

namespace {

/// A session over the disk, with threads of its own for its walks.
class ScanSessionThreadsTest : public testing::Test {
protected:
    ScanSessionThreadsTest()
    {
        for (int i = 0; i < 20; ++i) {
            const std::string folder = std::to_string(i);
            disk.file("one/" + folder + "/a/x", 10);
            disk.file("other/" + folder + "/a/b/x", 100);
        }
    }

    /// Runs the main thread until no node is computing any more.
    void settle(const ScanSession& session)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        for (bool isComputing = true; isComputing;) {
            loop->run();
            isComputing = false;
            for (const auto& node : session.nodes()) {
                isComputing = isComputing || node->isComputing();
            }
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::yield();
        }
    }

    test::TemporaryDirectory disk;
    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::shared_ptr<test::ThreadTaskPool> pool = std::make_shared<test::ThreadTaskPool>();
    std::shared_ptr<ScanEngine> engine = std::make_shared<ScanEngine>();
};

}  // namespace

TEST_F(ScanSessionThreadsTest, foldersOpenedInQuickSuccessionEndWithTheSizesOfTheLast)
{
    ScanSession session(engine, pool, loop);
    for (int i = 0; i < 20; ++i) {
        session.open(FileURL(disk.path("one")));
        loop->run();
        session.open(FileURL(disk.path("other")));
        if (i % 3 == 0) {
            session.reset();
            session.open(FileURL(disk.path("other")));
        }
    }
    settle(session);
    ASSERT_EQ(session.nodes().size(), 20U);
    for (const auto& node : session.nodes()) {
        EXPECT_EQ(node->aggregate().value().logical, 100);
    }
}

TEST_F(ScanSessionThreadsTest, aSessionMayEndWhileItsWalksRun)
{
    for (int i = 0; i < 20; ++i) {
        ScanSession session(engine, pool, loop);
        session.open(FileURL(disk.path("one")));
        loop->run();
    }
    pool->wait();
    // Whatever was still on its way to a session that has ended goes nowhere.
    loop->run();
    EXPECT_FALSE(loop->run());
    ScanSession last(engine, pool, loop);
    last.open(FileURL(disk.path("one")));
    settle(last);
    ASSERT_FALSE(last.nodes().empty());
    for (const auto& node : last.nodes()) {
        EXPECT_EQ(node->aggregate().value().logical, 10);
    }
}

TEST_F(ScanSessionThreadsTest, theEngineIsAskedByTwoSessionsAtOnce)
{
    ScanSession first(engine, pool, loop);
    ScanSession second(engine, pool, loop);
    first.open(FileURL(disk.path("one")));
    second.open(FileURL(disk.path("one")));
    settle(first);
    settle(second);
    for (const ScanSession* session : {&first, &second}) {
        for (const auto& node : session->nodes()) {
            EXPECT_EQ(node->aggregate().value().logical, 10);
        }
    }
}

}  // namespace gruk
