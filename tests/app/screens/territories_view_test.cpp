#include "app/screens/territories_view.h"

#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/territory_copy.h"
#include "app/screens/territory_grid.h"
#include "app/screens/territory_map_view.h"
#include "tests/support/screen_house.h"
#include "tests/support/territory_house.h"

namespace gruk {

namespace {

class TerritoriesViewTest : public testing::Test {
protected:
    TerritoriesView& open()
    {
        view = std::make_unique<TerritoriesView>(*house.model, theme);
        view->resize(900, 700);
        view->show();
        QApplication::setActiveWindow(view.get());
        house.rest();
        return *view;
    }

    [[nodiscard]] bool shows(const char* text) const
    {
        const auto labels = view->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [text](const QLabel* label) {
            return label->isVisible() && label->text() == QString::fromUtf8(text);
        });
    }
    [[nodiscard]] QStringList figures() const
    {
        QStringList values;
        for (const MetricCard* card : view->findChildren<MetricCard*>()) {
            values.append(card->valueText());
        }
        return values;
    }
    [[nodiscard]] TerritoryMapView& map() const { return *view->findChild<TerritoryMapView*>(); }
    [[nodiscard]] const std::vector<RealmCard*>& cards() const
    {
        return view->findChild<TerritoryGrid*>()->cards();
    }
    [[nodiscard]] QAbstractButton& refresh() const
    {
        for (QAbstractButton* button : view->findChildren<QAbstractButton*>()) {
            if (button->text() == QStringLiteral("Refresh")) {
                return *button;
            }
        }
        throw std::runtime_error("no button to refresh");
    }

    Theme theme;
    test::TerritoryHouse house;
    std::unique_ptr<TerritoriesView> view;
};

}  // namespace

TEST_F(TerritoriesViewTest, saysWhatItShows)
{
    house.addRealm("Forest", 5'000'000);
    open();
    for (const char* text :
         {"YOUR TERRITORIES", "Every realm you've granted — bigger holds more.", "MAPPED",
          "TO REVIEW", "STATUS", "allocated across every realm", "evidence-backed findings",
          "every realm is within its cadence", "5 MB", "All caught up"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    EXPECT_EQ(test::namelessControls(*view), QStringList());
}

TEST_F(TerritoriesViewTest, totalsAreThoseOfAllRealms)
{
    house.addRealm("Forest", 5'000'000, 2);
    house.addRealm("Letters", 1'500'000, 1);
    open();
    EXPECT_EQ(figures(), QStringList({QStringLiteral("6.5 MB"), QStringLiteral("3"),
                                      QStringLiteral("All caught up")}));
    EXPECT_EQ(view->findChildren<MetricCard*>().first()->accessibleName(),
              QStringLiteral("MAPPED: 6.5 MB, allocated across every realm"));
}

TEST_F(TerritoriesViewTest, anOverdueRealmTurnsTheStatusRed)
{
    const FileURL forest = house.addRealm("Forest", 5'000);
    const FileURL letters = house.addRealm("Letters", 5'000);
    open();
    const auto statusShows = [this](Role role) {
        MetricCard* status = view->findChildren<MetricCard*>().last();
        const QImage image = status->grab().toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == theme.colour(role)) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(statusShows(Role::fern));
    EXPECT_FALSE(statusShows(Role::red));
    house.loop->setNow({test::TerritoryHouse::captured().secondsSince1970 + 86'400});
    house.model->setCadence(PatrolCadence::daily, house.grantOf(forest));
    house.model->setCadence(PatrolCadence::daily, house.grantOf(letters));
    house.rest();
    EXPECT_EQ(figures().last(), QStringLiteral("2 realms overdue"));
    EXPECT_TRUE(shows("past their patrol cadence"));
    EXPECT_TRUE(statusShows(Role::red));
    EXPECT_FALSE(statusShows(Role::fern));
}

TEST_F(TerritoriesViewTest, whileALoadRunsTheFormerSummariesStayUnderTheLoadingMetrics)
{
    const FileURL forest = house.addRealm("Forest", 5'000'000, 1);
    open();
    house.store->save(test::TerritoryHouse::snapshot(forest, 4'000'000, 2));
    refresh().click();
    QApplication::processEvents();
    ASSERT_TRUE(house.model->isLoadingTerritories());
    EXPECT_EQ(figures(), QStringList(3, QStringLiteral("Loading")));
    ASSERT_EQ(cards().size(), 1U);
    EXPECT_EQ(cards()[0]->detailText(), QStringLiteral("5 MB mapped, 1 finding"));
    EXPECT_EQ(map().map().territories.size(), 1U);
    house.rest();
    EXPECT_EQ(figures().first(), QStringLiteral("4 MB"));
    EXPECT_EQ(cards()[0]->detailText(), QStringLiteral("4 MB mapped, 2 findings"));
}

TEST_F(TerritoriesViewTest, oneFindingAgainstTwoFindings)
{
    RealmSummary realm;
    realm.totalBytes = 2'100'000'000;
    realm.findingsCount = 1;
    EXPECT_EQ(TerritoryCopy::mappedAndFindings(realm), QStringLiteral("2.1 GB mapped, 1 finding"));
    realm.findingsCount = 2;
    EXPECT_EQ(TerritoryCopy::mappedAndFindings(realm), QStringLiteral("2.1 GB mapped, 2 findings"));
    realm.findingsCount = 0;
    EXPECT_EQ(TerritoryCopy::mappedAndFindings(realm), QStringLiteral("2.1 GB mapped, 0 findings"));
    realm.findingsCount = 12'345;
    EXPECT_EQ(TerritoryCopy::mappedAndFindings(realm),
              QStringLiteral("2.1 GB mapped, 12,345 findings"));
}

TEST_F(TerritoriesViewTest, theStatusCountsTheRealmsThatAreOverdueAlsoIfItIsOne)
{
    EXPECT_EQ(TerritoryCopy::status(0).value, QStringLiteral("All caught up"));
    EXPECT_EQ(TerritoryCopy::status(0).detail, QStringLiteral("every realm is within its cadence"));
    EXPECT_EQ(TerritoryCopy::status(1).value, QStringLiteral("1 realms overdue"));
    EXPECT_EQ(TerritoryCopy::status(1).detail, QStringLiteral("past their patrol cadence"));
    EXPECT_EQ(TerritoryCopy::status(2).value, QStringLiteral("2 realms overdue"));
}

TEST_F(TerritoriesViewTest, withOneRealmTheMapIsAllOneRegion)
{
    house.addRealm("Forest", 0);
    open();
    ASSERT_EQ(map().map().territories.size(), 1U);
    for (const double part : {0.02, 0.3, 0.98}) {
        EXPECT_EQ(map().territoryAtPoint(map().land().topLeft()
                                         + part * map().land().width() * QPointF(1, 1)),
                  0U);
    }
}

TEST_F(TerritoriesViewTest, loadsOnAppearingWhenTheSummariesAreStale)
{
    house.makeRealm("Forest");
    house.settle();
    ASSERT_TRUE(house.model->territoriesAreStale());
    const auto generation = house.model->territoryLoadGeneration();
    open();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation + 1);
    EXPECT_EQ(cards().size(), 1U);
}

TEST_F(TerritoriesViewTest, loadsNothingOnAppearingWhileTheSummariesAreFresh)
{
    house.addRealm("Forest", 5'000);
    const auto generation = house.model->territoryLoadGeneration();
    open();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation);
}

TEST_F(TerritoriesViewTest, doesNotLoadAgainWhatWhoeverOpenedItLoadsAlready)
{
    house.addRealm("Forest", 5'000);
    house.makeRealm("Letters");
    house.settle();
    const auto generation = house.model->territoryLoadGeneration();
    view = std::make_unique<TerritoriesView>(*house.model, theme);
    view->show();
    house.model->showTerritories();
    house.rest();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation + 1);
    EXPECT_EQ(cards().size(), 2U);
}

TEST_F(TerritoriesViewTest, aChangeThatIsSeenIsLoadedAtOnce)
{
    house.addRealm("Forest", 5'000);
    const FileURL letters = house.addRealm("Letters", 7'000);
    open();
    house.model->removeRealm(house.grantOf(letters));
    house.rest();
    ASSERT_EQ(cards().size(), 1U);
    EXPECT_EQ(cards()[0]->nameText(), QStringLiteral("Forest"));
    EXPECT_EQ(figures().first(), QStringLiteral("5 KB"));
    EXPECT_FALSE(house.model->territoriesAreStale());
}

TEST_F(TerritoriesViewTest, whatChangesWhileItLoadsIsNotLost)
{
    const FileURL forest = house.addRealm("Forest", 5'000);
    open();
    refresh().click();
    house.pool->runNext();
    // Read already, and not yet shown.
    house.store->save(test::TerritoryHouse::snapshot(forest, 9'000));
    house.model->setCadence(PatrolCadence::weekly, house.grantOf(forest));
    house.rest();
    EXPECT_EQ(figures().first(), QStringLiteral("9 KB"));
}

TEST_F(TerritoriesViewTest, aChangeThatIsNotSeenIsLeftToTheNextAppearance)
{
    const FileURL forest = house.addRealm("Forest", 5'000);
    open();
    view->hide();
    const auto generation = house.model->territoryLoadGeneration();
    house.model->setCadence(PatrolCadence::weekly, house.grantOf(forest));
    house.rest();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation);
    view->show();
    house.rest();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation + 1);
}

TEST_F(TerritoriesViewTest, whatItShowsIsWhatTheModelHolds)
{
    house.addRealm("Forest", 5'000'000, 2);
    open();
    for (int index = 0; index < 12; ++index) {
        house.addRealm("realm " + std::to_string(index), 1'000 << index, index % 3);
        house.rest();
        const std::vector<RealmSummary>& realms = house.model->territorySummaries();
        ASSERT_EQ(cards().size(), realms.size());
        EXPECT_EQ(map().summaries(), realms);
        EXPECT_EQ(map().map(), territoryMap(realms));
        for (std::size_t place = 0; place < realms.size(); ++place) {
            EXPECT_EQ(cards()[place]->realm(), realms[place]);
        }
    }
}

TEST_F(TerritoriesViewTest, aCardOpensItsRealm)
{
    const FileURL forest = house.addRealm("Forest", 5'000);
    house.addRealm("Letters", 7'000);
    open();
    ASSERT_FALSE(house.model->activeRootURL());
    EXPECT_EQ(cards()[0]->accessibleName(), QStringLiteral("Forest, 5 KB mapped, 0 findings"));
    QTest::keyClick(cards()[0], Qt::Key_Return);
    EXPECT_EQ(house.model->activeRootURL(), forest);
}

TEST_F(TerritoriesViewTest, landOnTheMapOpensItsRealm)
{
    house.addRealm("Forest", 5'000);
    const FileURL letters = house.addRealm("Letters", 7'000);
    open();
    const Territory& territory = map().map().territories[1];
    const double cell = map().land().width() / mapResolution;
    const QPointF at =
        map().land().topLeft() + QPointF(territory.anchor.x * cell, territory.anchor.y * cell);
    ASSERT_EQ(map().territoryAtPoint(at), 1U);
    QTest::mouseClick(&map(), Qt::LeftButton, {}, at.toPoint());
    EXPECT_EQ(house.model->activeRootURL(), letters);
}

TEST_F(TerritoriesViewTest, aRepaintedShieldChangesItsCardAndNotTheMap)
{
    const FileURL forest = house.addRealm("Forest", 5'000);
    open();
    const auto middleOfMap = [this] {
        const QPointF beside = map().land().center() + QPointF(0, 60);
        return map().grab().toImage().pixelColor(beside.toPoint());
    };
    const QColor before = middleOfMap();
    const RealmIdentity derived = RealmIdentity::derive(forest.path());
    EXPECT_EQ(cards()[0]->identity(), derived);
    EXPECT_EQ(before, theme.colour(roleOf(derived.primary)));
    RealmIdentity painted = derived;
    painted.primary = derived.primary == Tincture::red ? Tincture::blue : Tincture::red;
    house.model->saveShield(painted, forest.path());
    house.rest();
    EXPECT_EQ(cards()[0]->identity(), painted);
    EXPECT_EQ(middleOfMap(), before);
}

TEST_F(TerritoriesViewTest, theCardOfTheLandUnderThePointerIsLifted)
{
    house.addRealm("Forest", 5'000);
    house.addRealm("Letters", 7'000);
    open();
    const Territory& territory = map().map().territories[1];
    const double cell = map().land().width() / mapResolution;
    const QPointF at =
        map().land().topLeft() + QPointF(territory.anchor.x * cell, territory.anchor.y * cell);
    QTest::mouseMove(&map(), at.toPoint());
    EXPECT_FALSE(cards()[0]->isLifted());
    EXPECT_TRUE(cards()[1]->isLifted());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&map(), &leave);
    EXPECT_FALSE(cards()[1]->isLifted());
}

TEST_F(TerritoriesViewTest, theLandOfTheCardWithTheFocusIsHighlighted)
{
    house.addRealm("Forest", 5'000);
    house.addRealm("Letters", 7'000);
    open();
    EXPECT_EQ(map().highlighted(), std::nullopt);
    cards()[1]->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(map().highlighted(), 1U);
    refresh().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(map().highlighted(), std::nullopt);
}

TEST_F(TerritoriesViewTest, theFocusStaysOnACardThroughALoad)
{
    house.addRealm("Forest", 5'000);
    house.addRealm("Letters", 7'000);
    open();
    cards()[1]->setFocus(Qt::TabFocusReason);
    refresh().click();
    house.rest();
    EXPECT_TRUE(cards()[1]->hasFocus());
}

TEST_F(TerritoriesViewTest, aLongNameIsWholeInItsTooltip)
{
    const std::string name(200, 'n');
    house.addRealm(name, 5'000);
    open();
    EXPECT_EQ(cards()[0]->nameText(), QString::fromStdString(name));
    EXPECT_TRUE(cards()[0]->toolTip().remove(QChar(0x200B)).contains(QString::fromStdString(name)));
    EXPECT_LT(cards()[0]->width(), 400);
}

TEST_F(TerritoriesViewTest, withNothingToShowYetSaysThatItIsLoading)
{
    house.makeRealm("Forest");
    house.settle();
    view = std::make_unique<TerritoriesView>(*house.model, theme);
    view->resize(900, 700);
    view->show();
    QApplication::processEvents();
    QApplication::processEvents();
    ASSERT_TRUE(house.model->isLoadingTerritories());
    EXPECT_TRUE(shows("The Gruk is drawing your map."));
    EXPECT_EQ(figures(), QStringList(3, QStringLiteral("Loading")));
    house.rest();
    EXPECT_FALSE(shows("The Gruk is drawing your map."));
    EXPECT_FALSE(shows("No realm holds land yet."));
}

TEST_F(TerritoriesViewTest, withNoRealmsSaysSo)
{
    open();
    EXPECT_TRUE(shows("No realm holds land yet."));
    EXPECT_EQ(figures(), QStringList({QStringLiteral("0 KB"), QStringLiteral("0"),
                                      QStringLiteral("All caught up")}));
}

TEST_F(TerritoriesViewTest, theTotalsStackWhereTheyWouldBeCrowded)
{
    house.addRealm("Forest", 5'000);
    open();
    const auto metrics = view->findChildren<MetricCard*>();
    EXPECT_EQ(metrics[0]->y(), metrics[1]->y());
    view->resize(572, 560);
    house.rest();
    EXPECT_LT(metrics[0]->y(), metrics[1]->y());
    EXPECT_EQ(metrics[0]->x(), metrics[1]->x());
}

/// Counts how often a widget changes its size.
class ResizeCount : public QObject {
public:
    explicit ResizeCount(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Resize ? 1 : 0;
        return false;
    }

    int count = 0;
};

TEST_F(TerritoriesViewTest, theMapComesToRestInAWindowOfAnySize)
{
    for (const char* name : {"Forest", "Letters", "Music", "Films"}) {
        house.addRealm(name, 5'000);
    }
    open();
    ResizeCount resizes(map());
    const auto rest = [] {
        constexpr int turns = 8;
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
        }
    };
    for (int width = 572; width <= 960; width += 47) {
        view->resize(width, 3'000);
        rest();
        // About as high as what it holds, where a scroll bar is wanted or is not.
        const int content =
            view->widget()->layout()->totalMinimumHeightForWidth(view->viewport()->width());
        for (int height = content - 16; height <= content + 16; height += 2) {
            view->resize(width, height);
            rest();
            resizes.count = 0;
            rest();
            ASSERT_EQ(resizes.count, 0) << width << " x " << height;
        }
    }
}

TEST(TerritoryGrid, hasAsManyColumnsOf230AsFitWithGapsOf14)
{
    EXPECT_EQ(adaptiveColumns(880, 230, 14), 3);
    EXPECT_EQ(adaptiveColumns(718, 230, 14), 3);
    EXPECT_EQ(adaptiveColumns(717, 230, 14), 2);
    EXPECT_EQ(adaptiveColumns(474, 230, 14), 2);
    EXPECT_EQ(adaptiveColumns(473, 230, 14), 1);
    EXPECT_EQ(adaptiveColumns(100, 230, 14), 1);
    EXPECT_EQ(adaptiveColumns(0, 230, 14), 1);
}

TEST(TerritoryGrid, allColumnsAreOfOneWidth)
{
    Theme theme;
    TerritoryGrid grid(theme);
    grid.resize(880, 100);
    std::vector<RealmSummary> realms(7);
    grid.showRealms(realms, [](const RealmSummary&) { return RealmIdentity(); });
    ASSERT_EQ(grid.cards().size(), 7U);
    for (const RealmCard* card : grid.cards()) {
        EXPECT_EQ(card->width(), (880 - 28) / 3);
        EXPECT_TRUE(grid.rect().contains(card->geometry()));
    }
    EXPECT_EQ(grid.cards()[3]->x(), 0);
    EXPECT_EQ(grid.cards()[1]->x() - grid.cards()[0]->geometry().right() - 1, 14);
    EXPECT_EQ(grid.cards()[3]->y() - grid.cards()[0]->geometry().bottom() - 1, 14);
    realms.resize(1);
    grid.showRealms(realms, [](const RealmSummary&) { return RealmIdentity(); });
    EXPECT_EQ(grid.cards().size(), 1U);
    EXPECT_EQ(grid.height(), RealmCard::cardHeight());
}

}  // namespace gruk
