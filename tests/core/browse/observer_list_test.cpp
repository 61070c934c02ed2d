#include "core/browse/observer_list.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace gruk {

TEST(ObserverList, everyObserverIsToldInTheOrderInWhichTheyCame)
{
    ObserverList<int> list;
    std::string told;
    const Subscription a = list.subscribe([&](int value) { told += "a" + std::to_string(value); });
    const Subscription b = list.subscribe([&](int value) { told += "b" + std::to_string(value); });
    list.tell(1);
    list.tell(2);
    EXPECT_EQ(told, "a1b1a2b2");
}

TEST(ObserverList, aListThatNobodyObservesTellsNobody)
{
    const ObserverList<> list;
    EXPECT_NO_THROW(list.tell());
}

TEST(ObserverList, aSubscriptionThatIsDestroyedIsNotTold)
{
    ObserverList<> list;
    int told = 0;
    {
        const Subscription subscription = list.subscribe([&] { ++told; });
        list.tell();
    }
    list.tell();
    EXPECT_EQ(told, 1);
}

TEST(ObserverList, aSubscriptionMayOutliveItsList)
{
    std::optional<ObserverList<>> list(std::in_place);
    Subscription subscription = list->subscribe([] {});
    list.reset();
    EXPECT_NO_THROW(subscription.end());
}

TEST(ObserverList, aMovedSubscriptionStaysSubscribedOnce)
{
    ObserverList<> list;
    int told = 0;
    Subscription first = list.subscribe([&] { ++told; });
    Subscription second = std::move(first);
    list.tell();
    EXPECT_EQ(told, 1);
    second = Subscription();
    list.tell();
    EXPECT_EQ(told, 1);
}

TEST(ObserverList, assigningASubscriptionEndsTheFormerOne)
{
    ObserverList<> list;
    std::string told;
    Subscription subscription = list.subscribe([&] { told += "a"; });
    subscription = list.subscribe([&] { told += "b"; });
    list.tell();
    EXPECT_EQ(told, "b");
}

TEST(ObserverList, anObserverMayLeaveWhileItIsTold)
{
    ObserverList<> list;
    std::string told;
    Subscription a;
    // What the function holds must stay whole until its call ends.
    a = list.subscribe([&, held = std::string("a long text that is not kept in place")] {
        a.end();
        told += held.substr(0, 1);
    });
    const Subscription b = list.subscribe([&] { told += "b"; });
    list.tell();
    list.tell();
    EXPECT_EQ(told, "abb");
}

TEST(ObserverList, anObserverThatIsTakenOffByAnEarlierOneIsNotTold)
{
    ObserverList<> list;
    std::string told;
    Subscription b;
    const Subscription a = list.subscribe([&] {
        told += "a";
        b.end();
    });
    b = list.subscribe([&] { told += "b"; });
    const Subscription c = list.subscribe([&] { told += "c"; });
    list.tell();
    EXPECT_EQ(told, "ac");
}

TEST(ObserverList, anObserverThatIsAddedWhileTellingIsToldFromTheNextTimeOn)
{
    ObserverList<> list;
    std::string told;
    std::vector<Subscription> added;
    const Subscription a = list.subscribe([&] {
        told += "a";
        for (int i = 0; i < 100; ++i) {
            added.push_back(list.subscribe([&] { told += "b"; }));
        }
    });
    list.tell();
    EXPECT_EQ(told, "a");
    told.clear();
    list.tell();
    EXPECT_EQ(told, "a" + std::string(100, 'b'));
}

TEST(ObserverList, aTellingInsideATellingReachesEveryone)
{
    ObserverList<int> list;
    std::string told;
    Subscription a;
    a = list.subscribe([&](int depth) {
        told += "a";
        if (depth == 0) {
            list.tell(1);
            a.end();
        }
    });
    const Subscription b = list.subscribe([&](int) { told += "b"; });
    list.tell(0);
    list.tell(2);
    EXPECT_EQ(told, "aabbb");
}

TEST(ObserverList, aListThatEndsWhileTellingTellsNobodyElse)
{
    auto list = std::make_unique<ObserverList<>>();
    std::string told;
    const Subscription a = list->subscribe([&] {
        told += "a";
        list.reset();
    });
    const Subscription b = list->subscribe([&] { told += "b"; });
    list->tell();
    EXPECT_EQ(told, "a");
}

TEST(ObserverList, anObserverThatThrowsLeavesTheListWhole)
{
    ObserverList<> list;
    Subscription a;
    a = list.subscribe([&] {
        a.end();
        throw std::runtime_error("refused");
    });
    int told = 0;
    const Subscription b = list.subscribe([&] { ++told; });
    EXPECT_THROW(list.tell(), std::runtime_error);
    list.tell();
    EXPECT_EQ(told, 1);
}

TEST(ObserverList, whatAnObserverHoldsMayItselfBeSubscribed)
{
    ObserverList<> list;
    auto inner = std::make_shared<Subscription>(list.subscribe([] {}));
    Subscription outer = list.subscribe([inner] {});
    inner.reset();
    EXPECT_NO_THROW(outer.end());
    EXPECT_NO_THROW(list.tell());
}

}  // namespace gruk
