#include "app/screens/automations_section.h"

#include <algorithm>
#include <filesystem>

#include <QComboBox>
#include <gtest/gtest.h>

#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::ScreenHouse;

class AutomationsSectionTest : public testing::Test {
protected:
    /// Opens the disclosure and chooses; false when there is nothing to choose.
    [[nodiscard]] bool choose(PatrolCadence cadence)
    {
        for (auto* picker : house.window->page()->findChildren<QComboBox*>()) {
            if (picker->accessibleName() == QStringLiteral("Cadence") && picker->isVisible()) {
                const auto place = std::ranges::find(allPatrolCadences, cadence);
                const int index = static_cast<int>(place - allPatrolCadences.begin());
                picker->setCurrentIndex(index);
                Q_EMIT picker->activated(index);
                house.settle();
                return true;
            }
        }
        return false;
    }

    /// The folder is replaced by another one, and granted again at its place.
    void replace(const FileURL& realm)
    {
        // The former one stays elsewhere, so that the new one cannot be the same directory.
        std::filesystem::rename(house.directory.path("Home"), house.directory.path("before"));
        house.directory.folder("Home");
        house.panel->answers.push_back(realm);
        house.model->regrantRealm(house.grantOf(realm));
        house.settle();
    }

    const QString automations = QStringLiteral("Automations");
    ScreenHouse house;
};

}  // namespace

TEST_F(AutomationsSectionTest, standsOnThePageOfAGrantedRealm)
{
    house.makeRealm("Home");
    house.settle();
    ASSERT_NE(house.button(automations), nullptr);
    EXPECT_FALSE(choose(PatrolCadence::daily)) << "closed";
    house.button(automations)->click();
    EXPECT_TRUE(choose(PatrolCadence::daily));
}

TEST_F(AutomationsSectionTest, aRealmThatIsGrantedWhileItIsOpenGetsItsOwn)
{
    house.directory.file("Home/Downloads/x", 10);
    house.makeRealm("Home");
    const FileURL downloads = FileURL::directory(house.directory.path("Home/Downloads"));
    house.select(downloads);
    house.settle();
    EXPECT_EQ(house.button(automations), nullptr);
    house.model->grantRealm(downloads);
    house.settle();
    ASSERT_NE(house.button(automations), nullptr);
    house.button(automations)->click();
    ASSERT_TRUE(choose(PatrolCadence::weekly));
    EXPECT_EQ(house.model->cadence(house.grantOf(downloads)), PatrolCadence::weekly);
}

TEST_F(AutomationsSectionTest, aRealmThatIsGrantedAgainGoesOnUnderItsNewGrant)
{
    const FileURL realm = house.makeRealm("Home");
    house.settle();
    const Grant before = house.grantOf(realm);
    house.button(automations)->click();
    ASSERT_TRUE(choose(PatrolCadence::daily));
    replace(realm);
    ASSERT_NE(house.grantOf(realm).id, before.id);
    ASSERT_TRUE(choose(PatrolCadence::standGuard)) << "it stays open";
    EXPECT_EQ(house.model->cadence(house.grantOf(realm)), PatrolCadence::standGuard);
    EXPECT_EQ(house.streams.size(), 1U);
    house.model->removeRealm(house.grantOf(realm));
    EXPECT_TRUE(house.streams.empty());
}

TEST_F(AutomationsSectionTest, aRealmThatIsGrantedAgainShowsTheCadenceOfItsNewGrant)
{
    const FileURL realm = house.makeRealm("Home");
    house.settle();
    house.button(automations)->click();
    ASSERT_TRUE(choose(PatrolCadence::weekly));
    replace(realm);
    for (const auto* picker : house.window->page()->findChildren<QComboBox*>()) {
        if (picker->accessibleName() == QStringLiteral("Cadence")) {
            EXPECT_EQ(picker->currentText(), QStringLiteral("Off"));
        }
    }
}

}  // namespace gruk
