#include <chrono>
#include <filesystem>
#include <utility>

#include <QImage>
#include <QLabel>
#include <QLayout>
#include <gtest/gtest.h>

#include "app/screens/heavy_section.h"
#include "app/screens/patrol_text.h"
#include "app/screens/review_only_panel.h"
#include "app/screens/status_banner.h"
#include "core/patrol/metadata_reader.h"
#include "platform/foundation/errors.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::PatrolPageHouse;

/// How far down in the window the only label or button with that text is; -1 without one.
int heightOf(const PatrolPageHouse& house, const char* text)
{
    const QString wanted = QString::fromUtf8(text);
    for (const QWidget* widget : house.page()->findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool isIt = (label != nullptr && label->text() == wanted)
                          || (button != nullptr && button->text() == wanted);
        if (isIt && widget->isVisible()) {
            return widget->mapTo(house.window.get(), QPoint(0, 0)).y();
        }
    }
    return -1;
}

void expectFromTheTop(const PatrolPageHouse& house, const std::vector<const char*>& texts)
{
    int last = -1;
    for (const char* text : texts) {
        const int height = heightOf(house, text);
        EXPECT_GT(height, last) << text;
        last = height;
    }
}

QImage drawn(QWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::RenderFlags());
    return image;
}

/// Whether the first symbol inside `widget` is that one in that colour.
bool showsSymbol(PatrolPageHouse& house, const QWidget* widget, Icon icon, Role role = Role::ink)
{
    auto* shown = widget->findChild<IconLabel*>();
    IconLabel expected(house.theme, icon, shown->width());
    expected.setColour(role);
    expected.resize(shown->size());
    return drawn(*shown) == drawn(expected);
}

bool hasColour(PatrolPageHouse& house, StatusBanner* banner, Role role)
{
    return drawn(*banner).pixelColor(2, banner->height() / 2) == house.theme.colour(role);
}

StatusBanner* banner(const PatrolPageHouse& house, const char* name)
{
    return house.page()->findChild<StatusBanner*>(QString::fromLatin1(name));
}

}  // namespace

TEST(PatrolPageLayout, aPageWithoutASnapshotIsLaidOutFromTopToBottom)
{
    PatrolPageHouse house;
    house.makeRealm("Home");
    house.settle();
    expectFromTheTop(house, {"THE REALM OF", "Home", "No baseline yet", "Map this realm",
                             "Organise this realm", "Automations", "First, Gruk needs a map",
                             "MAPPED", "Review Only is on",
                             "Review Only is on until you say otherwise. Nothing is ever deleted — "
                             "the most the Gruk can do is move things to the system Trash, one "
                             "confirmation at a time."});
}

TEST(PatrolPageLayout, aFirstPatrolIsLaidOutFromTopToBottom)
{
    PatrolPageHouse house;
    house.makeFindings();
    expectFromTheTop(house, {"Patrol again", "Automations", "First patrol of Home complete.",
                             "MAPPED", "First patrol complete.", "Review Only is on",
                             "Worth a look", "The big stuff"});
}

TEST(PatrolPageLayout, aSecondPatrolIsLaidOutFromTopToBottom)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.directory.file("Home/quarry/stone", 40'960);
    house.patrol();
    house.allowTrash();
    house.settle();
    expectFromTheTop(house,
                     {"MAPPED", "Trash actions enabled", "What changed at the top level",
                      "New region discovered, m'lord: quarry (41 KB).", "quarry", "Worth a look",
                      "Suggestions, not verdicts. Gruk shows its evidence and waits for you.",
                      "Size", "Select all", "Known cache", "The big stuff"});
    EXPECT_EQ(heightOf(house, "MAPPED"), heightOf(house, "SINCE LAST PATROL"));
    EXPECT_EQ(heightOf(house, "MAPPED"), heightOf(house, "TO REVIEW"));
    EXPECT_NEAR(heightOf(house, "Size"), heightOf(house, "All kinds"), 2);
}

TEST(PatrolPageLayout, thePageTellsWhenTheRealmWasLastPatrolled)
{
    PatrolPageHouse house;
    house.makePatrolledRealm("Home");
    const auto* date = house.page()->findChild<QLabel*>(QStringLiteral("lastPatrolled"));
    ASSERT_NE(date, nullptr);
    EXPECT_TRUE(date->text().startsWith(QStringLiteral("Last patrolled ")));
    EXPECT_EQ(date->text(), PatrolText::lastPatrolled(house.model->latestSnapshot().get()));
}

TEST(PatrolPageLayout, aRunningPatrolTellsHowManyPathsItCheckedAndWhere)
{
    PatrolPageHouse* watched = nullptr;
    QStringList seen;
    std::chrono::seconds time{0};
    const auto look = [&](const FileURL& folder) {
        if (watched != nullptr && folder.lastPathComponent() == "inner") {
            watched->loop->run();
            watched->repaint();
            seen = watched->texts();
        }
        return MetadataReader::entries(folder);
    };
    PatrolPageHouse house(std::make_shared<SnapshotScanner>(
        look, [&time] { return time += std::chrono::seconds(1); }));
    house.directory.file("Home/folder/inner/file", 10);
    house.makeRealm("Home");
    house.settle();
    watched = &house;
    house.patrol();
    EXPECT_TRUE(seen.contains(QStringLiteral("3 paths checked so far · folder")))
        << seen.join(QLatin1Char('|')).toStdString();
}

TEST(PatrolPageLayout, theMessagesStandInTheirOrderColoursAndSymbols)
{
    PatrolPageHouse house(std::make_shared<SnapshotScanner>([](const FileURL& folder) {
        if (folder.lastPathComponent() == "closed") {
            throw FileError(std::make_error_code(std::errc::permission_denied), "list",
                            folder.path());
        }
        return MetadataReader::entries(folder);
    }));
    house.directory.folder("Home/closed");
    const FileURL home = house.makePatrolledRealm("Home");
    house.model->addRealmRule(FileKind::archive, "Boxes", true, home);
    house.directory.file("Home/new.zip", 8'192);
    house.patrol();
    struct Line {
        const char* name;
        Role role;
        Icon icon;
    };
    const auto expectLines = [&](const std::vector<Line>& lines) {
        int last = -1;
        for (const Line& line : lines) {
            StatusBanner* shown = banner(house, line.name);
            ASSERT_TRUE(shown != nullptr && shown->isVisible()) << line.name;
            EXPECT_TRUE(hasColour(house, shown, line.role)) << line.name;
            EXPECT_TRUE(showsSymbol(house, shown, line.icon)) << line.name;
            const int height = shown->mapTo(house.window.get(), QPoint(0, 0)).y();
            EXPECT_GT(height, last) << line.name;
            last = height;
        }
    };
    const Line coverage = {"coverageNote", Role::yellow, Icon::eyeWarning};
    const Line error = {"errorMessage", Role::red, Icon::warning};
    const Line filing = {"ruleFiling", Role::fernDark, Icon::scroll};
    expectLines({coverage, filing, {"lastActionMessage", Role::blue, Icon::check}});
    house.model->moveFindingToTrash({}, {});
    house.settle();
    expectLines({coverage, error, filing});
    ASSERT_NE(buttonIn(banner(house, "ruleFiling"), "Enable Trash actions…"), nullptr);
    EXPECT_TRUE(buttonIn(banner(house, "ruleFiling"), "Enable Trash actions…")->isVisible());
    for (const QAbstractButton* button :
         banner(house, "errorMessage")->findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(button->isVisible());
    }
}

TEST(PatrolPageLayout, aMessageIsAsHighAsItsWordsHoweverHighTheWindow)
{
    PatrolPageHouse house;
    house.makePatrolledRealm("Home");
    const StatusBanner* shown = banner(house, "lastActionMessage");
    ASSERT_TRUE(shown->isVisible());
    EXPECT_LT(shown->height(), 100);
}

TEST(PatrolPageLayout, theLastMessageTakesBackTheTrashThenTheDesktopThenWhatWasOrganised)
{
    PatrolPageHouse house;
    house.directory.file("Desktop/kept", 8'192);
    house.makeDuplicate("Desktop", 40'960);
    const FileURL desktop = FileURL::directory(house.directory.path("Desktop"));
    house.panel->answers.push_back(desktop);
    house.model->grantDesktop();
    house.settle();
    house.patrol();
    house.model->addRealmRule(FileKind::archive, "Boxes", true, desktop);
    house.directory.file("Desktop/new.zip", 8'192);
    house.patrol();
    house.allowTrash();
    house.model->filePendingRuleMatches();
    house.settle();
    house.model->tidyDesktop();
    house.settle();
    house.patrol();
    ASSERT_FALSE(house.model->findings().empty());
    const ReviewFinding finding = house.model->findings().front();
    house.model->moveFindingToTrash(finding, *TrashService::currentIdentity(finding.url));
    house.settle();
    ASSERT_TRUE(house.model->lastTrashOperation());
    ASSERT_TRUE(house.model->lastStashOperation());
    ASSERT_TRUE(house.model->lastOrganiseOperation());

    const auto press = [&](const char* text) {
        QAbstractButton* button = buttonIn(banner(house, "lastActionMessage"), text);
        ASSERT_TRUE(button != nullptr && button->isVisible()) << text;
        button->click();
        house.settle();
    };
    press("Undo");
    EXPECT_FALSE(house.model->lastTrashOperation());
    EXPECT_TRUE(house.model->lastStashOperation());
    press("Put everything back");
    EXPECT_FALSE(house.model->lastStashOperation());
    EXPECT_TRUE(house.model->lastOrganiseOperation());
    press("Put everything back");
    EXPECT_FALSE(house.model->lastOrganiseOperation());
    EXPECT_EQ(house.button(QStringLiteral("Put everything back")), nullptr);
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Desktop/new.zip")));
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Desktop/kept")));
}

TEST(PatrolPageLayout, thePanelSaysByItsSymbolTooWhetherTrashActionsAreEnabled)
{
    PatrolPageHouse house;
    house.makePatrolledRealm("Home");
    const auto* panel = house.page()->findChild<ReviewOnlyPanel*>();
    EXPECT_TRUE(showsSymbol(house, panel, Icon::lockShield, Role::fernDark));
    house.allowTrash();
    house.settle();
    EXPECT_TRUE(showsSymbol(house, panel, Icon::warningShield, Role::red));
    house.button(QStringLiteral("Return to Review Only"))->click();
    house.settle();
    EXPECT_TRUE(house.model->reviewOnlyMode());
    EXPECT_TRUE(house.shows(QStringLiteral("Review Only is on")));
    EXPECT_TRUE(showsSymbol(house, panel, Icon::lockShield, Role::fernDark));
}

TEST(PatrolPageLayout, revealOfABigThingShowsIt)
{
    PatrolPageHouse house;
    house.makeFindings();
    buttonIn(house.page()->findChild<HeavySection*>(), "Reveal")->click();
    house.settle();
    ASSERT_EQ(house.revealed.size(), 1U);
    EXPECT_EQ(house.revealed[0], std::vector<FileURL>{FileURL(house.directory.path(
                                     "Home/" + house.model->heavyItems().front().relativePath))});
}

TEST(PatrolPageLayout, everyReasonAndEveryChangeHasItsSymbol)
{
    using Reason = ReviewFinding::Reason;
    EXPECT_EQ(iconFor(Reason::rapidGrowth), Icon::growth);
    EXPECT_EQ(iconFor(Reason::duplicateDownload), Icon::duplicate);
    EXPECT_EQ(iconFor(Reason::oldInstaller), Icon::installer);
    EXPECT_EQ(iconFor(Reason::regenerableCache), Icon::cache);
    using Change = SnapshotDelta::Change;
    EXPECT_EQ(iconFor(Change::added), Icon::added);
    EXPECT_EQ(iconFor(Change::grown), Icon::grown);
    EXPECT_EQ(iconFor(Change::shrunk), Icon::shrunk);
    EXPECT_EQ(iconFor(Change::removed), Icon::removed);
}

TEST(PatrolPageLayout, aRowShowsTheSymbolOfItsReason)
{
    PatrolPageHouse house;
    house.makeFindings();
    EXPECT_TRUE(showsSymbol(house, house.rows()[0], Icon::cache));
    EXPECT_TRUE(showsSymbol(house, house.rows()[1], Icon::duplicate));
    EXPECT_FALSE(showsSymbol(house, house.rows()[1], Icon::cache));
}

}  // namespace gruk
