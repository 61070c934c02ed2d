#include "app/tour/land_scenes.h"

#include <chrono>
#include <filesystem>
#include <utility>

#include <QApplication>
#include <QCoro/QCoroSignal>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>

#include "app/screens/shield_button.h"
#include "app/screens/shield_choice.h"
#include "app/screens/shield_editor.h"
#include "app/screens/territories_view.h"
#include "app/screens/territory_map_view.h"
#include "app/tour/camera.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr QSize largeSize{1920, 1080};
constexpr int manyRealms = 50;
constexpr int daysOfNeglect = 9;
constexpr double secondsPerDay = 86'400;

struct Sample {
    const char* name;
    Bytes bytes;
    int installers;
};
/// More than a disk of a tour could hold, so what their patrols found is only told.
constexpr Sample samples[] = {
    {"Photographs", 734'000'000'000, 12},
    {"Letters", 42'000'000'000, 1},
    {"Scans", 8'100'000'000, 0},
    {"Recordings from the Northern Islands, summer of 1998", 210'000'000'000, 3},
    {"Old disk", 900'000, 0},
    {"Music", 95'000'000'000, 0},
    {"src", 61'000'000'000, 7},
    {"Downloads", 17'000'000'000, 38},
};

ScanSnapshot snapshotOf(const FileURL& realm, const Sample& sample, Bytes bytes)
{
    const Date longAgo = {Date::now().secondsSince1970 - 100 * secondsPerDay};
    std::vector<SnapshotEntry> entries = {{"everything", bytes, longAgo, FileKind::folder, true}};
    for (int index = 0; index < sample.installers; ++index) {
        entries.push_back({std::to_string(index) + ".dmg", 0, longAgo, FileKind::installer, false});
    }
    ScanSnapshot snapshot;
    snapshot.id = UUID::random();
    snapshot.rootPath = realm.path();
    snapshot.capturedAt = {Date::now().secondsSince1970 - daysOfNeglect * secondsPerDay};
    snapshot.entries = SnapshotEntries(entries);
    snapshot.isComplete = true;
    return snapshot;
}

void removeAllRealms(AppModel& model)
{
    const std::vector<Grant> grants = model.grants();
    for (const Grant& grant : grants) {
        model.removeRealm(grant);
    }
}

/// Grants realms until there are `count`.
QCoro::Task<> growTo(Tour& tour, AppModel& model, int count)
{
    SnapshotStore store(applicationDirectory().appending("snapshots.json"));
    constexpr int sampleCount = std::size(samples);
    for (int index = static_cast<int>(model.grants().size()); index < count; ++index) {
        const Sample& sample = samples[index % sampleCount];
        const int round = index / sampleCount;
        const std::string name =
            round == 0 ? sample.name : std::string(sample.name) + " " + std::to_string(round + 1);
        const fs::path place = tour.realms() / "lands" / name;
        fs::create_directories(place);
        const FileURL realm = FileURL::directory(place.native());
        co_await model.grantRealm(realm);
        store.save(snapshotOf(realm, sample, sample.bytes / (round + 1)));
    }
    co_await model.showTerritories();
    // What was stored behind the model's back it has not been told of.
    co_await model.loadTerritories();
}

QScrollArea& pageOf(Stage& stage)
{
    return *qobject_cast<QScrollArea*>(stage.window().page());
}

void press(QWidget& widget, Qt::Key key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

QCoro::Task<> takeEmptyMap(Tour& tour, Stage& stage)
{
    TerritoriesView alone(stage.model(), tour.theme());
    alone.setPalette(tour.theme().windowPalette());
    alone.resize(usualSize.width() - Measure::sidebarWidth, usualSize.height());
    alone.show();
    co_await stage.settle();
    tour.camera().take(alone, "70-territories-none-light");
    stage.pool().hold();
    QCoro::Task<> load = stage.model().loadTerritories();
    co_await stage.repaint();
    tour.camera().take(alone, "71-territories-loading-first-light");
    stage.pool().release();
    co_await load;
}

QCoro::Task<> takeCrowdedMap(Tour& tour, Stage& stage)
{
    co_await growTo(tour, stage.model(), manyRealms);
    co_await stage.settle();
    co_await tour.takeWholePage(stage, "75-territories-fifty");
    auto& map = *stage.window().findChild<TerritoryMapView*>();
    QApplication::setActiveWindow(&stage.window());
    map.setFocus(Qt::TabFocusReason);
    press(map, Qt::Key_End);
    pageOf(stage).ensureWidgetVisible(&map);
    co_await tour.take(stage, "76-territories-by-keyboard");
    for (const auto& [suffix, size] :
         {std::pair("small", smallSize), std::pair("large", largeSize)}) {
        stage.window().resize(size);
        co_await tour.take(stage, std::string("77-territories-fifty-") + suffix);
    }
    stage.window().resize(usualSize);
}

QCoro::Task<> takeEditor(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    co_await model.selectRealm(FileURL::directory(model.grants().front().path));
    co_await stage.settle();
    stage.window().findChild<ShieldButton*>()->click();
    co_await tour.take(stage, "78-shield-editor");
    auto* editor = stage.window().findChild<ShieldEditorPopover*>();
    for (ShieldChoiceRow* row : editor->findChildren<ShieldChoiceRow*>()) {
        row->findChildren<ShieldChoice*>().last()->click();
    }
    // The page behind shows it once the choices have come to rest.
    co_await qCoro(&model, &AppModel::realmIdentityStoreChanged, std::chrono::seconds(2));
    stage.window().resize(smallSize);
    co_await tour.take(stage, "79-shield-repainted-small");
    editor->reject();
    model.resetShield(model.activeRootURL()->path());
    stage.window().resize(usualSize);
    co_await stage.settle();
}

}  // namespace

QCoro::Task<> showLand(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    const std::vector<Grant> before = model.grants();
    removeAllRealms(model);
    co_await stage.settle();
    co_await takeEmptyMap(tour, stage);

    co_await growTo(tour, model, 1);
    co_await tour.take(stage, "72-territories-one");
    co_await growTo(tour, model, 3);
    co_await tour.take(stage, "73-territories-three");
    co_await growTo(tour, model, std::size(samples));
    model.setCadence(PatrolCadence::weekly, model.grants().front());
    model.setCadence(PatrolCadence::daily, model.grants().back());
    co_await stage.settle();
    for (const auto& [name, palette] :
         {std::pair("ember", AppPaletteTheme::ember), std::pair("tide", AppPaletteTheme::tide),
          std::pair("dusk", AppPaletteTheme::dusk),
          std::pair("woodland", AppPaletteTheme::woodland)}) {
        tour.theme().setPaletteTheme(palette);
        co_await tour.takeWholePage(stage, std::string("74-territories-") + name);
    }
    stage.pool().hold();
    QCoro::Task<> load = model.loadTerritories();
    co_await stage.repaint();
    tour.camera().take(stage.window(), "74-territories-loading-light");
    stage.pool().release();
    co_await load;

    co_await takeCrowdedMap(tour, stage);
    co_await takeEditor(tour, stage);

    removeAllRealms(model);
    for (const Grant& grant : before) {
        if (fs::exists(grant.path)) {
            co_await model.grantRealm(FileURL::directory(grant.path));
        }
    }
    co_await stage.settle();
}

}  // namespace gruk::tour
