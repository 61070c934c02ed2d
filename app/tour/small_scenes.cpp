#include "app/tour/small_scenes.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QMenu>

#include "app/screens/browse_table.h"
#include "app/screens/file_table_view.h"
#include "app/theme/picker.h"
#include "app/tour/tour.h"
#include "platform/files/known_folders.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

/// The button that can be seen and is read, or called, as `name`.
QAbstractButton& named(Stage& stage, const QString& name)
{
    for (QAbstractButton* button : stage.window().findChildren<QAbstractButton*>()) {
        if (button->isVisible()
            && (button->text() == name || button->accessibleName() == name
                || button->objectName() == name)) {
            return *button;
        }
    }
    throw std::runtime_error("no button \"" + name.toStdString() + "\"");
}

QMenu& openMenu()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* menu = qobject_cast<QMenu*>(widget);
        if (menu != nullptr && menu->isVisible()) {
            return *menu;
        }
    }
    throw std::runtime_error("no menu is open");
}

QCoro::Task<> takeMenu(Tour& tour, Stage& stage, QString button, std::string name)
{
    named(stage, button).click();
    co_await stage.repaint();
    QMenu& menu = openMenu();
    if (!menu.actions().isEmpty()) {
        menu.setActiveAction(menu.actions().constFirst());
    }
    co_await tour.takeAlone(stage, menu, std::move(name));
    menu.close();
    co_await stage.repaint();
}

QCoro::Task<> showMenus(Tour& tour, Stage& stage)
{
    co_await takeMenu(tour, stage, QStringLiteral("findingsFilter"), "27-filter-menu");
    co_await takeMenu(tour, stage, QStringLiteral("windowMenu"), "28-window-menu");
    named(stage, QStringLiteral("Automations")).click();
    co_await stage.settle();
    auto* picker = stage.window().findChild<Picker*>();
    picker->showPopup();
    co_await tour.takeAlone(stage, *picker->view()->window(), "29-picker");
    picker->hidePopup();
    named(stage, QStringLiteral("Automations")).click();
    co_await stage.settle();
}

QCoro::Task<> showBrowseMenus(Tour& tour, Stage& stage)
{
    const FileURL realm = *stage.model().activeRootURL();
    stage.window().setDetailPage(DetailPage::browse);
    co_await stage.settle();
    auto* table = stage.window().findChild<BrowseTable*>();
    table->selectAll();
    Q_EMIT table->menuAsked(QPoint());
    co_await tour.takeAlone(stage, openMenu(), "67-browse-menu");
    openMenu().close();
    fs::path deep = realm.path();
    for (const char* name : {"Projects", "website", "node_modules", "package-0", "lib", "inner"}) {
        deep /= name;
    }
    fs::create_directories(deep);
    stage.window().resize(smallSize);
    stage.model().session().open(FileURL::directory(deep.native()));
    co_await stage.settle();
    co_await takeMenu(tour, stage, QStringLiteral("Folders between"), "68-browse-fold-menu");
    stage.window().resize(usualSize);
    stage.window().setDetailPage(DetailPage::patrol);
    co_await stage.settle();
}

QCoro::Task<> showRuleBanner(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    const FileURL realm = *model.activeRootURL();
    model.addRealmRule(FileKind::installer, "Installers", true, realm);
    std::ofstream(fs::path(realm.path()) / "Editor-5.0.dmg") << "new";
    co_await model.patrolActiveRealm();
    co_await tour.take(stage, "69-rule-banner");
    model.saveRealmRules({}, realm);
    fs::remove(fs::path(realm.path()) / "Editor-5.0.dmg");
    co_await model.patrolActiveRealm();
    co_await stage.settle();
}

QCoro::Task<> showPlaces(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    const FileURL realm = *model.activeRootURL();
    const FileURL home = homeDirectory();
    for (const char* name : {"Desktop", "Downloads"}) {
        fs::create_directories(fs::path(home.path()) / name);
    }
    co_await model.grantRealm(home);
    co_await tour.take(stage, "97-places");
    const std::vector<Grant> grants = model.grants();
    for (const Grant& grant : grants) {
        if (FileURL::directory(grant.path).path() == home.path()) {
            model.removeRealm(grant);
        }
    }
    co_await model.selectRealm(realm);
    co_await stage.settle();
}

}  // namespace

QCoro::Task<> showSmallThings(Tour& tour, Stage& stage)
{
    co_await showMenus(tour, stage);
    co_await showBrowseMenus(tour, stage);
    co_await showRuleBanner(tour, stage);
    co_await showPlaces(tour, stage);
}

}  // namespace gruk::tour
