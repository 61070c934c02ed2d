#include "app/tour/hard_scenes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <QCoro/QCoroSignal>
#include <QScrollBar>
#include <QTimer>

#include "app/screens/unseen_places_list.h"
#include "app/theme/button.h"
#include "app/tour/large_store.h"
#include "app/tour/sample_realm.h"
#include "app/tour/space.h"
#include "app/tour/tour.h"
#include "core/patrol/metadata_reader.h"
#include "platform/foundation/errors.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr unsigned manyRealms = 50;
constexpr std::uint64_t kilobyte = 1'024;
constexpr std::uintmax_t largeStore = 500'000'000;
constexpr std::chrono::milliseconds longestHold{1'000};
/// So tall that the patrol bar, the panel and the findings are in one picture.
constexpr QSize tallSize{Measure::defaultWindowWidth, 1'300};

/// Beats on the main thread and remembers the longest pause between two beats.
class Heart {
public:
    Heart()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        timer_.start(interval);
    }

    [[nodiscard]] std::chrono::milliseconds longestPause()
    {
        beat();
        return std::chrono::duration_cast<std::chrono::milliseconds>(longest_);
    }

private:
    static constexpr std::chrono::milliseconds interval{5};

    void beat()
    {
        const auto now = std::chrono::steady_clock::now();
        longest_ = std::max(longest_, now - last_ - interval);
        last_ = now;
    }

    QTimer timer_;
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration longest_{};
};

/// Takes the window in both schemes, while work that it waits for goes on.
QCoro::Task<> takeMeanwhile(Tour& tour, Stage& stage, std::string name)
{
    for (const ColourScheme scheme : {ColourScheme::dark, ColourScheme::light}) {
        tour.setScheme(scheme);
        co_await stage.repaint();
        tour.camera().take(stage.window(),
                           name + (scheme == ColourScheme::light ? "-light" : "-dark"));
    }
}

/// The items of a folder as if those that are called closed were, and what lies in "media" were on
/// another disk.
std::vector<FileEntry> withUnseenPlaces(const FileURL& folder)
{
    if (folder.lastPathComponent().starts_with("closed")) {
        throw FileError(std::make_error_code(std::errc::permission_denied), "list", folder.path());
    }
    std::vector<FileEntry> entries = MetadataReader::entries(folder);
    for (FileEntry& entry : entries) {
        entry.deviceID += folder.lastPathComponent() == "media" ? 1 : 0;
    }
    return entries;
}

QCoro::Task<> historyOf(AppModel& model)
{
    while (model.isLoadingRealmHistory()) {
        co_await qCoro(&model, &AppModel::isLoadingRealmHistoryChanged);
    }
}

FileURL urlOf(const fs::path& path)
{
    return FileURL::directory(path.native());
}

void makeFile(const fs::path& at, std::uint64_t size)
{
    fs::create_directories(at.parent_path());
    makeFileOfSize(at, size, size);
}

void makePair(const fs::path& folder, const std::string& stem)
{
    makeFile(folder / (stem + ".pdf"), 64 * kilobyte);
    makeFile(folder / (stem + " (1).pdf"), 64 * kilobyte);
}

fs::path makeNames(const fs::path& root)
{
    makePair(root, std::string(247, 'n'));
    makePair(root, "שלום עולם קובץ ארוך");
    makePair(root, "🐻‍❄️ 🏔️ emoji");
    makePair(root, "a line\nbreak and a\ttab");
    makePair(root, "not \xff\xfe text");
    makePair(root, "<b>markup</b> &amp; %1");
    return root;
}

QCoro::Task<> patrol(Stage& stage, fs::path realm)
{
    co_await stage.model().grantRealm(urlOf(realm));
    co_await stage.settle();
    co_await stage.model().patrolActiveRealm();
    co_await stage.settle();
}

QCoro::Task<> showFiftyRealms(Tour& tour, Stage& stage)
{
    for (unsigned number = 1; number <= manyRealms; ++number) {
        const fs::path realm = tour.realms() / "many" / ("Realm " + std::to_string(number));
        makeFile(realm / "file", number * number * 16 * kilobyte);
        co_await patrol(stage, realm);
    }
    co_await stage.model().showTerritories();
    co_await tour.take(stage, "64-fifty-realms");
}

}  // namespace

QCoro::Task<> showHardTimes(Tour& tour, Stage& stage)
{
    const fs::path empty = tour.realms() / "Empty";
    fs::create_directories(empty);
    co_await patrol(stage, empty);
    co_await tour.take(stage, "60-realm-with-nothing");
    stage.window().setDetailPage(DetailPage::browse);
    co_await tour.take(stage, "61-browse-with-nothing");
    stage.window().setDetailPage(DetailPage::patrol);

    co_await patrol(stage, makeNames(tour.realms() / "שמות \n names \xff"));
    co_await tour.takeWholePage(stage, "62-names");
    stage.window().setDetailPage(DetailPage::browse);
    co_await tour.take(stage, "63-browse-names");
    stage.window().setDetailPage(DetailPage::patrol);
    co_await showFiftyRealms(tour, stage);

    const fs::path store = applicationDirectory().appending("snapshots.json").path();
    const fs::path aside = store.native() + ".aside";
    fs::rename(store, aside);
    std::ofstream(store) << "no store {";
    co_await stage.model().selectRealm(urlOf(empty));
    co_await stage.settle();
    co_await stage.model().patrolActiveRealm();
    co_await tour.take(stage, "65-store-that-makes-no-sense");
    fs::rename(aside, store);
}

QCoro::Task<> showReviewDuringPatrol(Tour& tour)
{
    const auto gate = std::make_shared<WalkGate>();
    Stage stage = tour.newStage(WalkGate::scannerBehind(gate));
    AppModel& model = stage.model();
    co_await model.selectRealm(urlOf(tour.realms() / "Forest"));
    co_await stage.settle();
    QCoro::Task<> patrol = model.patrolActiveRealm();
    while (!model.patrolProgress() || model.patrolProgress()->currentFolderPath.empty()) {
        co_await qCoro(&model, &AppModel::patrolProgressChanged);
    }
    co_await model.selectRealm(urlOf(tour.realms() / "Scans"));
    co_await historyOf(model);
    stage.window().resize(tallSize);
    model.setReviewOnly(true);
    co_await takeMeanwhile(tour, stage, "66-patrol-elsewhere-review-only");
    model.setReviewOnly(false);
    co_await takeMeanwhile(tour, stage, "67-patrol-elsewhere-trash-actions");
    model.setReviewOnly(true);
    gate->open();
    co_await patrol;
    co_await stage.settle();
}

QCoro::Task<> showUnseenPlaces(Tour& tour)
{
    const fs::path realm = tour.realms() / "Shared disk";
    makeFile(realm / "letters/old.txt", 64 * kilobyte);
    for (int number = 1; number <= 12; ++number) {
        fs::create_directories(realm / "homes" / ("closed " + std::to_string(number)));
    }
    fs::create_directories(realm / "media/Photographs 2019");
    fs::create_directories(realm / "media" / std::string(200, 'n'));
    Stage stage = tour.newStage(std::make_shared<SnapshotScanner>(withUnseenPlaces));
    stage.window().resize(usualSize);
    co_await patrol(stage, realm);
    for (auto* each : stage.window().findChildren<DisclosureButton*>()) {
        if (each->objectName() == QStringLiteral("unseenPlaces")) {
            each->click();
        }
    }
    auto* list = stage.window().findChild<UnseenPlacesList*>();
    list->verticalScrollBar()->setValue(list->verticalScrollBar()->maximum());
    co_await tour.take(stage, "102-unseen-places");
    stage.window().resize(smallSize);
    co_await tour.take(stage, "103-unseen-places-small");
}

QCoro::Task<> showLargeStore(Tour& tour, Stage& stage)
{
    const fs::path realm = tour.realms() / "Film archive";
    makeTidyRealm(realm);
    const FileURL store = applicationDirectory().appending("snapshots.json");
    const std::uintmax_t size = makeLargeStore(store, urlOf(realm), largeStore);
    std::fprintf(stderr, "a store of %ju bytes\n", size);

    AppModel& model = stage.model();
    stage.window().resize(usualSize);
    Heart heart;
    co_await model.grantRealm(urlOf(realm));
    co_await stage.repaint();
    if (!model.isLoadingRealmHistory()) {
        throw std::runtime_error("the large store was read before its picture was taken");
    }
    co_await takeMeanwhile(tour, stage, "68-large-store-loading");
    co_await historyOf(model);
    co_await stage.settle();
    const std::chrono::milliseconds hold = heart.longestPause();
    std::fprintf(stderr, "the window stood still for %lld ms at most\n",
                 static_cast<long long>(hold.count()));
    if (hold > longestHold) {
        throw std::runtime_error("the window stood still while a large store was read");
    }
    co_await tour.take(stage, "69-large-store");
}

}  // namespace gruk::tour
