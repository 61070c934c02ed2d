#include "app/screens/territories_view.h"

#include <algorithm>

#include <QBoxLayout>
#include <QMetaObject>
#include <QResizeEvent>

#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/screens/territory_copy.h"
#include "app/screens/territory_grid.h"
#include "app/screens/territory_map_view.h"
#include "app/theme/art.h"
#include "app/theme/button.h"
#include "app/theme/paper_backdrop.h"
#include "app/theme/work_mark.h"

namespace gruk {

namespace {

/// The Gruk where there is nothing else to see.

}  // namespace

TerritoriesView::TerritoriesView(AppModel& model, Theme& theme, QWidget* parent)
    : QScrollArea(parent), model_(model), theme_(theme),
      mapped_(new MetricCard(theme, QStringLiteral("MAPPED"), Role::fern)),
      review_(new MetricCard(theme, QStringLiteral("TO REVIEW"), Role::yellow)),
      status_(new MetricCard(theme, QStringLiteral("STATUS"), Role::fern)),
      map_(new TerritoryMapView(theme)), grid_(new TerritoryGrid(theme))
{
    setObjectName(QStringLiteral("territoriesPage"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Its place is kept, so that nothing jumps when there comes to be something to scroll.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    // The focus goes to what is on the page; the page itself scrolls by keys all the same.
    setFocusPolicy(Qt::NoFocus);
    layOut();
    connectModel();
    showRealms();
    showTotals();
}

void TerritoriesView::layOut()
{
    auto* column = new QWidget;
    column->setMaximumWidth(Measure::columnWidth);
    auto* rows = new QVBoxLayout(column);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(Measure::rowGap);
    rows->addWidget(makeHeading());
    rows->addWidget(makeTotals());
    rows->addWidget(map_);
    rows->addWidget(grid_);
    rows->addStretch();
    map_->setPlaceholder(makePlaceholder());

    auto* paper = new PaperBackdrop(theme_);
    auto* centred = new QHBoxLayout(paper);
    centred->setContentsMargins(Measure::pageMargin, Measure::pageMargin, Measure::pageMargin,
                                Measure::pageMargin);
    centred->addStretch(1);
    centred->addWidget(column, 1000);
    centred->addStretch(1);
    setWidget(paper);
}

QWidget* TerritoriesView::makeHeading()
{
    auto* heading = new QWidget;
    auto* title = new Label(theme_, TextStyle::pageTitle);
    title->setText(QStringLiteral("YOUR TERRITORIES"));
    auto* words = new QVBoxLayout;
    words->setSpacing(Measure::hair);
    words->addWidget(title);
    words->addWidget(
        sectionNote(theme_, QStringLiteral("Every realm you've granted — bigger holds more.")));
    auto* refresh = new Button(theme_, Button::Kind::secondary, QStringLiteral("Refresh"));
    auto* row = new QHBoxLayout(heading);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::large);
    row->addLayout(words, 1);
    row->addWidget(refresh, 0, Qt::AlignBottom);
    connect(refresh, &QPushButton::clicked, this, [this] { model_.loadTerritories(); });
    return heading;
}

QWidget* TerritoriesView::makeTotals()
{
    auto* totals = new QWidget;
    totals_ = new QBoxLayout(QBoxLayout::LeftToRight, totals);
    totals_->setContentsMargins(0, 0, 0, 0);
    totals_->setSpacing(Measure::medium);
    for (MetricCard* card : {mapped_, review_, status_}) {
        totals_->addWidget(card);
    }
    return totals;
}

QWidget* TerritoriesView::makePlaceholder()
{
    auto* placeholder = new QWidget;
    auto* gruk = new ArtView(theme_, Art::grukStateMap, QString());
    gruk->setFixedSize(Measure::noteHero, Measure::noteHero);
    mark_ = new WorkMark(theme_);
    words_ = new Label(theme_, TextStyle::body);
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::small);
    row->addStretch();
    row->addWidget(mark_);
    row->addWidget(words_);
    row->addStretch();
    auto* column = new QVBoxLayout(placeholder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::medium);
    column->addStretch();
    column->addWidget(gruk, 0, Qt::AlignHCenter);
    column->addLayout(row);
    column->addStretch();
    return placeholder;
}

TerritoriesView::~TerritoriesView()
{
    // Both lose the focus while they end, which is after this page has.
    disconnect(map_, nullptr, this, nullptr);
    disconnect(grid_, nullptr, this, nullptr);
}

void TerritoriesView::connectModel()
{
    connect(map_, &TerritoryMapView::selected, this, &TerritoriesView::open);
    connect(grid_, &TerritoryGrid::selected, this, &TerritoriesView::open);
    connect(map_, &TerritoryMapView::highlightedChanged, this, [this] {
        const auto territory = map_->highlighted();
        for (std::size_t place = 0; place < grid_->cards().size(); ++place) {
            grid_->cards()[place]->setLifted(
                territory && map_->map().territories[*territory].summary == place);
        }
    });
    connect(grid_, &TerritoryGrid::pointedAt, this, [this](std::size_t place, bool isPointedAt) {
        map_->highlightRealm(isPointedAt ? std::optional(place) : std::nullopt);
    });

    auto* repaint = new RepaintOnce(
        [this] {
            showRealms();
            showTotals();
        },
        this);
    repaint->on(model_, &AppModel::territorySummariesChanged);
    repaint->on(model_, &AppModel::isLoadingTerritoriesChanged);
    auto* repaintShields = new RepaintOnce([this] { showCards(); }, this);
    repaintShields->on(model_, &AppModel::realmIdentityStoreChanged);
    connect(&model_, &AppModel::territoriesAreStaleChanged, this, [this] {
        // Also while a load runs: it may have read what was true before.
        if (model_.territoriesAreStale() && isVisible()) {
            model_.loadTerritories();
        }
    });
}

void TerritoriesView::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    // Once whoever showed the page is done, who may have asked for the summaries already.
    QMetaObject::invokeMethod(this, &TerritoriesView::loadIfWanted, Qt::QueuedConnection);
}

void TerritoriesView::loadIfWanted()
{
    const bool isWanted = model_.territoriesAreStale() || model_.territorySummaries().empty();
    if (isWanted && !model_.isLoadingTerritories() && isVisible()) {
        model_.loadTerritories();
    }
}

void TerritoriesView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    const int column =
        std::min(viewport()->width() - 2 * Measure::pageMargin, Measure::columnWidth);
    totals_->setDirection(column < Measure::stackingWidth ? QBoxLayout::TopToBottom
                                                          : QBoxLayout::LeftToRight);
}

void TerritoriesView::showTotals()
{
    const std::vector<RealmSummary>& realms = model_.territorySummaries();
    const auto overdue = static_cast<std::size_t>(
        std::ranges::count_if(realms, [](const RealmSummary& realm) { return realm.isOverdue; }));
    const auto show = [this](MetricCard& card, const TerritoryCopy::Figure& figure) {
        card.setFigure(figure.value, figure.detail);
        card.setLoading(model_.isLoadingTerritories());
    };
    show(*mapped_, TerritoryCopy::mapped(realms));
    show(*review_, TerritoryCopy::toReview(realms));
    show(*status_, TerritoryCopy::status(overdue));
    status_->setColour(overdue == 0 ? Role::fern : Role::red);
}

void TerritoriesView::showRealms()
{
    mark_->setVisible(model_.isLoadingTerritories());
    words_->setText(model_.isLoadingTerritories() ? QStringLiteral("The Gruk is drawing your map.")
                                                  : QStringLiteral("No realm holds land yet."));
    map_->setSummaries(model_.territorySummaries());
    showCards();
}

void TerritoriesView::showCards()
{
    grid_->showRealms(model_.territorySummaries(), [this](const RealmSummary& realm) {
        return model_.realmIdentityStore().identity(
            FileURL::directory(realm.path).standardized().path());
    });
}

void TerritoriesView::open(const RealmSummary& realm)
{
    model_.selectRealm(FileURL::directory(realm.path));
}

}  // namespace gruk
