#include "app/screens/file_table_view.h"

#include <filesystem>

#include <sys/fsuid.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_table.h"
#include "app/theme/text_field.h"
#include "tests/support/browse_house.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::BrowseHouse;
constexpr std::size_t block = BrowseHouse::block;

QStringList list(std::initializer_list<const char*> texts)
{
    QStringList result;
    for (const char* text : texts) {
        result.append(QString::fromUtf8(text));
    }
    return result;
}

/// What a widget paints of itself.
class PaintedRegion : public QObject {
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }

    void forget() { region_ = {}; }
    [[nodiscard]] const QRegion& region() const { return region_; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            region_ += static_cast<QPaintEvent*>(event)->region();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QRegion region_;
};

}  // namespace

TEST(FileTableView, withNoActiveRealmTheBarSaysNoLocationSelectedAndTheTableIsEmpty)
{
    BrowseHouse house;
    house.model->showTerritories();
    house.rest();
    EXPECT_EQ(house.names(), QStringList());
    EXPECT_EQ(house.crumbs(), QStringList());
    QStringList visible;
    for (const QLabel* label : house.page->findChild<BreadcrumbBar*>()->findChildren<QLabel*>()) {
        if (label->isVisible()) {
            visible.append(label->text());
        }
    }
    EXPECT_EQ(visible, list({"No location selected"}));
}

TEST(FileTableView, showsTheFolderOfTheSessionLargestFirst)
{
    const BrowseHouse house;
    EXPECT_EQ(house.names(), list({"large", "notes.txt", "small", "empty"}));
    EXPECT_EQ(house.crumbs(), list({"Forest"}));
    EXPECT_EQ(house.label("browseFooter"),
              QStringLiteral("4 items · 49 KB scanned · 0 restricted"));
}

TEST(FileTableView, theFooterCountsTheWholeFolderWhateverTheFilterShows)
{
    BrowseHouse house;
    house.page->findChild<TextField*>()->setText(QStringLiteral("small"));
    house.rest();
    EXPECT_EQ(house.names(), list({"small"}));
    EXPECT_EQ(house.label("browseFooter"),
              QStringLiteral("4 items · 49 KB scanned · 0 restricted"));
}

TEST(FileTableView, theFooterGrowsWhileSizesArrive)
{
    BrowseHouse house;
    house.model->session().reset();
    house.settle();
    house.model->session().open(house.root());
    EXPECT_EQ(house.label("browseFooter"), QStringLiteral("4 items · 8 KB scanned · 0 restricted"));
    house.rest();
    EXPECT_EQ(house.label("browseFooter"),
              QStringLiteral("4 items · 49 KB scanned · 0 restricted"));
}

TEST(FileTableView, doubleClickOpensAFolderThroughTheSession)
{
    BrowseHouse house;
    house.doubleClick("large");
    EXPECT_EQ(house.folder(), house.place("large"));
    EXPECT_EQ(house.names(), list({"inner"}));
    EXPECT_EQ(house.crumbs(), list({"Forest", "large"}));
}

TEST(FileTableView, doubleClickRevealsAFileAndOpensNothing)
{
    BrowseHouse house;
    house.doubleClick("notes.txt");
    EXPECT_EQ(house.folder(), house.root());
    ASSERT_EQ(house.revealed.size(), 1U);
    EXPECT_EQ(house.revealed.front().front().path(), house.directory.path("Forest/notes.txt"));
}

TEST(FileTableView, returnAndRightOpenTheFolderOfTheRow)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Right}) {
        BrowseHouse house;
        house.choose("small");
        house.press(key);
        EXPECT_EQ(house.folder(), house.place("small")) << key;
    }
}

TEST(FileTableView, rightOnAFileDoesNothing)
{
    BrowseHouse house;
    house.choose("notes.txt");
    house.press(Qt::Key_Right);
    EXPECT_EQ(house.folder(), house.root());
    EXPECT_TRUE(house.revealed.empty());
}

TEST(FileTableView, theArrowKeysGoThroughTheRows)
{
    BrowseHouse house;
    house.choose("large");
    house.press(Qt::Key_Down);
    house.press(Qt::Key_Down);
    ASSERT_EQ(house.page->selection().size(), 1U);
    EXPECT_EQ(house.page->selection().front(), house.place("small"));
}

TEST(FileTableView, altLeftAndTheBackButtonGoToTheFolderThatWasLeftLast)
{
    BrowseHouse house;
    house.model->session().open(house.place("large/inner"));
    house.model->session().open(house.place("small"));
    house.table().setFocus();
    house.press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(house.folder(), house.place("large/inner"));
    house.pressBackButton();
    EXPECT_EQ(house.folder(), house.root());
    house.pressBackButton();
    EXPECT_EQ(house.folder(), house.root());
}

TEST(FileTableView, theBackButtonPressedTwiceQuicklyGoesBackTwice)
{
    BrowseHouse house;
    house.model->session().open(house.place("large"));
    house.model->session().open(house.place("small"));
    house.pressBackButton();
    QTest::mouseDClick(house.table().viewport(), Qt::BackButton, Qt::NoModifier, QPoint(20, 20));
    // Which the double click leaves down, for every test after this one.
    QTest::mouseRelease(house.table().viewport(), Qt::BackButton, Qt::NoModifier, QPoint(20, 20));
    EXPECT_EQ(house.folder(), house.root());
}

TEST(FileTableView, backDoesNotLeaveTheRealm)
{
    BrowseHouse house;
    house.directory.file("Other/a", block);
    const FileURL other = FileURL::directory(house.directory.path("Other"));
    house.select(other);
    // A visit outside the realm, for the session to remember.
    house.model->session().open(house.root());
    house.model->session().open(other);
    ASSERT_FALSE(house.model->session().breadcrumbs().empty());
    house.rest();
    house.pressBackButton();
    EXPECT_EQ(house.folder(), other);
}

TEST(FileTableView, backspaceLeftAndAltUpGoToTheFolderAboveAndNotOutOfTheRealm)
{
    const std::pair<Qt::Key, Qt::KeyboardModifiers> keys[] = {
        {Qt::Key_Backspace, Qt::NoModifier},
        {Qt::Key_Left, Qt::NoModifier},
        {Qt::Key_Up, Qt::AltModifier},
    };
    for (const auto& [key, modifiers] : keys) {
        BrowseHouse house;
        house.model->session().open(house.place("large/inner"));
        house.table().setFocus();
        house.press(key, modifiers);
        EXPECT_EQ(house.folder(), house.place("large")) << key;
        EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("large/inner")});
        house.press(key, modifiers);
        house.press(key, modifiers);
        EXPECT_EQ(house.folder(), house.root()) << key;
        EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("large")});
    }
}

TEST(FileTableView, aCrumbGoesToItsFolder)
{
    BrowseHouse house;
    house.model->session().open(house.place("large/inner"));
    house.rest();
    EXPECT_EQ(house.crumbs(), list({"Forest", "large", "inner"}));
    house.page->findChild<BreadcrumbBar*>()->crumbs()[1]->click();
    house.rest();
    EXPECT_EQ(house.folder(), house.place("large"));
    EXPECT_EQ(house.crumbs(), list({"Forest", "large"}));
    // The last one is the folder itself, which is listed afresh.
    house.directory.file("Forest/large/new", block);
    house.page->findChild<BreadcrumbBar*>()->crumbs()[1]->click();
    house.rest();
    EXPECT_EQ(house.names(), list({"inner", "new"}));
}

TEST(FileTableView, tabReachesEveryCrumbOfAPathThatIsFoldedTogether)
{
    BrowseHouse house;
    std::string deep = "large";
    for (int i = 0; i < 9; ++i) {
        deep += "/a folder with a long name " + std::to_string(i);
    }
    house.directory.folder("Forest/" + deep);
    house.model->session().open(house.place(deep));
    house.page->activateWindow();
    house.rest();
    const std::vector<Crumb*>& crumbs = house.page->findChild<BreadcrumbBar*>()->crumbs();
    ASSERT_EQ(crumbs.size(), 11U);
    EXPECT_EQ(crumbs[3]->width(), 0);
    crumbs.front()->setFocus(Qt::TabFocusReason);
    for (std::size_t i = 0; i < crumbs.size(); ++i) {
        ASSERT_EQ(QApplication::focusWidget(), crumbs[i]) << i;
        EXPECT_GT(crumbs[i]->width(), 0) << i;
        QTest::keyClick(crumbs[i], Qt::Key_Tab);
    }
    EXPECT_EQ(QApplication::focusWidget(), house.page->findChild<TextField*>());
}

TEST(FileTableView, foldedCrumbsOpenInAMenu)
{
    BrowseHouse house;
    const std::string deep = "large/aaaaaaaaaaaaaaaaaaaaaaaaaaaa/bbbbbbbbbbbbbbbbbbbbbbbbbbbbbb/"
                             "cccccccccccccccccccccccccccccccccccc/dddddddddddddddddddddddddddd";
    house.directory.folder("Forest/" + deep);
    house.model->session().open(house.place(deep));
    house.rest();
    QAbstractButton* fold = nullptr;
    for (auto* button : house.page->findChild<BreadcrumbBar*>()->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->text() == QStringLiteral("…")) {
            fold = button;
        }
    }
    ASSERT_NE(fold, nullptr);
    fold->click();
    auto* menu = house.page->findChild<BreadcrumbBar*>()->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->actions().constFirst()->text(), QStringLiteral("large"));
    menu->actions().constFirst()->trigger();
    house.rest();
    EXPECT_EQ(house.folder(), house.place("large"));
}

TEST(FileTableView, theMenuOfTheSelectionRevealsIt)
{
    BrowseHouse house;
    house.table().select({house.place("large"), house.place("notes.txt")}, house.place("large"));
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
    QCoreApplication::sendEvent(house.table().viewport(), &event);
    auto* menu = house.page->findChild<QMenu*>(QStringLiteral("browseMenu"));
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions().constFirst()->text(), QStringLiteral("Reveal in file manager"));
    menu->actions().constFirst()->trigger();
    ASSERT_EQ(house.revealed.size(), 1U);
    EXPECT_EQ(house.revealed.front(), house.page->selection());
    EXPECT_EQ(house.revealed.front().size(), 2U);
}

TEST(FileTableView, withoutASelectionThereIsNoMenu)
{
    BrowseHouse house;
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 400), QPoint(5, 400));
    QCoreApplication::sendEvent(house.table().viewport(), &event);
    EXPECT_EQ(house.page->findChild<QMenu*>(QStringLiteral("browseMenu")), nullptr);
}

TEST(FileTableView, theHeadOfAColumnSetsTheOrderOfTheSession)
{
    BrowseHouse house;
    const auto& buttons = house.table().browseHeader().buttons();
    ASSERT_EQ(buttons.size(), 2U);
    EXPECT_EQ(buttons[0]->accessibleName(), QStringLiteral("Sort by Name"));
    EXPECT_EQ(buttons[1]->accessibleName(), QStringLiteral("Sort by Size"));
    buttons[1]->click();
    EXPECT_EQ(house.model->session().sortOrder(), SortOrder::sizeAscending);
    buttons[0]->click();
    EXPECT_EQ(house.model->session().sortOrder(), SortOrder::name);
    EXPECT_EQ(house.names(), list({"empty", "large", "notes.txt", "small"}));
    QTest::keyClick(buttons[1], Qt::Key_Return);
    EXPECT_EQ(house.model->session().sortOrder(), SortOrder::sizeDescending);
}

TEST(FileTableView, theHeadOfAColumnThatDoesNotSortLeavesTheOrderAlone)
{
    BrowseHouse house;
    BrowseHeader& header = house.table().browseHeader();
    header.buttons()[0]->click();
    ASSERT_EQ(house.model->session().sortOrder(), SortOrder::name);
    for (const auto column : {ScanNodeModel::kindColumn, ScanNodeModel::lastOpenedColumn}) {
        const int x = header.sectionViewportPosition(column) + header.sectionSize(column) / 2;
        QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(x, header.height() / 2));
        house.rest();
        EXPECT_EQ(house.model->session().sortOrder(), SortOrder::name);
        EXPECT_EQ(header.sortIndicatorSection(), ScanNodeModel::nameColumn);
    }
}

TEST(FileTableView, theBarHasTheFirstColourOfTheRealmsShieldAlsoAfterItIsRepainted)
{
    BrowseHouse house;
    auto* bar = house.page->findChild<BreadcrumbBar*>();
    const auto colour = [&house, bar] {
        house.rest();
        return bar->grab().toImage().pixelColor(1, bar->height() / 2);
    };
    RealmIdentity identity = house.model->activeRealmIdentity();
    EXPECT_EQ(colour(), house.theme.colour(roleOf(identity.primary)));
    for (const Tincture painted : {Tincture::plum, Tincture::yellow}) {
        identity.primary = painted;
        house.model->saveShield(identity, house.root().path());
        EXPECT_EQ(colour(), house.theme.colour(roleOf(painted)));
    }
}

TEST(FileTableView, aPageThatIsMadeAnewShowsTheFilterAndTheOrderOfTheSession)
{
    BrowseHouse house;
    house.model->session().setFilterText("l");
    house.model->session().setSortOrder(SortOrder::name);
    const FileTableView again(*house.model, house.theme);
    EXPECT_EQ(again.findChild<TextField*>()->text(), QStringLiteral("l"));
    EXPECT_EQ(again.findChild<BrowseTable*>()->browseHeader().sortIndicatorSection(), 0);
    EXPECT_EQ(again.findChild<BrowseTable*>()->model()->rowCount(), 2);
}

TEST(FileTableView, theFilterFieldTakesTheFocusAndEscapeEmptiesIt)
{
    BrowseHouse house;
    house.page->activateWindow();
    house.page->focusFilter();
    auto* field = house.page->findChild<TextField*>();
    EXPECT_EQ(field->placeholderText(), QStringLiteral("Filter"));
    EXPECT_TRUE(field->hasFocus());
    QTest::keyClicks(field, QStringLiteral("no such name"));
    house.rest();
    EXPECT_EQ(house.model->session().filterText(), "no such name");
    EXPECT_EQ(house.label("emptySentence"),
              QStringLiteral("Nothing here has “no such name” in its name."));
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(house.model->session().filterText(), "");
    EXPECT_EQ(house.names().size(), 4);
    EXPECT_EQ(house.label("emptySentence"), QString());
}

TEST(FileTableView, anEmptyFolderHasASentence)
{
    BrowseHouse house;
    house.model->session().open(house.place("empty"));
    house.rest();
    EXPECT_EQ(house.label("emptySentence"),
              QStringLiteral("Nothing in here. The Gruk looked twice."));
}

TEST(FileTableView, aFolderThatIsGoneHasASentence)
{
    BrowseHouse house;
    house.model->session().open(house.place("gone"));
    house.rest();
    EXPECT_EQ(house.label("emptySentence"), QStringLiteral("This folder is not here any more."));
}

TEST(FileTableView, aFolderThatCannotBeReadHasASentence)
{
    BrowseHouse house;
    house.model->session().open(house.place("notes.txt"));
    house.rest();
    EXPECT_EQ(house.label("emptySentence"), QStringLiteral("The Gruk cannot read this folder."));
}

namespace {

/// Reads the disk as an ordinary user while it lives, since root is refused nothing. This thread
/// only.
class OrdinaryEyes {
public:
    OrdinaryEyes() : former_(static_cast<uid_t>(::setfsuid(nobody))) {}
    ~OrdinaryEyes() { ::setfsuid(former_); }
    OrdinaryEyes(const OrdinaryEyes&) = delete;
    OrdinaryEyes& operator=(const OrdinaryEyes&) = delete;

private:
    static constexpr uid_t nobody = 65'534;
    uid_t former_;
};

}  // namespace

TEST(FileTableView, aFolderThatIsClosedToTheGrukHasASentenceAndIsCounted)
{
    namespace fs = std::filesystem;
    BrowseHouse house;
    const std::string closed = house.directory.folder("Forest/closed");
    fs::permissions(closed, fs::perms::none);
    fs::permissions(house.directory.path(), fs::perms(0755));
    {
        const OrdinaryEyes eyes;
        house.model->session().open(house.root());
        house.rest();
        EXPECT_EQ(house.label("browseFooter"),
                  QStringLiteral("5 items · 49 KB scanned · 1 restricted"));
        house.model->session().open(house.place("closed"));
        house.rest();
        EXPECT_EQ(house.label("emptySentence"),
                  QStringLiteral("This folder is closed to the Gruk."));
        EXPECT_EQ(house.label("browseFooter"),
                  QStringLiteral("0 items · 0 KB scanned · 1 restricted"));
    }
    fs::permissions(closed, fs::perms::owner_all);
}

TEST(FileTableView, marksTurnOnlyWhileRowsInViewAreMeasured)
{
    BrowseHouse house;
    EXPECT_FALSE(house.table().isTurning());
    house.model->session().reset();
    house.settle();
    house.model->session().open(house.root());
    house.table().viewport()->repaint();
    EXPECT_TRUE(house.table().isTurning());
    house.page->hide();
    EXPECT_FALSE(house.table().isTurning());
    house.page->show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(house.table().isTurning());
    house.rest();
    while (house.table().isTurning()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

TEST(FileTableView, marksStandStillUnderReducedMotion)
{
    BrowseHouse house;
    house.theme.setReducedMotion(true);
    house.model->session().reset();
    house.settle();
    house.model->session().open(house.root());
    house.table().viewport()->repaint();
    EXPECT_FALSE(house.table().isTurning());
}

TEST(FileTableView, ofSizesThatArriveOnlyThoseInViewArePainted)
{
    BrowseHouse house;
    for (int i = 0; i < 100; ++i) {
        house.directory.file("Forest/many/file " + std::to_string(i), block);
    }
    house.model->session().open(house.place("many"));
    house.rest();
    const ScanNodeModel& rows = *house.page->findChild<ScanNodeModel*>();
    BrowseTable& table = house.table();
    const int inView = table.indexAt(QPoint(0, table.viewport()->height() - 1)).row() + 1;
    ASSERT_GT(inView, 3);
    ASSERT_LT(inView, 50);
    PaintedRegion painted(*table.viewport());
    const auto changed = [&](int first, int last) {
        painted.forget();
        table.dataChanged(rows.index(first, ScanNodeModel::sizeColumn),
                          rows.index(last, ScanNodeModel::sizeColumn), {});
        QCoreApplication::processEvents();
        return painted.region();
    };
    EXPECT_TRUE(changed(inView, 99).isEmpty());
    const QRect third = table.visualRect(rows.index(2, ScanNodeModel::sizeColumn));
    EXPECT_EQ(changed(2, 2), QRegion(third));
    const QRegion all = changed(0, 99);
    EXPECT_TRUE(all.contains(third));
    EXPECT_TRUE(all.contains(QPoint(third.center().x(), table.viewport()->height() - 1)));
}

TEST(FileTableView, aPageThatEndsWhileItAsksIsAskedForNothing)
{
    BrowseHouse house;
    house.model->session().open(house.place("empty"));
    house.page.reset();
    house.settle();
    EXPECT_EQ(house.pool->count(), 0U);
}

TEST(FileTableView, everyControlHasAName)
{
    BrowseHouse house;
    house.model->session().open(house.place("large/inner"));
    house.rest();
    EXPECT_EQ(test::namelessControls(*house.page), QStringList());
}

}  // namespace gruk
