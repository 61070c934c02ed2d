#include "app/tour/quiet_scenes.h"

#include <filesystem>
#include <string>

#include <QAbstractButton>
#include <QTabBar>

#include "app/screens/review_only_panel.h"
#include "app/screens/settings_view.h"
#include "app/screens/walkthrough_view.h"
#include "app/screens/welcome_page.h"

namespace gruk::tour {

namespace {

constexpr QSize smallPage(572, 500);
constexpr QSize usualPage(872, 690);
constexpr QSize largePage(1672, 1010);

/// Takes a widget that is no part of the stage's window, in light and in dark.
QCoro::Task<> takeBoth(Tour& tour, Stage& stage, QWidget& widget, const std::string& name)
{
    for (const AppTheme appTheme : {AppTheme::light, AppTheme::dark}) {
        tour.theme().setAppTheme(appTheme);
        co_await stage.repaint();
        tour.camera().take(widget, name + "-" + std::string(rawName(appTheme)));
    }
    tour.theme().setAppTheme(AppTheme::system);
}

QCoro::Task<> showWelcome(Tour& tour, Stage& stage)
{
    GrukWelcomeView page(stage.model(), tour.theme());
    page.setPalette(tour.theme().windowPalette());
    page.resize(usualPage);
    page.show();
    co_await takeBoth(tour, stage, page, "34-welcome");
    page.resize(smallPage);
    co_await takeBoth(tour, stage, page, "35-welcome-small");
    page.resize(largePage);
    co_await takeBoth(tour, stage, page, "36-welcome-large");
}

QCoro::Task<> showWalkthrough(Tour& tour, Stage& stage)
{
    auto* walkthrough = new WalkthroughView(tour.theme(), &stage.window());
    walkthrough->open();
    const int count = static_cast<int>(WalkthroughView::pages().size());
    for (int page = 0; page < count; ++page) {
        walkthrough->setPage(page);
        co_await stage.repaint();
        co_await tour.take(stage, "37-walkthrough-" + std::to_string(page + 1));
    }
    walkthrough->accept();
    co_await stage.repaint();
}

/// The settings when two realms have been removed whose past patrols are still known.
QCoro::Task<> showMemory(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    const std::optional<FileURL> open = model.activeRootURL();
    for (const char* name : {"Attic", "Cellar with everything that was ever put into it"}) {
        const std::filesystem::path realm = tour.realms() / "gone" / name;
        std::filesystem::create_directories(realm / "boxes");
        co_await model.grantRealm(FileURL::directory(realm.native()));
        co_await stage.settle();
        co_await model.patrolActiveRealm();
        co_await stage.settle();
        model.removeRealm(Grant(model.grants().back()));
    }
    SettingsView settings(model, tour.theme());
    settings.show();
    co_await stage.settle();
    co_await takeBoth(tour, stage, settings, "38-settings-memory");
    settings.findChild<QAbstractButton*>(QStringLiteral("forget"))->click();
    co_await takeBoth(tour, stage, settings, "38-settings-memory-question");
    settings.close();
    if (open) {
        co_await model.selectRealm(*open);
    }
    co_await stage.settle();
}

QCoro::Task<> showSettings(Tour& tour, Stage& stage)
{
    stage.model().setReviewOnly(true);
    SettingsView settings(stage.model(), tour.theme());
    settings.show();
    co_await stage.settle();
    for (std::size_t index = 0; index < paletteThemeCount; ++index) {
        const auto palette = static_cast<AppPaletteTheme>(index);
        tour.theme().setPaletteTheme(palette);
        co_await takeBoth(tour, stage, settings, "38-settings-" + std::string(rawName(palette)));
    }
    tour.theme().setPaletteTheme(AppPaletteTheme::woodland);
    settings.findChild<QTabBar*>()->setCurrentIndex(1);
    co_await takeBoth(tour, stage, settings, "39-settings-automations");
    settings.findChild<QTabBar*>()->setCurrentIndex(0);
    askToEnableTrashActions(stage.model(), tour.theme(), &settings);
    co_await takeBoth(tour, stage, settings, "59-settings-unlock");
}

}  // namespace

QCoro::Task<> showQuiet(Tour& tour, Stage& stage)
{
    co_await showWelcome(tour, stage);
    co_await showWalkthrough(tour, stage);
    co_await showSettings(tour, stage);
    co_await showMemory(tour, stage);
}

}  // namespace gruk::tour
