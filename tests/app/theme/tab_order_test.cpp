#include "app/theme/tab_order.h"

#include <QPushButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "tests/support/tab_stops.h"

namespace gruk {

namespace {

class TabOrder : public testing::Test {
protected:
    QPushButton* add(const QString& name, QWidget* parent)
    {
        auto* button = new QPushButton(name, parent);
        button->show();
        return button;
    }
    [[nodiscard]] QString stops() const { return test::tabStopsIn(window).join(u' '); }

    QWidget window;
};

}  // namespace

TEST_F(TabOrder, isTheOneThatWasAskedForWhateverWasMadeFirst)
{
    QPushButton* c = add(QStringLiteral("c"), &window);
    QPushButton* b = add(QStringLiteral("b"), &window);
    QPushButton* a = add(QStringLiteral("a"), &window);
    window.show();
    EXPECT_EQ(stops(), QStringLiteral("c b a"));
    chainTabStops({a, b, c});
    EXPECT_EQ(stops(), QStringLiteral("a b c"));
    chainTabStops({a, nullptr, c, b});
    EXPECT_EQ(stops(), QStringLiteral("a c b"));
}

TEST_F(TabOrder, alsoOfTheFirstAndTheLastOfAWindow)
{
    QPushButton* b = add(QStringLiteral("b"), &window);
    QPushButton* a = add(QStringLiteral("a"), &window);
    window.show();
    chainTabStops({a, b});
    EXPECT_EQ(stops(), QStringLiteral("a b"));
    chainTabStops({});
    chainTabStops({nullptr, a});
    EXPECT_EQ(stops(), QStringLiteral("a b"));
}

TEST_F(TabOrder, whatIsBeforeAnAreaIsTheLastStopThatIsNotInIt)
{
    auto* first = new QWidget(&window);
    QPushButton* a = add(QStringLiteral("a"), first);
    auto* second = new QWidget(&window);
    add(QStringLiteral("b"), second);
    auto* third = new QWidget(&window);
    EXPECT_EQ(tabStopBefore(*first), nullptr);
    EXPECT_EQ(tabStopBefore(*second), a);
    QPushButton* late = add(QStringLiteral("late"), second);
    window.show();
    chainTabStops({tabStopBefore(*second), late});
    EXPECT_EQ(stops(), QStringLiteral("a late b"));
    EXPECT_EQ(tabStopBefore(*third)->parentWidget(), second);
    EXPECT_EQ(tabStopBefore(window), nullptr);
}

}  // namespace gruk
