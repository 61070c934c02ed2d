#include "app/tour/hard_scenes.h"

#include <fstream>

#include "app/tour/space.h"
#include "app/tour/tour.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr unsigned manyRealms = 50;
constexpr std::uint64_t kilobyte = 1'024;

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

}  // namespace gruk::tour
