#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QTabBar>
#include <gtest/gtest.h>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_table.h"
#include "app/screens/file_table_view.h"
#include "app/screens/menu_bar_view.h"
#include "app/screens/organise_sheet.h"
#include "app/screens/realm_row.h"
#include "app/screens/review_only_panel.h"
#include "app/screens/settings_view.h"
#include "app/screens/shield_button.h"
#include "app/screens/sidebar.h"
#include "app/screens/walkthrough_view.h"
#include "app/theme/popover.h"
#include "app/tour/sample_realm.h"
#include "core/patrol/metadata_reader.h"
#include "platform/foundation/errors.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path)
{
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Every class that the headers of the window declare with a meta-object of its own, and its base.
std::map<std::string, std::string> declaredClasses()
{
    static const std::regex declaration(
        R"(class (\w+)(?: final)? : public (\w+)[^{;]*\{\s*Q_OBJECT)");
    std::map<std::string, std::string> baseByClass;
    for (const char* folder : {"app/screens", "app/theme"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(GRUK_SOURCE_DIRECTORY) / folder)) {
            if (entry.path().extension() != ".h") {
                continue;
            }
            const std::string text = textOf(entry.path());
            for (std::sregex_iterator at(text.begin(), text.end(), declaration), end; at != end;
                 ++at) {
                baseByClass[(*at)[1]] = (*at)[2];
            }
        }
    }
    return baseByClass;
}

/// Those of them that are a part of a screen.
std::set<std::string> declaredWidgets()
{
    static const std::set<std::string> shownByNobody = {
        "QObject",     "QAbstractTableModel", "QAbstractListModel", "QStyledItemDelegate",
        "QProxyStyle", "QFocusFrame"};
    const std::map<std::string, std::string> baseByClass = declaredClasses();
    std::set<std::string> widgets;
    for (const auto& [name, firstBase] : baseByClass) {
        std::string base = firstBase;
        while (baseByClass.contains(base)) {
            base = baseByClass.at(base);
        }
        if (!shownByNobody.contains(base)) {
            widgets.insert(name);
        }
    }
    return widgets;
}

/// The items of a folder as if the one called "Private" were closed, to whomever the test runs as.
std::vector<FileEntry> withPrivateClosed(const FileURL& folder)
{
    if (folder.lastPathComponent() == "Private") {
        throw FileError(std::make_error_code(std::errc::permission_denied), "list", folder.path());
    }
    return MetadataReader::entries(folder);
}

/// Goes through the program and looks at every screen as assistive technology does.
class AllScreens : public testing::Test {
protected:
    void look(const std::string& screen, QWidget& window)
    {
        house.repaint();
        EXPECT_EQ(test::namelessControls(window).join(QLatin1Char('\n')).toStdString(), "")
            << screen;
        EXPECT_EQ(test::controlsThatSoundAlike(window).join(QLatin1Char('\n')).toStdString(), "")
            << screen;
        remember(window);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            remember(*widget);
        }
    }
    void look(const std::string& screen) { look(screen, *house.window); }

    /// Opens the menu that `press` opens below `parent`, looks at it and closes it.
    template <typename Press>
    void lookAtMenu(const std::string& screen, QWidget& parent, Press press)
    {
        press();
        house.repaint();
        int opened = 0;
        for (QMenu* menu : parent.findChildren<QMenu*>()) {
            if (menu->isVisible()) {
                look(screen, *menu);
                menu->close();
                ++opened;
            }
        }
        EXPECT_EQ(opened, 1) << screen;
        house.repaint();
    }

    [[nodiscard]] QAbstractButton& named(const char* name) const
    {
        for (QAbstractButton* button : house.window->findChildren<QAbstractButton*>()) {
            const QString shown =
                button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
            if (button->isVisible() && shown == QString::fromUtf8(name)) {
                return *button;
            }
        }
        throw std::runtime_error(std::string("no button: ") + name);
    }

    /// Looks at the question that this button opens, and says no to it.
    void lookAtQuestion(const char* name)
    {
        named(name).click();
        lookAtSheet(std::string("the question behind ") + name);
    }
    void lookAtSheet(const std::string& screen)
    {
        house.repaint();
        auto* overlay = house.window->findChild<Overlay*>();
        ASSERT_NE(overlay, nullptr) << screen;
        look(screen);
        overlay->reject();
        house.settle();
    }

    void lookAtFirstStart();
    void lookAtDrag();
    void lookAtFirstPatrol();
    void fillPatrolPage();
    void lookAtPatrolPage();
    void lookAtQuestions();
    void lookAtBrowse();
    void lookAtTerritories();
    void lookAtOtherWindows();
    void lookAtLostRealm();

    [[nodiscard]] FileURL desktop() const
    {
        return FileURL::directory(house.directory.path("Desktop"));
    }

    test::ScreenHouse house{std::make_shared<SnapshotScanner>(withPrivateClosed)};
    std::set<std::string> seen;

private:
    void remember(const QWidget& widget)
    {
        const QMetaObject* type = widget.isVisible() ? widget.metaObject() : nullptr;
        for (; type != nullptr; type = type->superClass()) {
            const std::string name = type->className();
            // Without the namespace, as the headers have it.
            seen.insert(name.substr(name.rfind(':') + 1));
        }
    }
};

void AllScreens::lookAtFirstStart()
{
    look("welcome");
    house.window->showWalkthrough();
    auto* walkthrough = house.window->findChild<WalkthroughView*>();
    ASSERT_NE(walkthrough, nullptr);
    for (std::size_t page = 0; page < WalkthroughView::pages().size(); ++page) {
        walkthrough->setPage(static_cast<int>(page));
        look("walkthrough, page " + std::to_string(page + 1));
    }
    walkthrough->accept();
    house.settle();
    lookAtDrag();
    lookAtMenu("the window's menu", *house.window, [this] { named("Menu").click(); });
}

void AllScreens::lookAtDrag()
{
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), "file:///tmp\r\n");
    QDragEnterEvent enter(QPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(house.window.get(), &enter);
    look("a folder that is dragged");
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(house.window.get(), &leave);
}

void AllScreens::lookAtFirstPatrol()
{
    tour::makeSampleRealm(desktop().path());
    house.panel->answers.push_back(desktop());
    house.model->grantDesktop();
    house.repaint();
    look("a realm that is opening");
    house.settle();
    look("a realm without a patrol");
    house.model->patrolActiveRealm();
    look("a patrol that runs");
    house.settle();
    look("after the first patrol");
}

void AllScreens::fillPatrolPage()
{
    tour::changeSampleRealm(desktop().path());
    fs::permissions(fs::path(desktop().path()) / "Private", fs::perms::owner_all);
    house.directory.file("Desktop/loose.png", 20'000);
    house.directory.file("Desktop/loose.dmg", 20'000);
    house.model->addRealmRule(FileKind::image, "Pictures", true, desktop());
    house.model->addRealmRule(FileKind::document, "Papers", false, desktop());
    house.model->setCadence(PatrolCadence::standGuard, house.grantOf(desktop()));
    house.model->showTerritories();
    house.settle();
    house.select(desktop());
    house.settle();
    house.patrol();
    // Until nothing is left to open: one thing opened may show another.
    for (bool isAny = true; isAny;) {
        isAny = false;
        for (DisclosureButton* each : house.window->findChildren<DisclosureButton*>()) {
            if (each->isVisible() && !each->isOpen()) {
                each->click();
                isAny = true;
            }
        }
        house.settle();
    }
    house.window->findChild<QPushButton*>(QStringLiteral("showAllHeavyItems"))->click();
    house.settle();
}

void AllScreens::lookAtPatrolPage()
{
    ASSERT_GE(house.model->findings().size(), 5U);
    ASSERT_TRUE(house.model->pendingRuleFilingPlan());
    look("the Patrol page, everything open, Review Only on");
    named("Add rule").click();
    look("a filing rule without a name");
    lookAtMenu("the filter of the findings", *house.window, [this] {
        house.window->findChild<QPushButton*>(QStringLiteral("findingsFilter"))->click();
    });
    house.model->moveFindingsToTrash(house.model->findings());
    look("an error");
    lookAtQuestion("Enable Trash actions…");
    named("Customise this realm's shield").click();
    lookAtSheet("the realm editor");
    house.allowTrash();
    house.settle();
    named("Select all").click();
    look("the Patrol page, everything open and selected, Review Only off");
}

void AllScreens::lookAtQuestions()
{
    lookAtQuestion("Move to Trash");
    const std::string all = "Move " + std::to_string(house.model->findings().size()) + " to Trash…";
    lookAtQuestion(all.c_str());
    lookAtQuestion("Stash it all");
    named("Organise this realm").click();
    lookAtSheet("what an organise would do");
    named("Organise this realm").click();
    house.repaint();
    named("Retarget the folder for image files").click();
    lookAtSheet("another folder for an organise");
    auto* row = house.window->findChild<RealmRow*>();
    lookAtMenu("a realm's menu", *row,
               [row] { Q_EMIT row->customContextMenuRequested(row->rect().center()); });
    Q_EMIT row->customContextMenuRequested(row->rect().center());
    auto* menu = row->findChildren<QMenu*>().constLast();
    menu->actions().constFirst()->trigger();
    menu->close();
    lookAtSheet("the question before a realm is removed");
    house.model->moveFindingToTrash(
        house.model->findings().front(),
        *TrashService::currentIdentity(house.model->findings().front().url));
    house.settle();
    look("what can be undone");
}

void AllScreens::lookAtBrowse()
{
    house.window->setDetailPage(DetailPage::browse);
    look("sizes that are still counted");
    house.settle();
    look("Browse");
    auto* page = house.window->findChild<FileTableView*>();
    auto* table = page->findChild<BrowseTable*>();
    table->selectAll();
    lookAtMenu("the menu of an item", *page, [table] { Q_EMIT table->menuAsked(QPoint()); });
    std::string deep = desktop().path();
    for (const char* name : {"a folder with a long name", "another one, which is longer", "a third",
                             "and a fourth folder", "the fifth of them", "and the last"}) {
        deep += std::string("/") + name;
    }
    fs::create_directories(deep);
    house.window->resize(820, 560);
    house.model->session().open(FileURL::directory(deep));
    house.settle();
    look("an empty folder");
    lookAtMenu("the folders between", *page, [this] { named("Folders between").click(); });
    house.model->session().open(desktop());
    house.settle();
    house.model->session().setFilterText("nothing is called so");
    house.settle();
    look("a filter that leaves nothing");
    house.model->session().setFilterText("");
    house.settle();
}

void AllScreens::lookAtTerritories()
{
    house.model->showTerritories();
    look("a map that is being drawn");
    house.settle();
    house.makePatrolledRealm("Other");
    house.model->showTerritories();
    house.settle();
    look("the territories");
    house.model->tidyDesktop();
    look("what was done, over the territories");
    house.model->undoLastStash();
    house.settle();
}

void AllScreens::lookAtLostRealm()
{
    fs::rename(house.directory.path("Other"), house.directory.path("Otherwise"));
    house.window->findChild<SidebarView*>()->refresh();
    house.settle();
    look("a realm that is called something else now");
    lookAtQuestion("It is now called Otherwise…");
    fs::remove_all(house.directory.path("Otherwise"));
    house.model->patrolAllRealms();
    house.settle();
    look("a realm that is disconnected");
}

void AllScreens::lookAtOtherWindows()
{
    SettingsView settings(*house.model, house.theme);
    settings.resize(settings.width(), house.window->height());
    settings.show();
    look("the settings", settings);
    house.model->setReviewOnly(true);
    house.repaint();
    askToEnableTrashActions(*house.model, house.theme, &settings);
    look("a question over the settings", settings);
    settings.findChild<Overlay*>()->reject();
    house.repaint();
    settings.findChild<QTabBar*>()->setCurrentIndex(1);
    look("the settings of automations", settings);

    GrukMenuBarView panel(*house.model, house.theme);
    panel.showAt({}, {});
    look("the tray's panel", panel);
    house.select(desktop());
    house.settle();
    house.model->patrolActiveRealm();
    panel.showAt({}, {});
    look("the tray's panel while a patrol runs", panel);
    house.settle();
}

}  // namespace

TEST_F(AllScreens, everyControlHasANameOfItsOwnAndNoScreenIsForgotten)
{
    lookAtFirstStart();
    lookAtFirstPatrol();
    fillPatrolPage();
    lookAtPatrolPage();
    lookAtQuestions();
    lookAtBrowse();
    lookAtTerritories();
    lookAtLostRealm();
    lookAtOtherWindows();
    for (const std::string& widget : declaredWidgets()) {
        EXPECT_TRUE(seen.contains(widget)) << widget << " is on no screen that was looked at";
    }
    EXPECT_GE(declaredWidgets().size(), 60U)
        << "the headers are read otherwise than they are written";
}

}  // namespace gruk
