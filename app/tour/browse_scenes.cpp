#include "app/tour/browse_scenes.h"

#include <filesystem>
#include <string>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_table.h"
#include "app/screens/file_table_view.h"
#include "app/tour/sample_realm.h"
#include "app/tour/space.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t megabyte = 1'000'000;
constexpr QSize largeSize{1920, 1080};
constexpr int deepFolders = 14;

FileURL urlOf(const fs::path& path)
{
    return FileURL::directory(path.native());
}

/// A realm to walk about in: every kind of item, names of every kind, something deep and something
/// empty.
void makeWoods(const fs::path& root)
{
    makeSampleRealm(root);
    for (const char* name : {"a walk in the woods.mkv", "song of the forest.mp3", "map.png",
                             "old letters.zip", "Setup-2.1.exe", "ledger.pdf", "README", "notes.md",
                             "bad\xFFname.doc", "Ünïcödé – naïve 日本語.txt"}) {
        makeFileOfSize(root / name, std::char_traits<char>::length(name) * megabyte,
                       std::char_traits<char>::length(name) * megabyte);
    }
    makeFileOfSize(root / std::string(220, 'l'), megabyte, megabyte);
    fs::create_directories(root / "Clearing");
    fs::path deep = root / "Paths";
    for (int i = 0; i < deepFolders; ++i) {
        deep /= "further into the woods " + std::to_string(i + 1);
    }
    fs::create_directories(deep);
    makeFileOfSize(deep / "treasure.txt", megabyte, megabyte);
}

FileTableView& page(Stage& stage)
{
    return *stage.window().findChild<FileTableView*>();
}

QCoro::Task<> showArrival(Tour& tour, Stage& stage, fs::path woods)
{
    stage.pool().hold();
    stage.model().session().reset();
    stage.model().session().open(urlOf(woods));
    co_await stage.repaint();
    tour.camera().take(stage.window(), "80-browse-measuring-light");
    stage.pool().release();
    co_await stage.settle();
}

QCoro::Task<> showRows(Tour& tour, Stage& stage, fs::path woods)
{
    co_await tour.take(stage, "81-browse");
    for (const auto& [suffix, size] :
         {std::pair("small", smallSize), std::pair("large", largeSize)}) {
        stage.window().resize(size);
        co_await tour.take(stage, std::string("82-browse-") + suffix);
    }
    stage.window().resize(usualSize);
    stage.window().activateWindow();
    auto& table = *page(stage).findChild<BrowseTable*>();
    table.setFocus(Qt::TabFocusReason);
    table.select({urlOf(woods / "Downloads"), FileURL((woods / "ledger.pdf").native())},
                 FileURL((woods / "ledger.pdf").native()));
    co_await tour.take(stage, "83-browse-selected");
}

QCoro::Task<> showDeepPath(Tour& tour, Stage& stage, fs::path woods)
{
    fs::path deep = woods / "Paths";
    while (fs::is_directory(*fs::directory_iterator(deep))) {
        deep = *fs::directory_iterator(deep);
    }
    stage.model().session().open(urlOf(deep));
    co_await tour.take(stage, "84-browse-deep");
    page(stage).findChild<BreadcrumbBar*>()->crumbs()[deepFolders / 2]->setFocus(
        Qt::TabFocusReason);
    co_await tour.take(stage, "85-browse-deep-by-keyboard");
}

QCoro::Task<> showNothing(Tour& tour, Stage& stage, fs::path woods)
{
    stage.model().session().open(urlOf(woods / "Clearing"));
    co_await tour.take(stage, "86-browse-empty");
    stage.model().session().open(urlOf(woods));
    page(stage).focusFilter();
    stage.model().session().setFilterText("dragon");
    co_await tour.take(stage, "87-browse-filtered-away");
    stage.model().session().setFilterText("");
    stage.model().session().open(urlOf(woods / "gone"));
    co_await tour.take(stage, "88-browse-gone");
}

}  // namespace

QCoro::Task<> showBrowse(Tour& tour, Stage& stage)
{
    const fs::path woods = tour.realms() / "Woods";
    makeWoods(woods);
    co_await stage.model().grantRealm(urlOf(woods));
    stage.window().setDetailPage(DetailPage::browse);
    co_await stage.settle();
    co_await showArrival(tour, stage, woods);
    co_await showRows(tour, stage, woods);
    co_await showDeepPath(tour, stage, woods);
    co_await showNothing(tour, stage, woods);
    stage.window().setDetailPage(DetailPage::patrol);
    co_await stage.settle();
}

}  // namespace gruk::tour
