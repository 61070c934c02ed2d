#include "app/desktop/qt_run_loop.h"

#include <chrono>
#include <thread>
#include <vector>

#include <QCoreApplication>
#include <QEventLoop>
#include <gtest/gtest.h>

#include "app/desktop/qt_task_pool.h"
#include "app/model/background.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;

QCoro::Task<> addAll(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop, int count,
                     int& sum, QEventLoop& events)
{
    for (int number = 1; number <= count; ++number) {
        std::function<int()> work = [number] { return number; };
        const int result = co_await inBackground(pool, loop, std::move(work));
        sum += result;
    }
    events.quit();
}

}  // namespace

TEST(QtRunLoop, runsWhatIsPostedLaterAndInOrder)
{
    QtRunLoop loop;
    std::vector<int> order;
    loop.post([&] {
        order.push_back(1);
        loop.post([&] { order.push_back(3); });
    });
    loop.post([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(QtRunLoop, runsOnTheMainThreadWhatOtherThreadsPost)
{
    constexpr int threads = 4;
    constexpr int posts = 500;
    QtRunLoop loop;
    QEventLoop events;
    const std::thread::id mainThread = std::this_thread::get_id();
    int ran = 0;
    bool isMain = true;
    std::vector<std::thread> posters;
    for (int thread = 0; thread < threads; ++thread) {
        posters.emplace_back([&] {
            for (int number = 0; number < posts; ++number) {
                loop.post([&] {
                    isMain = isMain && std::this_thread::get_id() == mainThread;
                    if (++ran == threads * posts) {
                        events.quit();
                    }
                });
            }
        });
    }
    events.exec();
    for (std::thread& poster : posters) {
        poster.join();
    }
    EXPECT_EQ(ran, threads * posts);
    EXPECT_TRUE(isMain);
}

TEST(QtRunLoop, letsGoAtItsEndOfWhatNeverRan)
{
    auto held = std::make_shared<int>(0);
    {
        QtRunLoop loop;
        loop.post([held] { ++*held; });
    }
    EXPECT_EQ(*held, 0);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(QtRunLoop, aTimerFiresOnceAfterItsDelay)
{
    QtRunLoop loop;
    QEventLoop events;
    int fired = 0;
    const auto once = loop.after(1ms, [&] { ++fired; });
    const auto end = loop.after(20ms, [&] { events.quit(); });
    events.exec();
    EXPECT_EQ(fired, 1);
}

TEST(QtRunLoop, aRepeatingTimerMayEndItselfFromItsOwnFunction)
{
    QtRunLoop loop;
    QEventLoop events;
    int fired = 0;
    std::unique_ptr<RunLoop::Timer> timer;
    timer = loop.every(1ms, [&] {
        if (++fired == 3) {
            timer.reset();
            events.quit();
        }
    });
    events.exec();
    EXPECT_EQ(fired, 3);
}

TEST(QtRunLoop, aTimerThatIsDestroyedNeverFires)
{
    QtRunLoop loop;
    QEventLoop events;
    bool fired = false;
    auto timer = loop.after(1ms, [&] { fired = true; });
    timer.reset();
    const auto end = loop.after(10ms, [&] { events.quit(); });
    events.exec();
    EXPECT_FALSE(fired);
}

TEST(QtTaskPool, workRunsOnOtherThreadsAndComesBackToTheMainOne)
{
    const auto pool = std::make_shared<QtTaskPool>();
    const auto loop = std::make_shared<QtRunLoop>();
    QEventLoop events;
    int sum = 0;
    const auto task = addAll(pool, loop, 200, sum, events);
    events.exec();
    EXPECT_EQ(sum, 200 * 201 / 2);
    EXPECT_TRUE(pool->waitForDone(10s));
}

TEST(QtTaskPool, waitsNoLongerThanAsked)
{
    QtTaskPool pool;
    std::mutex gate;
    gate.lock();
    pool.start([&gate] { const std::lock_guard passed(gate); });
    EXPECT_FALSE(pool.waitForDone(1ms));
    gate.unlock();
    EXPECT_TRUE(pool.waitForDone(10s));
}

}  // namespace gruk
