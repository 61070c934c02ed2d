#include "app/screens/settings_view.h"

#include <fstream>
#include <iterator>
#include <string>

#include <QLabel>
#include <QRadioButton>
#include <QTabBar>
#include <gtest/gtest.h>

#include "app/model/setting_keys.h"
#include "app/screens/confirmation_dialog.h"
#include "app/screens/review_only_panel.h"
#include "app/theme/toggle.h"
#include "tests/support/screen_house.h"
#include "tests/support/theme_window.h"

namespace gruk {

namespace {

class SettingsViewTest : public testing::Test {
protected:
    SettingsViewTest()
    {
        theme_.followPreferences(*house_.preferences);
        view_ = std::make_unique<SettingsView>(*house_.model, theme_);
        view_->show();
        QApplication::setActiveWindow(view_.get());
        test::ThemeWindow::rest();
    }

    [[nodiscard]] bool shows(const char* text) const
    {
        for (const QWidget* each : view_->findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(each);
            const auto* button = qobject_cast<const QAbstractButton*>(each);
            const QString shown = label != nullptr    ? label->text()
                                  : button != nullptr ? button->text()
                                                      : QString();
            if (each->isVisible() && shown == QString::fromUtf8(text)) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] QAbstractButton* button(const char* text) const
    {
        for (QAbstractButton* each : view_->findChildren<QAbstractButton*>()) {
            if (each->isVisible() && each->text() == QString::fromUtf8(text)) {
                return each;
            }
        }
        return nullptr;
    }
    void press(const char* text)
    {
        QAbstractButton* found = button(text);
        ASSERT_NE(found, nullptr) << text;
        found->click();
        test::ThemeWindow::rest();
    }

    test::ModelHouse house_;
    Theme theme_;
    std::unique_ptr<SettingsView> view_;
};

}  // namespace

TEST_F(SettingsViewTest, isAWindowOfItsOwnWithTwoTabs)
{
    EXPECT_TRUE(view_->isWindow());
    EXPECT_EQ(view_->windowTitle(), QStringLiteral("Settings"));
    auto* tabs = view_->findChild<QTabBar*>();
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("General"));
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("Automations"));
    EXPECT_EQ(tabs->currentIndex(), 0);
}

TEST_F(SettingsViewTest, allowingTrashActionsIsAskedForAndRefusedByDefault)
{
    EXPECT_TRUE(shows("Review Only is on"));
    press("Enable Trash actions…");
    auto* question = view_->findChild<ConfirmationDialog*>();
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->accessibleName(), QStringLiteral("Enable Trash actions?"));
    EXPECT_EQ(question->accessibleDescription(),
              QStringLiteral("Only use this in a disposable test realm for now. Gruk will still "
                             "ask before each item and will only use the system Trash."));
    press("Keep Review Only");
    EXPECT_TRUE(house_.model->reviewOnlyMode());

    press("Enable Trash actions…");
    press("Enable Trash Actions");
    EXPECT_FALSE(house_.model->reviewOnlyMode());
    EXPECT_TRUE(shows("Trash actions enabled"));
    EXPECT_FALSE(shows("Review Only is on"));

    press("Return to Review Only");
    EXPECT_TRUE(house_.model->reviewOnlyMode());
    EXPECT_EQ(view_->findChild<ConfirmationDialog*>(), nullptr);
    EXPECT_TRUE(shows("Review Only is on"));
}

TEST_F(SettingsViewTest, startsTheProgramWithTheSession)
{
    EXPECT_TRUE(shows("The menu-bar Gruk keeps watch without the window open."));
    press("Start Gruk when you log in");
    EXPECT_TRUE(house_.startsAtLogin);
    EXPECT_TRUE(button("Start Gruk when you log in")->isChecked());
    press("Start Gruk when you log in");
    EXPECT_FALSE(house_.startsAtLogin);
    EXPECT_FALSE(button("Start Gruk when you log in")->isChecked());
}

TEST_F(SettingsViewTest, aRefusedStartWithTheSessionLeavesTheSwitchAsItWas)
{
    house_.loginItemRefusal = "read-only";
    press("Start Gruk when you log in");
    EXPECT_FALSE(house_.model->launchAtLogin());
    EXPECT_FALSE(button("Start Gruk when you log in")->isChecked());
    ASSERT_FALSE(house_.logLines.empty());
    EXPECT_TRUE(house_.logLines.back().starts_with("Gruk: failed to register launch-at-login: "));
}

TEST_F(SettingsViewTest, showsTheWalkthroughAgainTheNextTime)
{
    house_.preferences->setBoolean(SettingKeys::hasSeenWalkthrough, true);
    press("Show the walkthrough again");
    EXPECT_EQ(house_.preferences->boolean(SettingKeys::hasSeenWalkthrough), false);
}

TEST_F(SettingsViewTest, saysWhenTheWalkthroughComesOnceItWasAskedFor)
{
    constexpr const char* note = "It opens the next time the main window appears.";
    house_.preferences->setBoolean(SettingKeys::hasSeenWalkthrough, true);
    view_->hide();
    view_->show();
    EXPECT_FALSE(shows(note));
    QAbstractButton* again = button("Show the walkthrough again");
    again->setFocus();
    press("Show the walkthrough again");
    EXPECT_TRUE(shows(note));
    EXPECT_EQ(again->accessibleDescription(), QString::fromLatin1(note));
    EXPECT_EQ(view_->focusWidget(), again);
    view_->hide();
    house_.preferences->setBoolean(SettingKeys::hasSeenWalkthrough, true);
    view_->show();
    EXPECT_FALSE(shows(note)) << "it has been seen again";
}

TEST_F(SettingsViewTest, choosesTheSchemeAtOnceAndKeepsIt)
{
    EXPECT_TRUE(shows("Appearance"));
    EXPECT_TRUE(button("System")->isChecked());
    press("Dark");
    EXPECT_EQ(theme_.scheme(), ColourScheme::dark);
    EXPECT_EQ(house_.preferences->text(SettingKeys::appTheme), "dark");
    EXPECT_EQ(view_->palette().color(QPalette::Window), theme_.colour(Role::paper));
    press("Light");
    EXPECT_EQ(theme_.scheme(), ColourScheme::light);
    EXPECT_EQ(house_.preferences->text(SettingKeys::appTheme), "light");
    press("System");
    EXPECT_EQ(house_.preferences->text(SettingKeys::appTheme), "system");
}

TEST_F(SettingsViewTest, choosesThePaletteAtOnceAndKeepsIt)
{
    EXPECT_TRUE(shows("Colours"));
    EXPECT_TRUE(shows("Pick the Gruk's colours. Every shield repaints to match — nothing about a "
                      "realm's identity changes, just what its colours mean right now."));
    EXPECT_TRUE(button("Woodland")->isChecked());
    const std::pair<const char*, const char*> names[] = {
        {"Ember", "ember"}, {"Tide", "tide"}, {"Dusk", "dusk"}, {"Woodland", "woodland"}};
    for (const auto& [label, raw] : names) {
        press(label);
        EXPECT_EQ(house_.preferences->text(SettingKeys::paletteTheme), raw);
        EXPECT_EQ(rawName(theme_.paletteTheme()), raw);
    }
}

TEST_F(SettingsViewTest, changingThePaletteLeavesEveryRealmIdentityEqualToWhatItWas)
{
    RealmIdentity painted = RealmIdentity::derive("/realms/painted");
    painted.primary = painted.primary == Tincture::red ? Tincture::blue : Tincture::red;
    house_.model->saveShield(painted, "/realms/painted");
    const RealmIdentityStore& store = house_.model->realmIdentityStore();
    const RealmIdentity derived = store.identity("/realms/derived");
    const auto bytes = [&store] {
        std::ifstream file(store.fileURL().path(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string before = bytes();
    ASSERT_FALSE(before.empty());
    for (const char* palette : {"Ember", "Tide", "Dusk", "Woodland"}) {
        press(palette);
        EXPECT_EQ(store.identity("/realms/painted"), painted);
        EXPECT_EQ(store.identity("/realms/derived"), derived);
        EXPECT_EQ(bytes(), before);
    }
}

TEST_F(SettingsViewTest, showsWhatAnotherWindowChose)
{
    theme_.setPaletteTheme(AppPaletteTheme::tide);
    theme_.setAppTheme(AppTheme::dark);
    EXPECT_TRUE(button("Tide")->isChecked());
    EXPECT_TRUE(button("Dark")->isChecked());
    house_.model->setReviewOnly(false);
    EXPECT_TRUE(shows("Trash actions enabled"));
}

TEST_F(SettingsViewTest, saysUnderAutomationsWhereTheyAre)
{
    view_->findChild<QTabBar*>()->setCurrentIndex(1);
    test::ThemeWindow::rest();
    EXPECT_TRUE(shows("The Gruk patrols on its own. You were never going to remember — that's "
                      "fine, that's the point."));
    EXPECT_TRUE(shows("Automations live with each realm now — open a realm and look under its "
                      "Automations disclosure."));
    EXPECT_TRUE(shows("Automatic patrols run while Gruk or its menu-bar Gruk is open. Nothing "
                      "runs behind your back."));
    EXPECT_FALSE(shows("Appearance"));
}

TEST_F(SettingsViewTest, closesByEscapeAndByTheWindowsKey)
{
    QTest::keyClick(view_->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(view_->isVisible());
    view_->show();
    QApplication::setActiveWindow(view_.get());
    test::ThemeWindow::rest();
    QTest::keyClick(view_->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(view_->isVisible());
}

TEST_F(SettingsViewTest, everyControlHasANameAndTheKeyboardReachesIt)
{
    EXPECT_EQ(test::namelessControls(*view_), QStringList());
    QSet<QWidget*> reached;
    for (int press = 0; press < 20; ++press) {
        QTest::keyClick(view_->windowHandle(), Qt::Key_Tab);
        reached.insert(view_->focusWidget());
    }
    for (const char* text : {"Enable Trash actions…", "Start Gruk when you log in",
                             "Show the walkthrough again", "System", "Woodland"}) {
        EXPECT_TRUE(reached.contains(button(text))) << text;
    }
    EXPECT_TRUE(reached.contains(view_->findChild<QTabBar*>()));
}

}  // namespace gruk
