#include "app/tour/tray_scenes.h"

#include <memory>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/screens/desktop_tidy_section.h"
#include "app/screens/filing_rules_form.h"
#include "app/screens/hoard_confirmation.h"
#include "app/screens/menu_bar_view.h"
#include "app/screens/organise_row.h"
#include "app/screens/organise_sheet.h"
#include "app/screens/realm_automation_card.h"
#include "app/theme/paper_backdrop.h"
#include "app/tour/space.h"
#include "platform/files/known_folders.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t megabyte = 1'000'000;

/// A folder with loose files of every kind.
void makeLooseFiles(const fs::path& root)
{
    fs::create_directories(root / "Projects");
    for (const char* name :
         {"Screenshot 2026-11-20 at 09.14.22.png", "Screenshot 2026-11-21 at 18.02.51.png",
          "forest.jpg", "map of the valley.png", "walk.mov", "song of the forest.mp3",
          "invoice.pdf", "manual.pdf", "backup.zip", "Editor-4.2.dmg", "letter.docx", "notes.txt",
          "strange thing", "another one.xyz"}) {
        makeFileOfSize(root / name, 3 * megabyte, 3 * megabyte);
    }
    fs::create_directories(root / "Tool.app");
}

/// Paper of that width with `content` on it.
std::unique_ptr<QWidget> onPaper(Theme& theme, QWidget* content, int width)
{
    auto paper = std::make_unique<PaperBackdrop>(theme);
    paper->setPalette(theme.windowPalette());
    auto* column = new QVBoxLayout(paper.get());
    column->setContentsMargins(Measure::pageMargin, Measure::pageMargin, Measure::pageMargin,
                               Measure::pageMargin);
    column->addWidget(content);
    column->addStretch();
    paper->setFixedWidth(width);
    paper->show();
    return paper;
}

void fit(QWidget& paper)
{
    paper.layout()->activate();
    paper.resize(paper.width(), paper.layout()->totalHeightForWidth(paper.width()));
}

QCoro::Task<> showPanel(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    GrukMenuBarView panel(model, tour.theme());
    panel.showAt({}, {});
    co_await tour.takeAlone(stage, panel, "40-panel");
    stage.pool().hold();
    QCoro::Task<> patrol = model.patrolActiveRealm();
    co_await tour.takeAlone(stage, panel, "41-panel-patrolling");
    stage.pool().release();
    co_await patrol;
    co_await model.showTerritories();
    co_await stage.settle();
    co_await tour.takeAlone(stage, panel, "42-panel-no-realm");
}

QCoro::Task<> showDesktopSection(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    auto* section = new DesktopTidySection(model, tour.theme());
    const auto paper =
        onPaper(tour.theme(), section, Measure::sidebarWidth - 2 * Measure::medium + 48);
    fit(*paper);
    co_await tour.takeAlone(stage, *paper, "43-tidy-without-the-desktop");

    const FileURL desktop = desktopDirectory();
    makeLooseFiles(desktop.path());
    co_await model.grantRealm(desktop);
    model.setReviewOnly(false);
    co_await stage.settle();
    fit(*paper);
    co_await tour.takeAlone(stage, *paper, "44-tidy");
    model.setReviewOnly(true);
    co_await stage.settle();
    fit(*paper);
    co_await tour.takeAlone(stage, *paper, "45-tidy-review-only");
    model.setReviewOnly(false);

    auto* question =
        new ConfirmationDialog(tour.theme(), *hoardConfirmation(model), &stage.window());
    question->open();
    co_await tour.take(stage, "46-hoard-confirmation");
    question->reject();
    co_await stage.settle();
}

void pressReturn(QWidget& widget)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(&widget, &press);
}

QCoro::Task<> showOrganiseSheet(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    const std::optional<OrganisePlan> plan = model.organisePlanForActiveRealm();
    if (!plan) {
        co_return;
    }
    auto* sheet = new OrganiseSheet(model, tour.theme(), *plan, plan->realm, &stage.window());
    sheet->open();
    co_await tour.take(stage, "47-organise");
    const auto rows = sheet->findChildren<OrganiseRow*>();
    rows[1]->pencil()->click();
    auto* field = rows[1]->findChild<QLineEdit*>();
    field->setText(QStringLiteral("Pictures/2026"));
    pressReturn(*field);
    co_await tour.take(stage, "48-organise-refused-name");
    field->setText(QStringLiteral("Pictures"));
    pressReturn(*field);
    co_await tour.take(stage, "49-organise-remembered");
    stage.window().resize(smallSize);
    co_await tour.take(stage, "50-organise-small");
    sheet->reject();
    stage.window().resize(usualSize);
    co_await stage.settle();
}

QCoro::Task<> showAutomations(Tour& tour, Stage& stage)
{
    AppModel& model = stage.model();
    const Grant grant = model.grants().back();
    const FileURL realm = FileURL::directory(grant.path);
    model.addRealmRule(FileKind::screenshot, "Screenshots", true, realm);
    model.addRealmRule(FileKind::installer, "Installers", true, realm);
    model.addRealmRule(FileKind::pdf, "Papers that somebody will read one day, all of them", false,
                       realm);
    model.setCadence(PatrolCadence::standGuard, grant);
    auto* card = new RealmAutomationCard(model, tour.theme(), grant);
    const auto paper = onPaper(tour.theme(), card, Measure::columnWidth);
    co_await stage.settle();
    fit(*paper);
    co_await tour.takeAlone(stage, *paper, "51-automations");
    card->findChild<DisclosureButton*>()->setOpen(true);
    co_await stage.settle();
    fit(*paper);
    co_await tour.takeAlone(stage, *paper, "52-filing-rules");
    while (model.realmRules(realm).size() < RealmRules::maximumRulesPerRealm) {
        model.addRealmRule(FileKind::other, "Bits and Bobs", false, realm);
    }
    auto* full = new RealmAutomationCard(model, tour.theme(), grant);
    const auto fullPaper = onPaper(tour.theme(), full, Measure::smallestWindowWidth);
    full->findChild<DisclosureButton*>()->setOpen(true);
    co_await stage.settle();
    fit(*fullPaper);
    co_await tour.takeAlone(stage, *fullPaper, "53-filing-rules-full");
    model.saveRealmRules({}, realm);
    model.setCadence(PatrolCadence::off, grant);
}

}  // namespace

QCoro::Task<> showTray(Tour& tour, Stage& stage)
{
    co_await showPanel(tour, stage);
    co_await showDesktopSection(tour, stage);
    co_await showOrganiseSheet(tour, stage);
    co_await showAutomations(tour, stage);
}

}  // namespace gruk::tour
