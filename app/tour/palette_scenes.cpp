#include "app/tour/palette_scenes.h"

#include <QScrollArea>
#include <QScrollBar>

#include "app/screens/shield_button.h"
#include "app/theme/popover.h"
#include "app/theme/sheet.h"
#include "app/tour/tour.h"

namespace gruk::tour {

namespace {

constexpr QSize veryLargeSize{3840, 2160};

QCoro::Task<> showPages(Tour& tour, Stage& stage, std::string palette)
{
    const FileURL realm = *stage.model().activeRootURL();
    if (auto* page = qobject_cast<QScrollArea*>(stage.window().page())) {
        page->verticalScrollBar()->setValue(0);
    }
    co_await tour.take(stage, "90-patrol-" + palette);
    stage.window().findChild<ShieldButton*>()->click();
    co_await stage.settle();
    co_await tour.take(stage, "91-shield-editor-" + palette);
    for (Popover* popover : stage.window().findChildren<Popover*>()) {
        popover->reject();
    }
    stage.window().setDetailPage(DetailPage::browse);
    co_await tour.take(stage, "92-browse-" + palette);
    stage.window().setDetailPage(DetailPage::patrol);
    co_await stage.model().showTerritories();
    co_await tour.take(stage, "93-territories-" + palette);
    stage.window().showWalkthrough();
    co_await tour.take(stage, "94-walkthrough-" + palette);
    for (Sheet* sheet : stage.window().findChildren<Sheet*>()) {
        sheet->accept();
    }
    co_await stage.model().selectRealm(realm);
    co_await stage.settle();
}

}  // namespace

QCoro::Task<> showPalettes(Tour& tour, Stage& stage)
{
    const AppPaletteTheme former = tour.theme().paletteTheme();
    for (std::size_t number = 0; number < paletteThemeCount; ++number) {
        const auto palette = static_cast<AppPaletteTheme>(number);
        tour.theme().setPaletteTheme(palette);
        co_await showPages(tour, stage, std::string(rawName(palette)));
    }
    tour.theme().setPaletteTheme(former);

    stage.window().resize(veryLargeSize);
    co_await tour.take(stage, "95-very-large");
    stage.window().resize(smallSize);
    co_await stage.settle();
    tour.camera().take(stage.window(), "96-small-light-2x", 2);
    stage.window().resize(usualSize);
    co_await stage.settle();
}

}  // namespace gruk::tour
