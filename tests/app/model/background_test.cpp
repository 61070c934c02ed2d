#include "app/model/background.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"

namespace gruk {

namespace {

using test::ManualRunLoop;
using test::ManualTaskPool;

struct House {
    std::shared_ptr<ManualTaskPool> pool = std::make_shared<ManualTaskPool>();
    std::shared_ptr<ManualRunLoop> loop = std::make_shared<ManualRunLoop>();
    std::string outcome;
};

QCoro::Task<> await(House& house, std::function<std::string()> work)
{
    try {
        house.outcome = co_await inBackground(house.pool, house.loop, std::move(work));
    } catch (const CancelledError&) {
        house.outcome = "cancelled";
    } catch (const std::exception& error) {
        house.outcome = error.what();
    }
}

}  // namespace

TEST(Background, theResultComesThroughTheRunLoop)
{
    House house;
    await(house, [] { return std::string("done"); });
    EXPECT_EQ(house.outcome, "");
    house.pool->runNext();
    EXPECT_EQ(house.outcome, "");
    house.loop->run();
    EXPECT_EQ(house.outcome, "done");
}

TEST(Background, anExceptionOfTheWorkIsThrownWhereItIsAwaited)
{
    House house;
    await(house, []() -> std::string { throw std::runtime_error("broken"); });
    house.pool->runNext();
    house.loop->run();
    EXPECT_EQ(house.outcome, "broken");
}

TEST(Background, workThatNeverRunsEndsAsCancelled)
{
    House house;
    await(house, [] { return std::string("done"); });
    house.pool.reset();
    EXPECT_EQ(house.outcome, "cancelled");
}

TEST(Background, aRunLoopThatEndsLetsGoOfWhatWaitsForIt)
{
    House house;
    await(house, [] { return std::string("done"); });
    house.pool->runNext();
    house.loop.reset();
    EXPECT_EQ(house.outcome, "done");
}

TEST(Background, whatTheWorkHoldsIsLetGoOfBeforeTheResultArrives)
{
    House house;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = held;
    await(house, [held = std::move(held)] { return std::to_string(*held); });
    house.pool->runNext();
    EXPECT_TRUE(watch.expired());
    house.loop->run();
    EXPECT_EQ(house.outcome, "1");
}

}  // namespace gruk
