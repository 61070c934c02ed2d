#include "app/screens/welcome_page.h"

#include <QAccessible>
#include <QLabel>
#include <gtest/gtest.h>

#include "tests/support/screen_house.h"

namespace gruk {

TEST(WelcomePage, saysWhatGrukDoesAndPromises)
{
    test::ScreenHouse house;
    for (const char* text :
         {"KNOW WHAT GREW.", "RECLAIM YOUR REALM.",
          "Gruk maps a folder, remembers it, then shows you what changed. It never deletes on its "
          "own.",
          "Local metadata only", "Review before Trash", "No subscriptions",
          "Choose a realm to patrol"}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
}

TEST(WelcomePage, describesTheGrukToAssistiveTechnology)
{
    test::ModelHouse house;
    Theme theme;
    GrukWelcomeView page(*house.model, theme);
    auto* hero = page.findChild<ArtView*>();
    ASSERT_NE(hero, nullptr);
    EXPECT_EQ(hero->art(), Art::grukHero);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(hero);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name),
              QStringLiteral("A friendly green Gruk carrying a lantern and disk shield"));
}

TEST(WelcomePage, itsButtonGrantsARealm)
{
    test::ScreenHouse house;
    house.panel->answers.push_back(std::nullopt);
    house.button(QStringLiteral("Choose a realm to patrol"))->click();
    house.settle();
    EXPECT_EQ(house.panel->requests.size(), 1U);
}

TEST(WelcomePage, theGrukStandsBesideTheWordsOrOverThem)
{
    test::ModelHouse house;
    Theme theme;
    GrukWelcomeView page(*house.model, theme);
    page.resize(1000, 600);
    page.show();
    QCoreApplication::processEvents();
    const auto* hero = page.findChild<ArtView*>();
    const auto* button = page.findChild<QAbstractButton*>();
    EXPECT_GT(hero->x(), button->geometry().right());
    page.resize(572, 500);
    QCoreApplication::processEvents();
    EXPECT_LT(hero->geometry().bottom(), button->y());
    EXPECT_GE(hero->y(), 0);
    EXPECT_LE(button->geometry().bottom(), page.height());
}

TEST(WelcomePage, itsWordsAreWholeInTheSmallestWindowAlsoUnderMessages)
{
    test::ScreenHouse house;
    house.window->resize(house.window->minimumSize());
    house.repaint();
    const auto* hero = house.window->page()->findChild<ArtView*>();
    EXPECT_TRUE(hero->isVisible());
    house.model->patrolAllRealms();
    house.settle();
    house.model->tidyDesktop();
    house.settle();
    ASSERT_TRUE(house.model->lastActionMessage() && house.model->errorMessage());
    EXPECT_FALSE(hero->isVisible());
    for (const QLabel* label : house.window->page()->findChildren<QLabel*>()) {
        EXPECT_GE(label->height(), label->heightForWidth(label->width()))
            << label->text().toStdString();
    }
}

}  // namespace gruk
