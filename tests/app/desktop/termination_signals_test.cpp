#include "app/desktop/termination_signals.h"

#include <csignal>

#include <QEventLoop>
#include <gtest/gtest.h>

namespace gruk {

class TerminationSignalsTest : public testing::TestWithParam<int> {};

TEST_P(TerminationSignalsTest, aSignalBecomesACallOnTheMainThread)
{
    QEventLoop events;
    int calls = 0;
    const TerminationSignals signals([&] {
        ++calls;
        events.quit();
    });
    std::raise(GetParam());
    EXPECT_EQ(calls, 0);
    events.exec();
    EXPECT_EQ(calls, 1);
}

INSTANTIATE_TEST_SUITE_P(EachSignal, TerminationSignalsTest,
                         testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(TerminationSignals, aSecondSignalOfTheKindEndsTheProcess)
{
    EXPECT_EXIT(
        {
            const TerminationSignals signals([] {});
            std::raise(SIGTERM);
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}

}  // namespace gruk
