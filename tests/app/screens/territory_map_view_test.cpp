#include "app/screens/territory_map_view.h"

#include <cstdlib>

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "core/realm/realm_identity.h"

namespace gruk {

namespace {

RealmSummary realm(const std::string& name, Bytes bytes)
{
    RealmSummary summary;
    summary.path = "/realms/" + name;
    summary.displayName = name;
    summary.totalBytes = bytes;
    return summary;
}

const std::vector<RealmSummary> three = {realm("Forest", 734'000'000'000),
                                         realm("Letters", 42'000'000'000), realm("Old disk", 0)};

class TerritoryMapViewTest : public testing::Test {
protected:
    TerritoryMapViewTest()
    {
        view.setSummaries(three);
        view.resize(640, 640);
        other.setFocus();
        window.show();
        QApplication::setActiveWindow(&window);
        QApplication::processEvents();
        QObject::connect(&view, &TerritoryMapView::selected, &view,
                         [this](const RealmSummary& chosen) { selected.push_back(chosen.path); });
    }

    [[nodiscard]] QPointF anchorOf(std::size_t territory) const
    {
        const GridPoint& anchor = view.map().territories[territory].anchor;
        const double cell = view.land().width() / mapResolution;
        return view.land().topLeft() + QPointF(anchor.x * cell, anchor.y * cell);
    }
    [[nodiscard]] QImage picture()
    {
        QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }
    [[nodiscard]] QAccessibleInterface& accessible()
    {
        return *QAccessible::queryAccessibleInterface(&view);
    }

    Theme theme;
    QWidget window;
    /// What has the focus first.
    QPushButton other{&window};
    TerritoryMapView view{theme, &window};
    std::vector<std::string> selected;
};

}  // namespace

TEST_F(TerritoryMapViewTest, isAsLargeAsItsWidthAllowsUpTo560)
{
    EXPECT_EQ(view.land().width(), 560);
    view.resize(400, 10);
    QApplication::processEvents();
    EXPECT_LT(view.land().width(), 400);
    EXPECT_GT(view.land().width(), 340);
    EXPECT_EQ(view.land().width(), view.land().height());
    EXPECT_TRUE(QRectF(view.rect()).contains(view.land()));
    view.resize(5'000, 10);
    QApplication::processEvents();
    EXPECT_EQ(view.land().width(), 560);
}

TEST_F(TerritoryMapViewTest, thePartitionIsMadeOncePerChangeOfSummaries)
{
    const auto* owners = view.map().owners.data();
    (void)picture();
    view.resize(500, 500);
    view.setSummaries(three);
    theme.setPaletteTheme(AppPaletteTheme::tide);
    (void)picture();
    EXPECT_EQ(view.map().owners.data(), owners);
    std::vector<RealmSummary> grown = three;
    grown[2].totalBytes = 900'000'000'000;
    view.setSummaries(grown);
    EXPECT_EQ(view.map(), territoryMap(grown));
}

TEST_F(TerritoryMapViewTest, noPaintingDividesTheMap)
{
    std::vector<RealmSummary> many;
    for (int index = 0; index < 500; ++index) {
        many.push_back(realm("realm " + std::to_string(index), 1'000 * index));
    }
    QElapsedTimer clock;
    clock.start();
    const TerritoryMap divided = territoryMap(many);
    const qint64 division = clock.nsecsElapsed();
    view.setSummaries(many);
    ASSERT_EQ(view.map(), divided);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    view.render(&image);
    constexpr int paintings = 50;
    clock.restart();
    for (int painting = 0; painting < paintings; ++painting) {
        view.render(&image);
    }
    // Were the map divided each time, this would take longer than so many divisions.
    EXPECT_LT(clock.nsecsElapsed(), division * paintings / 2);
}

TEST_F(TerritoryMapViewTest, landIsPaintedWhereATapFindsIt)
{
    const QImage image = picture();
    // Beside the label.
    const QPointF letters = anchorOf(1) + QPointF(0, 30);
    EXPECT_EQ(view.territoryAtPoint(letters), 1U);
    EXPECT_EQ(image.pixelColor(letters.toPoint()),
              theme.colour(roleOf(RealmIdentity::derive(three[1].path).primary)));
    EXPECT_EQ(view.territoryAtPoint({2, 2}), std::nullopt);
    EXPECT_EQ(image.pixelColor(8, 300), theme.colour(Role::paperInset));
}

TEST_F(TerritoryMapViewTest, theCoastIsNotCutOffWhereItWobblesOutOfTheSquare)
{
    const QImage image = picture();
    const QRect square = view.land().toRect();
    int inked = 0;
    for (int y = square.top(); y < square.bottom(); ++y) {
        inked += image.pixelColor(square.left() - 1, y) != theme.colour(Role::paperInset) ? 1 : 0;
    }
    EXPECT_GT(inked, square.height() / 4);
}

TEST_F(TerritoryMapViewTest, isRepaintedByAChangeOfPalette)
{
    (void)picture();
    theme.setPaletteTheme(AppPaletteTheme::ember);
    EXPECT_EQ(picture().pixelColor((anchorOf(1) + QPointF(0, 30)).toPoint()),
              theme.colour(roleOf(RealmIdentity::derive(three[1].path).primary)));
}

TEST_F(TerritoryMapViewTest, aTapSelectsTheRealmUnderIt)
{
    QTest::mouseClick(&view, Qt::LeftButton, {}, anchorOf(1).toPoint());
    EXPECT_EQ(selected, std::vector<std::string>{"/realms/Letters"});
    QTest::mouseClick(&view, Qt::LeftButton, {}, QPoint(2, 2));
    QTest::mouseClick(&view, Qt::RightButton, {}, anchorOf(1).toPoint());
    EXPECT_EQ(selected.size(), 1U);
}

TEST_F(TerritoryMapViewTest, aPressThatEndsOnOtherLandSelectsNothing)
{
    QTest::mousePress(&view, Qt::LeftButton, {}, anchorOf(1).toPoint());
    QTest::mouseRelease(&view, Qt::LeftButton, {}, anchorOf(2).toPoint());
    EXPECT_TRUE(selected.empty());
    QTest::mouseRelease(&view, Qt::LeftButton, {}, anchorOf(2).toPoint());
    EXPECT_TRUE(selected.empty());
}

TEST_F(TerritoryMapViewTest, theLandUnderThePointerGetsABorderOfFullInk)
{
    const auto inkOn = [this](std::size_t territory) {
        const QImage image = picture();
        int count = 0;
        for (const GridPoint& point : view.map().territories[territory].borders.front()) {
            const double cell = view.land().width() / mapResolution;
            const QPointF at = view.land().topLeft() + QPointF(point.x * cell, point.y * cell);
            count += image.pixelColor(at.toPoint()) == theme.colour(Role::ink) ? 1 : 0;
        }
        return count;
    };
    QSignalSpy changes(&view, &TerritoryMapView::highlightedChanged);
    EXPECT_EQ(view.highlighted(), std::nullopt);
    EXPECT_LT(inkOn(1), 5);
    QTest::mouseMove(&view, anchorOf(1).toPoint());
    EXPECT_EQ(view.highlighted(), 1U);
    EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_GT(inkOn(1), 50);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    EXPECT_EQ(view.highlighted(), std::nullopt);
    EXPECT_LT(inkOn(1), 5);
}

TEST_F(TerritoryMapViewTest, landWithoutRoomForItsLabelTellsItWhenHighlighted)
{
    const QImage before = picture();
    view.highlightRealm(2);
    const QImage after = picture();
    // A card over the cell that the realm holds.
    const QPoint over = view.boundsOf(2).center() - QPoint(0, 30);
    EXPECT_NE(before.pixelColor(over), after.pixelColor(over));
    const QRect bounds = view.boundsOf(2);
    const int lightness = theme.colour(Role::paperCard).lightness();
    int paper = 0;
    for (int y = bounds.top() - 45; y < bounds.top(); ++y) {
        const int there = after.pixelColor(bounds.center().x(), y).lightness();
        paper += std::abs(there - lightness) <= 1 ? 1 : 0;
    }
    EXPECT_GT(paper, 5);
    view.highlightRealm(std::nullopt);
    EXPECT_EQ(picture(), before);
}

TEST_F(TerritoryMapViewTest, theArrowKeysMoveBetweenTerritoriesAndReturnSelects)
{
    view.setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(view.highlighted(), 0U);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(view.focused(), 2U);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.focused(), 0U);
    const auto right = neighbour(view.map(), 0, MapDirection::right);
    ASSERT_TRUE(right);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.focused(), right);
    EXPECT_EQ(view.highlighted(), right);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(selected, std::vector<std::string>(2, view.realmOf(*right).path));
    while (neighbour(view.map(), *view.focused(), MapDirection::right)) {
        QTest::keyClick(&view, Qt::Key_Right);
    }
    const auto rightmost = view.focused();
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.focused(), rightmost) << "there it ends";
}

TEST_F(TerritoryMapViewTest, thePageKeysGoThroughAllTerritories)
{
    view.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view, Qt::Key_PageUp);
    for (const std::size_t expected : {0U, 1U, 2U, 2U}) {
        EXPECT_EQ(view.focused(), expected);
        QTest::keyClick(&view, Qt::Key_PageDown);
    }
    QTest::keyClick(&view, Qt::Key_PageUp);
    EXPECT_EQ(view.focused(), 1U);
}

TEST_F(TerritoryMapViewTest, theFocusThatThePointerBroughtHighlightsNothing)
{
    QTest::mousePress(&view, Qt::LeftButton, {}, anchorOf(1).toPoint());
    view.setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(view.focused(), 1U);
    EXPECT_EQ(view.highlighted(), std::nullopt);
    // Also when its window comes back to the front.
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(&view, &back);
    EXPECT_EQ(view.highlighted(), std::nullopt);
}

TEST_F(TerritoryMapViewTest, aKeyThatStaysDownSelectsOnce)
{
    view.setFocus(Qt::TabFocusReason);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(&view, &repeat);
    EXPECT_TRUE(selected.empty());
}

TEST_F(TerritoryMapViewTest, isAListWithOneChildATerritory)
{
    QAccessibleInterface& list = accessible();
    EXPECT_EQ(list.role(), QAccessible::List);
    EXPECT_EQ(list.text(QAccessible::Name), QStringLiteral("Map of your territories"));
    ASSERT_EQ(list.childCount(), 3);
    const QStringList names = {QStringLiteral("Forest, 734 GB"), QStringLiteral("Letters, 42 GB"),
                               QStringLiteral("Old disk, 0 KB")};
    for (int index = 0; index < 3; ++index) {
        QAccessibleInterface* child = list.child(index);
        ASSERT_NE(child, nullptr);
        EXPECT_TRUE(child->isValid());
        EXPECT_EQ(child->role(), QAccessible::ListItem);
        EXPECT_EQ(child->text(QAccessible::Name), names[index]);
        EXPECT_EQ(child->parent(), &list);
        EXPECT_EQ(list.indexOfChild(child), index);
        EXPECT_EQ(list.child(index), child) << "the same each time";
    }
    EXPECT_EQ(list.child(3), nullptr);
    EXPECT_EQ(list.child(-1), nullptr);
}

TEST_F(TerritoryMapViewTest, tellsAssistiveTechnologyWhereEachTerritoryLies)
{
    QAccessibleInterface& list = accessible();
    for (std::size_t index = 0; index < 3; ++index) {
        QAccessibleInterface* child = list.child(static_cast<int>(index));
        const QRect place = child->rect();
        EXPECT_EQ(place.translated(-view.mapToGlobal(QPoint())), view.boundsOf(index));
    }
    const QPoint letters = view.mapToGlobal(anchorOf(1).toPoint());
    EXPECT_EQ(list.childAt(letters.x(), letters.y()), list.child(1));
    const QPoint sea = view.mapToGlobal(QPoint(2, 2));
    EXPECT_EQ(list.childAt(sea.x(), sea.y()), nullptr);
}

TEST_F(TerritoryMapViewTest, tellsAssistiveTechnologyWhereTheFocusIs)
{
    EXPECT_EQ(accessible().focusChild(), nullptr);
    view.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(accessible().focusChild(), accessible().child(2));
    EXPECT_TRUE(accessible().child(2)->state().focused);
    EXPECT_FALSE(accessible().child(0)->state().focused);
    EXPECT_TRUE(accessible().child(0)->state().focusable);
}

TEST_F(TerritoryMapViewTest, aTerritoryCanBePressedByAssistiveTechnology)
{
    QAccessibleActionInterface* action = accessible().child(1)->actionInterface();
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(action->actionNames(), QStringList(QAccessibleActionInterface::pressAction()));
    action->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(selected, std::vector<std::string>{"/realms/Letters"});
    action->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(selected.size(), 1U);
}

TEST_F(TerritoryMapViewTest, aTerritoryThatIsGoneIsInvalidToAssistiveTechnology)
{
    QAccessibleInterface* last = accessible().child(2);
    ASSERT_TRUE(last->isValid());
    view.setSummaries({three[0]});
    EXPECT_EQ(accessible().childCount(), 1);
    EXPECT_FALSE(last->isValid());
    EXPECT_TRUE(last->state().invalid);
    EXPECT_EQ(last->text(QAccessible::Name), QString());
    EXPECT_EQ(last->rect(), QRect());
    last->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(selected.empty());
    EXPECT_EQ(accessible().child(0)->text(QAccessible::Name), QStringLiteral("Forest, 734 GB"));
}

TEST_F(TerritoryMapViewTest, aNameWithALineBreakTakesOneLine)
{
    view.setSummaries({realm("two\nlines", 5'000)});
    EXPECT_EQ(view.nameOf(0), QStringLiteral("two␊lines, 5 KB"));
}

TEST_F(TerritoryMapViewTest, theFocusStaysOnItsRealmThroughALoad)
{
    view.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view, Qt::Key_End);
    ASSERT_EQ(view.realmOf(*view.focused()).path, "/realms/Old disk");
    view.setSummaries({realm("Old disk", 5'000), three[0], three[1]});
    ASSERT_TRUE(view.focused());
    EXPECT_EQ(view.realmOf(*view.focused()).path, "/realms/Old disk");
    EXPECT_EQ(view.highlighted(), view.focused());
    ASSERT_NE(accessible().focusChild(), nullptr);
    EXPECT_EQ(accessible().focusChild()->text(QAccessible::Name), QStringLiteral("Old disk, 5 KB"));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(selected, std::vector<std::string>{"/realms/Old disk"});
}

TEST_F(TerritoryMapViewTest, whereItsRealmIsGoneTheFocusGoesToTheOneInItsPlace)
{
    view.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view, Qt::Key_PageDown);
    view.setSummaries({three[0], three[2]});
    EXPECT_EQ(view.realmOf(*view.focused()).path, "/realms/Old disk");
    view.setSummaries({three[0]});
    EXPECT_EQ(view.realmOf(*view.focused()).path, "/realms/Forest");
}

TEST_F(TerritoryMapViewTest, theRealmThatWasAskedForStaysHighlightedThroughALoad)
{
    view.highlightRealm(1);
    view.setSummaries({realm("New", 9'000'000'000), three[0], three[1]});
    ASSERT_TRUE(view.highlighted());
    EXPECT_EQ(view.realmOf(*view.highlighted()).path, "/realms/Letters");
    view.setSummaries({three[0]});
    EXPECT_EQ(view.highlighted(), std::nullopt);
}

TEST_F(TerritoryMapViewTest, afterALoadTheLandUnderTheRestingPointerIsHighlighted)
{
    QTest::mouseMove(&view, anchorOf(1).toPoint());
    ASSERT_EQ(view.realmOf(*view.highlighted()).path, "/realms/Letters");
    view.setSummaries({realm("All", 1)});
    ASSERT_TRUE(view.highlighted());
    EXPECT_EQ(view.realmOf(*view.highlighted()).path, "/realms/All");
    EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(TerritoryMapViewTest, afterALoadThePointerIsNoHandOverTheSea)
{
    QTest::mouseMove(&view, anchorOf(1).toPoint());
    ASSERT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
    view.setSummaries({});
    EXPECT_EQ(view.highlighted(), std::nullopt);
    EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(TerritoryMapViewTest, aPressThatALoadInterruptsSelectsTheRealmThatWasPressed)
{
    QTest::mousePress(&view, Qt::LeftButton, {}, anchorOf(1).toPoint());
    view.setSummaries({realm("New", 1), three[0], three[1]});
    std::size_t letters = 0;
    while (view.realmOf(letters).path != "/realms/Letters") {
        ++letters;
    }
    QTest::mouseRelease(&view, Qt::LeftButton, {}, anchorOf(letters).toPoint());
    EXPECT_EQ(selected, std::vector<std::string>{"/realms/Letters"});
}

TEST_F(TerritoryMapViewTest, withNoRealmsIsAnEmptyListAndASea)
{
    view.setSummaries({});
    EXPECT_EQ(accessible().childCount(), 0);
    EXPECT_EQ(view.focused(), std::nullopt);
    view.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::mouseClick(&view, Qt::LeftButton, {}, QPoint(300, 300));
    EXPECT_TRUE(selected.empty());
    EXPECT_EQ(view.highlighted(), std::nullopt);
    EXPECT_EQ(picture().pixelColor(8, 300), theme.colour(Role::paperInset));
}

}  // namespace gruk
