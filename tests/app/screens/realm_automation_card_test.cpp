#include "app/screens/realm_automation_card.h"

#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/filing_rule_row.h"
#include "tests/support/screen_house.h"
#include "tests/support/tab_stops.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::ScreenHouse;
using test::wordsIn;

const QString guardLine = QStringLiteral(
    "The Gruk asks the system to tell it the moment anything changes here, then patrols once "
    "things go quiet — usually within a couple of minutes. No constant scanning, and nothing extra "
    "sitting in memory: it's a standing order with the system, not a clock.");
const QString fullLine = QStringLiteral("This realm has 20 filing rules, which is as many as a "
                                        "realm can have. Remove one to make room.");

class AutomationCard : public testing::Test {
protected:
    AutomationCard()
    {
        house.settle();
        card.show();
        house.repaint();
    }

    [[nodiscard]] QComboBox& picker(const char* name) const
    {
        for (QComboBox* each : card.findChildren<QComboBox*>()) {
            if (each->accessibleName() == QLatin1String(name)) {
                return *each;
            }
        }
        throw std::runtime_error("no such picker");
    }
    [[nodiscard]] QAbstractButton* button(const char* text) const
    {
        return buttonIn(card, QString::fromUtf8(text));
    }
    [[nodiscard]] QLineEdit& field() const { return *card.findChildren<QLineEdit*>().constFirst(); }
    [[nodiscard]] bool says(const QString& text) const { return wordsIn(card).contains(text); }
    void openRules()
    {
        button("Filing rules")->click();
        house.repaint();
    }
    void add(FileKind kind, const QString& folder)
    {
        picker("Kind").setCurrentText(kind == FileKind::image ? QStringLiteral("Image")
                                                              : QStringLiteral("PDF"));
        field().setText(folder);
        button("Add rule")->click();
        house.repaint();
    }
    void choose(int cadence)
    {
        picker("Cadence").setFocus();
        picker("Cadence").setCurrentIndex(cadence);
        Q_EMIT picker("Cadence").activated(cadence);
        house.repaint();
    }

    ScreenHouse house;
    FileURL realm = house.makeRealm("Home");
    Grant grant = house.grantOf(realm);
    RealmAutomationCard card{*house.model, house.theme, grant};
};

}  // namespace

TEST_F(AutomationCard, offersTheCadencesAndShowsTheOneThatHolds)
{
    QStringList labels;
    for (int i = 0; i < picker("Cadence").count(); ++i) {
        labels.append(picker("Cadence").itemText(i));
    }
    EXPECT_EQ(labels, (QStringList{QStringLiteral("Off"), QStringLiteral("Daily"),
                                   QStringLiteral("Weekly"), QStringLiteral("Stand Guard")}));
    EXPECT_EQ(picker("Cadence").currentText(), QStringLiteral("Off"));
    house.model->setCadence(PatrolCadence::weekly, grant);
    house.repaint();
    EXPECT_EQ(picker("Cadence").currentText(), QStringLiteral("Weekly"));
    EXPECT_TRUE(says(QStringLiteral("Cadence")));
    EXPECT_EQ(test::namelessControls(card), QStringList());
}

TEST_F(AutomationCard, aCadenceChangeIsReflectedAtOnceByTheTerritoriesAndTheWatcher)
{
    house.model->showTerritories();
    house.settle();
    ASSERT_FALSE(house.model->territoriesAreStale());
    choose(3);
    EXPECT_EQ(house.model->cadence(grant), PatrolCadence::standGuard);
    EXPECT_TRUE(house.model->territoriesAreStale());
    EXPECT_EQ(house.streams.count(grant.path), 1U);
    choose(1);
    EXPECT_EQ(house.model->cadence(grant), PatrolCadence::daily);
    EXPECT_EQ(house.streams.count(grant.path), 0U);
}

TEST_F(AutomationCard, aCadenceThatIsRefusedIsNotShown)
{
    house.model->removeRealm(grant);
    choose(3);
    EXPECT_EQ(picker("Cadence").currentText(), QStringLiteral("Off"));
    EXPECT_FALSE(says(guardLine));
}

TEST_F(AutomationCard, standGuardSaysHowItListens)
{
    EXPECT_FALSE(says(guardLine));
    choose(3);
    EXPECT_TRUE(says(guardLine));
    choose(0);
    EXPECT_FALSE(says(guardLine));
}

TEST_F(AutomationCard, theRulesOpenAndClose)
{
    const QString line = QStringLiteral(
        "Tell the Gruk where things go, once. Screenshots into Screenshots, installers into "
        "Installers — set it and forget it. Forgetting is the feature.");
    EXPECT_FALSE(says(line));
    openRules();
    EXPECT_TRUE(says(line));
    EXPECT_TRUE(says(QStringLiteral("Also file right after each patrol")));
    EXPECT_EQ(field().placeholderText(), QStringLiteral("Folder name"));
    EXPECT_EQ(test::namelessControls(card), QStringList());
    openRules();
    EXPECT_FALSE(says(line));
}

TEST_F(AutomationCard, everyKindButFoldersCanHaveARule)
{
    QStringList kinds;
    for (int i = 0; i < picker("Kind").count(); ++i) {
        kinds.append(picker("Kind").itemText(i));
    }
    EXPECT_EQ(kinds.join(QLatin1Char(' ')),
              QStringLiteral("Screenshot Image Video Audio PDF Archive Installer Document "
                             "Application Other"));
}

TEST_F(AutomationCard, addsARuleWithItsNameTrimmed)
{
    openRules();
    button("Also file right after each patrol")->click();
    add(FileKind::pdf, QStringLiteral("  Papers "));
    const std::vector<RealmRule> rules = house.model->realmRules(realm);
    ASSERT_EQ(rules.size(), 1U);
    EXPECT_EQ(rules[0].kind, FileKind::pdf);
    EXPECT_EQ(rules[0].destinationFolderName, "Papers");
    EXPECT_TRUE(rules[0].applyAfterPatrol);
    for (const char* text : {"PDF", "Papers", "After patrol"}) {
        EXPECT_TRUE(says(QString::fromLatin1(text))) << text;
    }
    EXPECT_TRUE(field().text().isEmpty());
    EXPECT_EQ(test::namelessControls(card), QStringList());
}

TEST_F(AutomationCard, aRuleThatOnlyNamesAFolderHasNoTag)
{
    openRules();
    add(FileKind::image, QStringLiteral("Pictures"));
    EXPECT_TRUE(says(QStringLiteral("Pictures")));
    EXPECT_FALSE(says(QStringLiteral("After patrol")));
}

TEST_F(AutomationCard, returnInTheFieldAddsARule)
{
    openRules();
    field().setText(QStringLiteral("Pictures"));
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(house.model->realmRules(realm).size(), 1U);
}

TEST_F(AutomationCard, aNameThatNoFolderCanHaveIsRefusedWithAWordWhy)
{
    openRules();
    for (const auto& [name, why] :
         {std::pair("  ", "A folder needs a name."),
          std::pair("a/b", "A folder's name can't have a “/” in it."),
          std::pair(".a", "A name that begins with “.” would hide the folder.")}) {
        add(FileKind::image, QString::fromLatin1(name));
        EXPECT_TRUE(says(QString::fromUtf8(why))) << why;
        EXPECT_TRUE(house.model->realmRules(realm).empty());
    }
    field().setText(QStringLiteral("Pictures"));
    EXPECT_FALSE(says(QStringLiteral("A name that begins with “.” would hide the folder.")));
}

TEST_F(AutomationCard, removesTheRuleWhoseButtonWasPressed)
{
    openRules();
    add(FileKind::image, QStringLiteral("First"));
    add(FileKind::image, QStringLiteral("Second"));
    add(FileKind::pdf, QStringLiteral("Third"));
    const auto rows = card.findChildren<FilingRuleRow*>();
    EXPECT_EQ(rows[1]->removal()->accessibleName(),
              QStringLiteral("Remove filing rule for image files"));
    EXPECT_TRUE(rows[1]->removal()->toolTip().contains(rows[1]->removal()->accessibleName()));
    rows[1]->removal()->click();
    house.repaint();
    const std::vector<RealmRule> rules = house.model->realmRules(realm);
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules[0].destinationFolderName, "First");
    EXPECT_EQ(rules[1].destinationFolderName, "Third");
    EXPECT_FALSE(says(QStringLiteral("Second")));
}

TEST_F(AutomationCard, holdingReturnOnARemovalTakesOneRuleAway)
{
    openRules();
    for (const char* folder : {"First", "Second", "Third"}) {
        add(FileKind::image, QString::fromLatin1(folder));
    }
    card.findChildren<FilingRuleRow*>().constFirst()->removal()->setFocus(Qt::TabFocusReason);
    QTest::keyPress(card.focusWidget(), Qt::Key_Return);
    for (int repeat = 0; repeat < 10; ++repeat) {
        house.repaint();
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(card.focusWidget(), &again);
    }
    EXPECT_EQ(house.model->realmRules(realm).size(), 2U);
}

TEST_F(AutomationCard, rulesThatWereRemovedArePutBackWhereTheyStood)
{
    openRules();
    add(FileKind::image, QStringLiteral("First"));
    add(FileKind::pdf, QStringLiteral("Second"));
    add(FileKind::image, QStringLiteral("Third"));
    const std::vector<RealmRule> before = house.model->realmRules(realm);
    EXPECT_EQ(button("Undo"), nullptr);
    card.findChildren<FilingRuleRow*>().at(1)->removal()->click();
    house.repaint();
    EXPECT_TRUE(says(QStringLiteral("Removed: PDF files to Second")));
    EXPECT_EQ(button("Undo")->accessibleDescription(),
              QStringLiteral("Removed: PDF files to Second"));
    card.findChildren<FilingRuleRow*>().constFirst()->removal()->click();
    house.repaint();
    EXPECT_TRUE(says(QStringLiteral("Removed: image files to First")));
    ASSERT_EQ(house.model->realmRules(realm).size(), 1U);
    button("Undo")->click();
    button("Undo")->click();
    house.repaint();
    EXPECT_EQ(house.model->realmRules(realm), before);
    EXPECT_EQ(button("Undo"), nullptr);
    EXPECT_EQ(card.focusWidget(), card.findChildren<FilingRuleRow*>().at(1)->removal());
}

TEST_F(AutomationCard, atTwentyRulesTheFormSaysThatTheLimitIsReached)
{
    openRules();
    for (int i = 0; i < 19; ++i) {
        house.model->addRealmRule(FileKind::pdf, "Papers", false, realm);
    }
    add(FileKind::image, QStringLiteral("The last"));
    EXPECT_EQ(house.model->realmRules(realm).size(), 20U);
    EXPECT_TRUE(says(fullLine));
    EXPECT_EQ(button("Add rule"), nullptr);
    card.findChildren<FilingRuleRow*>().constFirst()->removal()->click();
    house.repaint();
    EXPECT_FALSE(says(fullLine));
    EXPECT_NE(button("Add rule"), nullptr);
}

TEST_F(AutomationCard, afterTheTwentiethRuleTheFocusIsOnIt)
{
    openRules();
    for (int i = 0; i < 19; ++i) {
        house.model->addRealmRule(FileKind::pdf, "Papers", false, realm);
    }
    field().setFocus();
    field().setText(QStringLiteral("The last"));
    QTest::keyClick(&field(), Qt::Key_Return);
    house.repaint();
    ASSERT_TRUE(says(fullLine));
    EXPECT_EQ(card.focusWidget(), card.findChildren<FilingRuleRow*>().constLast()->removal())
        << "and not on the cadence, which a stray arrow key would change";
}

TEST_F(AutomationCard, tabGoesThroughTheCardAsItStandsOnTheScreen)
{
    openRules();
    const QStringList before = {QStringLiteral("Cadence"), QStringLiteral("Filing rules")};
    const QString image = QStringLiteral("Remove filing rule for image files");
    const QString pdf = QStringLiteral("Remove filing rule for PDF files");
    const QStringList after = {QStringLiteral("Kind"), QStringLiteral("Folder name"),
                               QStringLiteral("Add rule"),
                               QStringLiteral("Also file right after each patrol")};
    EXPECT_EQ(test::tabStopsIn(card), before + after);
    add(FileKind::image, QStringLiteral("Pictures"));
    add(FileKind::pdf, QStringLiteral("Papers"));
    EXPECT_EQ(test::tabStopsIn(card), before + QStringList({image, pdf}) + after);
    card.findChildren<FilingRuleRow*>().constFirst()->removal()->click();
    house.repaint();
    EXPECT_EQ(test::tabStopsIn(card), before + QStringList({pdf, QStringLiteral("Undo")}) + after);
}

TEST_F(AutomationCard, rulesOfARealmThatWasGrantedWithALongWayStandUnderItsPath)
{
    house.directory.folder("Home/sub");
    Grant around = grant;
    around.path = realm.path() + "/sub/..";
    house.model->addRealmRule(FileKind::pdf, "Papers", false, realm);
    RealmAutomationCard same(*house.model, house.theme, around);
    same.show();
    buttonIn(same, QStringLiteral("Filing rules"))->click();
    EXPECT_TRUE(wordsIn(same).contains(QStringLiteral("Papers")));
}

}  // namespace gruk
