#include <vector>

#include <QAbstractAnimation>
#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/browse_table.h"
#include "app/screens/finding_row.h"
#include "app/screens/findings_list.h"
#include "app/screens/icon_button.h"
#include "app/screens/realm_row.h"
#include "app/screens/status_banner.h"
#include "app/screens/walkthrough_view.h"
#include "app/theme/segmented_control.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::AccessibleThing;
using test::ScreenHouse;
using test::thingNamed;

/// The names of the notifications that came into view since it was made: at that moment the toolkit
/// tells assistive technology of them. (Without a display it tells nobody.)
class Told : public QObject {
public:
    Told() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && watched->isWidgetType()) {
            QAccessibleInterface* shown = QAccessible::queryAccessibleInterface(watched);
            if (shown != nullptr && shown->role() == QAccessible::Notification) {
                names.append(shown->text(QAccessible::Name));
            }
        }
        return false;
    }

    QStringList names;
};

void makeFindings(ScreenHouse& house)
{
    house.directory.file("Home/a/report.pdf", 40'960);
    house.directory.file("Home/a/report (1).pdf", 40'960);
    house.makePatrolledRealm("Home");
}

FindingRow& firstRow(ScreenHouse& house)
{
    return *house.window->findChildren<FindingRow*>().constFirst();
}

}  // namespace

TEST(Accessibility, theWindowIsAWindowWithItsTitle)
{
    ScreenHouse house;
    EXPECT_EQ(thingNamed(*house.window, QStringLiteral("Gruk")).role, QAccessible::Window);
}

TEST(Accessibility, titlesAreHeadings)
{
    ScreenHouse house;
    for (const char* title : {"KNOW WHAT GREW.", "Realms"}) {
        EXPECT_NO_THROW(static_cast<void>(
            thingNamed(*house.window, QString::fromUtf8(title), QAccessible::Heading)))
            << title;
    }
    makeFindings(house);
    for (const char* title : {"Home", "Worth a look", "The big stuff"}) {
        EXPECT_NO_THROW(static_cast<void>(
            thingNamed(*house.window, QString::fromUtf8(title), QAccessible::Heading)))
            << title;
    }
}

TEST(Accessibility, aTooltipIsReadWithoutItsMarkup)
{
    Theme theme;
    IconButton button(theme, Icon::gear, QStringLiteral("Fish & <chips>"));
    EXPECT_NE(button.toolTip(), QStringLiteral("Fish & <chips>"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Description),
              QStringLiteral("Fish & <chips>"));
}

TEST(Accessibility, aRealmInTheSidebarIsCalledByItsNameAndDescribedByItsPath)
{
    ScreenHouse house;
    const FileURL home = house.makeRealm("Home");
    house.settle();
    const AccessibleThing row =
        thingNamed(*house.window, QStringLiteral("Home"), QAccessible::Button);
    EXPECT_EQ(row.description,
              QStringLiteral("Selected, %1").arg(QString::fromStdString(home.path())));
    house.model->showTerritories();
    house.settle();
    EXPECT_EQ(thingNamed(*house.window, QStringLiteral("Home"), QAccessible::Button).description,
              QString::fromStdString(home.path()));
}

TEST(Accessibility, aDisclosureSaysWhetherItIsOpenAndOpensByAPress)
{
    ScreenHouse house;
    makeFindings(house);
    DisclosureButton* button = firstRow(house).disclosure();
    QAccessibleInterface* told = QAccessible::queryAccessibleInterface(button);
    EXPECT_EQ(told->role(), QAccessible::Button);
    EXPECT_TRUE(told->state().expandable && told->state().collapsed);
    EXPECT_EQ(told->text(QAccessible::Name), QStringLiteral("Why the Gruk flagged this"));
    told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(button->isOpen());
    EXPECT_TRUE(told->state().expandable && told->state().expanded && !told->state().collapsed);
    EXPECT_EQ(told->text(QAccessible::Name), QStringLiteral("Hide why"));
}

TEST(Accessibility, whatADisclosureOpensIsReadOut)
{
    ScreenHouse house;
    makeFindings(house);
    const Told told;
    firstRow(house).disclosure()->click();
    house.repaint();
    EXPECT_EQ(told.names, QStringList{QStringLiteral("Why the Gruk flagged this")});
}

TEST(Accessibility, findingsAreAListThatSaysHowManyThereAre)
{
    ScreenHouse house;
    makeFindings(house);
    EXPECT_NO_THROW(static_cast<void>(
        thingNamed(*house.window, QStringLiteral("Findings, 1 in all"), QAccessible::List)));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&firstRow(house))->role(),
              QAccessible::ListItem);
}

TEST(Accessibility, whereOneComesToAFindingFirstItIsDescribedWhole)
{
    ScreenHouse house;
    makeFindings(house);
    const FindingRow& row = firstRow(house);
    const QString path = QString::fromStdString(house.directory.path("Home/a/report (1).pdf"));
    EXPECT_EQ(row.disclosure()->accessibleDescription(),
              QStringLiteral("report (1).pdf, 41 KB, Likely duplicate, %1").arg(path));
    for (const QWidget* control : row.controls()) {
        EXPECT_TRUE(control->accessibleDescription().endsWith(path));
    }
}

TEST(Accessibility, theFindingsOutOfViewAreReadyForTheKeyboard)
{
    Theme theme;
    FindingsList list(theme);
    std::vector<ReviewFinding> findings(50);
    for (std::size_t index = 0; index < findings.size(); ++index) {
        findings[index].id = std::to_string(index);
        findings[index].url = FileURL("/realm/" + findings[index].id);
    }
    (void)list.setFindings(std::make_shared<const std::vector<ReviewFinding>>(findings));
    list.showWithin(-2'000, -1'000);
    ASSERT_FALSE(list.shownURLs().empty());
    EXPECT_EQ(list.shownURLs().front(), findings.front().url);
    list.showWithin(100'000, 101'000);
    ASSERT_FALSE(list.shownURLs().empty());
    EXPECT_EQ(list.shownURLs().back(), findings.back().url);
}

TEST(Accessibility, aMessageIsReadWhenItComes)
{
    Theme theme;
    StatusBanner banner(theme, Role::blue, Icon::check);
    const Told told;
    banner.setMessage(QStringLiteral("Done."));
    banner.setMessage(QStringLiteral("Done."));
    EXPECT_EQ(told.names, QStringList{QStringLiteral("Done.")});
    banner.setMessage(QString());
    banner.setMessage(QStringLiteral("Undone."));
    EXPECT_EQ(told.names, (QStringList{QStringLiteral("Done."), QStringLiteral("Undone.")}));
}

TEST(Accessibility, thatAPatrolRunsIsRead)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.settle();
    const Told told;
    house.model->patrolActiveRealm();
    house.repaint();
    EXPECT_EQ(told.names, QStringList{QStringLiteral("Patrolling…")});
    house.settle();
}

TEST(Accessibility, eachPageOfTheWalkthroughIsReadOnceAsItComes)
{
    ScreenHouse house;
    house.theme.setReducedMotion(false);
    house.window->showWalkthrough();
    auto* walkthrough = house.window->findChild<WalkthroughView*>();
    auto* turn = walkthrough->findChild<QAbstractAnimation*>();
    const Told told;
    QStringList expected;
    for (int page = 1; page < static_cast<int>(WalkthroughView::pages().size()); ++page) {
        walkthrough->setPage(page);
        turn->setCurrentTime(turn->duration() / 2);
        turn->setCurrentTime(turn->duration());
        expected.append(WalkthroughView::pages()[static_cast<std::size_t>(page)].heading);
    }
    EXPECT_EQ(told.names, expected);
}

TEST(Accessibility, anEmptyFolderSaysSoInTheTable)
{
    ScreenHouse house;
    house.directory.folder("Home/empty");
    house.makeRealm("Home");
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    const auto* table = house.window->findChild<BrowseTable*>();
    EXPECT_EQ(table->accessibleDescription(), QString());
    house.model->session().open(FileURL::directory(house.directory.path("Home/empty")));
    house.settle();
    EXPECT_EQ(table->accessibleDescription(),
              QStringLiteral("Nothing in here. The Gruk looked twice."));
}

}  // namespace gruk
