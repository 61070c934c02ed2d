#include "app/tour/tour.h"

#include <algorithm>
#include <cstdio>
#include <ranges>
#include <utility>

#include <QApplication>
#include <QCoro/QCoroSignal>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>

#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/screens/confirmation_dialog.h"
#include "app/screens/finding_row.h"
#include "app/screens/findings_section.h"
#include "app/screens/realm_row.h"
#include "app/theme/house_style.h"
#include "app/theme/sheet.h"
#include "app/tour/art_scenes.h"
#include "app/tour/browse_scenes.h"
#include "app/tour/hard_scenes.h"
#include "app/tour/land_scenes.h"
#include "app/tour/palette_scenes.h"
#include "app/tour/quiet_scenes.h"
#include "app/tour/review_scenes.h"
#include "app/tour/sample_realm.h"
#include "app/tour/shield_sheet.h"
#include "app/tour/small_scenes.h"
#include "app/tour/tray_scenes.h"
#include "app/tour/tree_copy.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr int crowdedFindings = 2'000;
constexpr QSize largeSize{1920, 1080};
constexpr int tallestPage = 6'000;
constexpr std::pair<const char*, AppPaletteTheme> palettes[] = {
    {"woodland", AppPaletteTheme::woodland},
    {"ember", AppPaletteTheme::ember},
    {"tide", AppPaletteTheme::tide},
    {"dusk", AppPaletteTheme::dusk},
};

FileURL urlOf(const fs::path& path)
{
    return FileURL::directory(path.native());
}

QScrollArea* pageOf(Stage& stage)
{
    return qobject_cast<QScrollArea*>(stage.window().page());
}

}  // namespace

Tour::Tour(Camera& camera, fs::path realms, std::optional<fs::path> folder, Length length)
    : camera_(camera), realms_(std::move(realms)), folder_(std::move(folder)), length_(length),
      loop_(std::make_shared<QtRunLoop>()), threads_(std::make_shared<QtTaskPool>())
{
    installHouseStyle(theme_);
    // A picture shows where a movement ends.
    theme_.setReducedMotion(true);
    makeRealms();
}

void Tour::makeRealms()
{
    makeSampleRealm(realms_ / "Forest");
    makeTidyRealm(realms_ / "Letters");
    makeTidyRealm(realms_ / "Old disk");
    makeCrowdedRealm(realms_ / "Scans", crowdedFindings);
    realm_ = realms_ / "Forest";
    if (folder_) {
        const fs::path source = fs::canonical(*folder_);
        // The root has no name.
        realm_ = realms_ / "copy" / (source.has_filename() ? source.filename() : fs::path("root"));
        const TreeCopy copy = copyTree(source, realm_);
        std::fprintf(stderr, "copied %lld items of %s, left out %lld%s\n",
                     static_cast<long long>(copy.copied), source.c_str(),
                     static_cast<long long>(copy.skipped),
                     copy.hasSpaceOfOriginal ? "" : "; the larger files take no space");
    }
}

void Tour::changeRealm()
{
    if (folder_) {
        changeCopy(realm_);
    } else {
        changeSampleRealm(realm_);
    }
}

QCoro::Task<> Tour::run()
{
    {
        Stage stage(theme_, loop_, threads_);
        co_await showFirstStart(stage);
        co_await showPatrols(stage);
        co_await showLooks(stage);
        co_await showOpenParts(stage);
        co_await showTidyRealm(stage);
        co_await showCrowdedRealm(stage);
        co_await showLostRealm(stage);
        co_await showRemoval(stage);
        co_await showMessages(stage);
        if (folder_) {
            co_await goOnInTheForest(stage);
        }
        co_await showReview(*this, stage);
        co_await showSmallThings(*this, stage);
        co_await showPalettes(*this, stage);
        co_await showLand(*this, stage);
        co_await showTray(*this, stage);
        co_await showQuiet(*this, stage);
        co_await showBrowse(*this, stage);
        co_await showHardTimes(*this, stage);
    }
    co_await showRunningPatrol();
    co_await showPatrolElsewhere();
    co_await showReviewDuringPatrol(*this);
    co_await showUnseenPlaces(*this);
    if (length_ == Length::withHardTimes) {
        Stage stage = newStage(nullptr);
        co_await showLargeStore(*this, stage);
    }
    showShields();
    showArt(*this);
}

QCoro::Task<> Tour::showFirstStart(Stage& stage)
{
    co_await take(stage, "01-welcome");
    stage.window().showWalkthrough();
    co_await take(stage, "98-first-start");
    for (Sheet* sheet : stage.window().findChildren<Sheet*>()) {
        sheet->accept();
    }
    co_await stage.model().grantRealm(urlOf(realm_));
    co_await take(stage, "02-no-baseline");
}

QCoro::Task<> Tour::showPatrols(Stage& stage)
{
    co_await stage.model().patrolActiveRealm();
    co_await take(stage, "04-after-first-patrol");
    changeRealm();
    co_await stage.model().patrolActiveRealm();
    co_await take(stage, "05-after-second-patrol");
    co_await takeWholePage(stage, "06-whole-page");
}

QCoro::Task<> Tour::showLooks(Stage& stage)
{
    for (const auto& [suffix, size] :
         {std::pair("small", smallSize), std::pair("large", largeSize)}) {
        stage.window().resize(size);
        co_await take(stage, std::string("07-after-second-patrol-") + suffix);
    }
    stage.window().resize(usualSize);
    co_await stage.settle();
    camera_.take(stage.window(), "08-after-second-patrol-light-2x", 2);

    for (const auto& [name, palette] : palettes | std::views::drop(1)) {
        theme_.setPaletteTheme(palette);
        co_await take(stage, std::string("09-palette-") + name);
    }
    theme_.setPaletteTheme(AppPaletteTheme::woodland);
}

QCoro::Task<> Tour::showOpenParts(Stage& stage)
{
    // What is out of view has no rows.
    const auto* findings = stage.window().findChild<FindingsSection*>();
    pageOf(stage)->verticalScrollBar()->setValue(findings->y());
    co_await stage.settle();
    const auto rows = stage.window().findChildren<FindingRow*>();
    if (!rows.isEmpty()) {
        static_cast<QAbstractButton*>(rows.first()->disclosure())->click();
        co_await stage.settle();
        pageOf(stage)->ensureWidgetVisible(rows.first(), 0, usualSize.height() / 3);
        co_await take(stage, "10-why-open");
    }
    auto* showAll = stage.window().findChild<QPushButton*>(QStringLiteral("showAllHeavyItems"));
    if (showAll != nullptr && showAll->isVisible()) {
        showAll->click();
        co_await stage.settle();
    }
    QScrollBar* bar = pageOf(stage)->verticalScrollBar();
    bar->setValue(bar->maximum());
    co_await take(stage, "11-all-of-the-big-stuff");
}

QCoro::Task<> Tour::showTidyRealm(Stage& stage)
{
    co_await stage.model().grantRealm(urlOf(realms_ / "Letters"));
    co_await stage.settle();
    co_await stage.model().patrolActiveRealm();
    co_await stage.model().patrolActiveRealm();
    co_await take(stage, "14-nothing-to-review");

    stage.pool().hold();
    co_await stage.model().selectRealm(urlOf(realm_));
    co_await stage.repaint();
    camera_.take(stage.window(), "15-loading-light");
    stage.pool().release();
    co_await stage.settle();
}

QCoro::Task<> Tour::showCrowdedRealm(Stage& stage)
{
    co_await stage.model().grantRealm(urlOf(realms_ / "Scans"));
    co_await stage.settle();
    co_await stage.model().patrolActiveRealm();
    co_await stage.settle();
    pageOf(stage)->verticalScrollBar()->setValue(usualSize.height());
    co_await take(stage, "16-too-much");
}

QCoro::Task<> Tour::showLostRealm(Stage& stage)
{
    co_await stage.model().grantRealm(urlOf(realms_ / "Old disk"));
    co_await stage.settle();
    const fs::path renamed = realms_ / "Renamed disk";
    fs::rename(realms_ / "Old disk", renamed);
    co_await stage.model().patrolActiveRealm();
    co_await stage.settle();
    auto* row = stage.window().findChild<DisconnectedRealmRow*>();
    co_await take(stage, "17-renamed-realm");
    Q_EMIT row->renamingRequested();
    co_await take(stage, "17-renamed-realm-question");
    stage.window().findChild<ConfirmationDialog*>(QStringLiteral("renamingDialog"))->reject();
    fs::remove_all(renamed);
    co_await stage.model().patrolActiveRealm();
    co_await take(stage, "17-disconnected-realm");
}

QCoro::Task<> Tour::showRemoval(Stage& stage)
{
    auto* row = stage.window().findChild<RealmRow*>();
    Q_EMIT row->customContextMenuRequested(row->rect().center());
    auto* menu = row->findChild<QMenu*>();
    co_await stage.repaint();
    camera_.take(*menu, "18-realm-menu-light");
    menu->actions().constFirst()->trigger();
    menu->close();
    co_await stage.repaint();
    auto* dialog = stage.window().findChild<ConfirmationDialog*>(QStringLiteral("removalDialog"));
    camera_.take(stage.window(), "19-removal-light");
    dialog->reject();
    co_await stage.repaint();
}

QCoro::Task<> Tour::showMessages(Stage& stage)
{
    AppModel& model = stage.model();
    co_await model.selectRealm(urlOf(realm_));
    co_await stage.settle();
    const std::vector<ReviewFinding> findings = model.findings();
    model.moveFindingsToTrash(findings);
    co_await take(stage, "20-review-only-stopped-it");
    model.setReviewOnly(false);
    model.moveFindingsToTrash(findings);
    co_await take(stage, "21-moved-to-trash");
    pageOf(stage)->verticalScrollBar()->setValue(usualSize.height());
    co_await take(stage, "101-message-in-sight");
    pageOf(stage)->verticalScrollBar()->setValue(0);
    model.undoLastTrash();
    co_await take(stage, "22-restored-from-trash");
    if (const auto plan = model.organisePlanForActiveRealm()) {
        model.organise(*plan);
        co_await take(stage, "23-organised");
        model.undoLastOrganise();
        co_await take(stage, "24-put-back");
    }
    model.tidyDesktop();
    co_await take(stage, "25-no-access-to-the-desktop");
    co_await model.patrolAllRealms();
    co_await take(stage, "26-all-realms-patrolled");
    // The pages that have no place of their own for what is said show it too.
    const FileURL last = model.activeRootURL().value();
    stage.window().setDetailPage(DetailPage::browse);
    co_await take(stage, "89-message-over-the-folders");
    stage.window().setDetailPage(DetailPage::patrol);
    co_await model.showTerritories();
    co_await take(stage, "99-message-over-the-territories");
    co_await model.selectRealm(last);
}

QCoro::Task<> Tour::goOnInTheForest(Stage& stage)
{
    const fs::path forest = realms_ / "Forest";
    co_await stage.model().grantRealm(urlOf(forest));
    co_await stage.settle();
    co_await stage.model().patrolActiveRealm();
    changeSampleRealm(forest);
    co_await stage.model().patrolActiveRealm();
    co_await stage.settle();
}

QCoro::Task<> Tour::showRunningPatrol()
{
    const auto gate = std::make_shared<WalkGate>();
    Stage stage(theme_, loop_, threads_, WalkGate::scannerBehind(gate));
    AppModel& model = stage.model();
    co_await model.selectRealm(urlOf(realms_ / "Forest"));
    co_await model.grantRealm(urlOf(realms_ / "Forest"));
    co_await stage.settle();
    QCoro::Task<> patrol = model.patrolActiveRealm();
    while (!model.patrolProgress() || model.patrolProgress()->currentFolderPath.empty()) {
        co_await qCoro(&model, &AppModel::patrolProgressChanged);
    }
    for (const ColourScheme scheme : {ColourScheme::light, ColourScheme::dark}) {
        setScheme(scheme);
        co_await stage.repaint();
        camera_.take(stage.window(),
                     scheme == ColourScheme::light ? "03-patrolling-light" : "03-patrolling-dark");
    }
    setScheme(ColourScheme::light);
    model.cancelPatrol();
    gate->open();
    co_await patrol;
    co_await take(stage, "12-patrol-stopped");
}

QCoro::Task<> Tour::showPatrolElsewhere()
{
    const auto gate = std::make_shared<WalkGate>();
    Stage stage(theme_, loop_, threads_, WalkGate::scannerBehind(gate));
    AppModel& model = stage.model();
    co_await model.grantRealm(urlOf(realms_ / "Forest"));
    co_await stage.settle();
    QCoro::Task<> patrol = model.patrolActiveRealm();
    while (!model.patrolProgress() || model.patrolProgress()->currentFolderPath.empty()) {
        co_await qCoro(&model, &AppModel::patrolProgressChanged);
    }
    co_await model.selectRealm(urlOf(realms_ / "Letters"));
    co_await qCoro(&model, &AppModel::isLoadingRealmHistoryChanged);
    co_await stage.repaint();
    camera_.take(stage.window(), "13-patrol-elsewhere-light");
    gate->open();
    co_await patrol;
    co_await stage.settle();
}

void Tour::showShields()
{
    ShieldSheet sheet(theme_);
    sheet.ensurePolished();
    sheet.resize(sheet.sizeHint());
    for (const auto& [name, palette] : palettes) {
        theme_.setPaletteTheme(palette);
        setScheme(ColourScheme::dark);
        camera_.take(sheet, std::string("30-shields-") + name + "-dark");
        setScheme(ColourScheme::light);
        camera_.take(sheet, std::string("30-shields-") + name + "-light");
    }
    theme_.setPaletteTheme(AppPaletteTheme::woodland);
    camera_.take(sheet, "30-shields-woodland-light-2x", 2);
}

QCoro::Task<> Tour::take(Stage& stage, std::string name)
{
    setScheme(ColourScheme::dark);
    co_await stage.settle();
    camera_.take(stage.window(), name + "-dark");
    setScheme(ColourScheme::light);
    co_await stage.settle();
    camera_.take(stage.window(), name + "-light");
}

QCoro::Task<> Tour::takeWholePage(Stage& stage, std::string name)
{
    const int beyond = pageOf(stage)->verticalScrollBar()->maximum();
    stage.window().resize(usualSize.width(), std::min(usualSize.height() + beyond, tallestPage));
    co_await take(stage, std::move(name));
    stage.window().resize(usualSize);
    co_await stage.settle();
}

QCoro::Task<> Tour::takeAlone(Stage& stage, QWidget& widget, std::string name)
{
    for (const ColourScheme scheme : {ColourScheme::dark, ColourScheme::light}) {
        setScheme(scheme);
        co_await stage.repaint();
        camera_.take(widget, name + (scheme == ColourScheme::dark ? "-dark" : "-light"));
    }
}

Stage Tour::newStage(std::shared_ptr<SnapshotScanner> scanner)
{
    return {theme_, loop_, threads_, std::move(scanner)};
}

void Tour::setScheme(ColourScheme scheme)
{
    // As a desktop does it: by the application's palette, which the theme follows.
    const bool isDark = scheme == ColourScheme::dark;
    QPalette palette;
    palette.setColor(QPalette::Window, isDark ? Qt::black : Qt::white);
    palette.setColor(QPalette::WindowText, isDark ? Qt::white : Qt::black);
    QApplication::setPalette(palette);
}

}  // namespace gruk::tour
