#include "app/screens/findings_section.h"

#include <filesystem>
#include <fstream>

#include <QApplication>
#include <QLayout>
#include <QTest>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "app/screens/selection_box.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::isTicked;
using test::PatrolPageHouse;

constexpr const char* gone = "Already gone — next patrol will forget it";

/// Has the first finding gone from the model while its row is still there: nothing has run on the
/// pool since.
void takeFirstFindingAway(PatrolPageHouse& house)
{
    const ReviewFinding finding = house.model->findings().front();
    house.model->moveFindingToTrash(finding, *TrashService::currentIdentity(finding.url));
    house.repaint();
}

}  // namespace

TEST(FindingsSection, aFilterThatLeavesNothingDoesNotSayThatNothingMeetsTheRules)
{
    const QString nothing = QStringLiteral("Nothing meets the current review rules.");
    const QString noneOfKind = QStringLiteral("None of this kind.");
    PatrolPageHouse house;
    house.makeFindings();
    EXPECT_FALSE(house.shows(nothing));
    EXPECT_FALSE(house.shows(noneOfKind));
    house.filterBy("Grew quickly");
    EXPECT_TRUE(house.rows().empty());
    EXPECT_TRUE(house.shows(noneOfKind));
    EXPECT_FALSE(house.shows(nothing));
    house.filterBy("All kinds");
    EXPECT_EQ(house.rows().size(), 3U);
    EXPECT_FALSE(house.shows(noneOfKind));
}

TEST(FindingsSection, withoutAnyFindingNothingMeetsTheRulesWhateverTheFilter)
{
    PatrolPageHouse house;
    house.makePatrolledRealm("Home");
    house.filterBy("Known cache");
    EXPECT_TRUE(house.shows(QStringLiteral("Nothing meets the current review rules.")));
    EXPECT_FALSE(house.shows(QStringLiteral("None of this kind.")));
}

TEST(FindingsSection, whoComesBackToTheWindowSeesWhatIsGoneAndWhatCameBack)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.activate();
    const std::string path = house.directory.path("Home/report (1).pdf");
    const auto comeBack = [&] {
        QApplication::setActiveWindow(nullptr);
        house.settle();
        QApplication::setActiveWindow(house.window.get());
        house.settle();
    };
    std::filesystem::remove(path);
    house.settle();
    EXPECT_FALSE(house.shows(QString::fromUtf8(gone)));
    comeBack();
    EXPECT_TRUE(house.shows(QString::fromUtf8(gone)));
    house.directory.file("Home/report (1).pdf", 40'960);
    comeBack();
    EXPECT_FALSE(house.shows(QString::fromUtf8(gone)));
    EXPECT_TRUE(house.shows(QString::fromStdString(path)));
}

TEST(FindingsSection, aWindowThatIsShownAgainAsksAgainWhatIsGone)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.window->hide();
    std::filesystem::remove(house.directory.path("Home/report (1).pdf"));
    house.settle();
    house.window->show();
    house.settle();
    EXPECT_TRUE(house.shows(QString::fromUtf8(gone)));
}

TEST(FindingsSection, aRowThatIsKeptIsAskedAgainInAnotherOrder)
{
    PatrolPageHouse house;
    house.makeFindings();
    const FindingRow* kept = house.rows().front();
    std::filesystem::remove_all(house.directory.path("Home/p/node_modules"));
    house.button(QStringLiteral("Reason"))->click();
    house.settle();
    EXPECT_EQ(house.rows().back(), kept);
    EXPECT_TRUE(test::textIn(kept).contains(QString::fromUtf8(gone)));
}

TEST(FindingsSection, aFindingThatIsGoneLeavesTheSelectionAtOnce)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    ASSERT_TRUE(house.shows(QStringLiteral("3 selected · 131 KB")));
    takeFirstFindingAway(house);
    ASSERT_EQ(house.rows().size(), 3U);
    EXPECT_TRUE(house.shows(QStringLiteral("2 selected · 49 KB")));
    EXPECT_FALSE(house.shows(QStringLiteral("1 not shown by this filter")));
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("2 selected · 49 KB")));
}

TEST(FindingsSection, whatIsGoneCannotBeSelectedWhileItsRowIsStillThere)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    takeFirstFindingAway(house);
    const std::vector<FindingRow*> rows = house.rows();
    ASSERT_EQ(rows.size(), 3U);
    QTest::mouseClick(rows.front()->findChild<SelectionBox*>(), Qt::LeftButton);
    house.repaint();
    EXPECT_FALSE(isTicked(rows.front()));
    EXPECT_EQ(house.button(QStringLiteral("Clear selection")), nullptr);
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    EXPECT_TRUE(house.shows(QStringLiteral("2 selected · 49 KB")));
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("2 selected · 49 KB")));
    QAbstractButton* move = house.button(QStringLiteral("Move 2 to Trash…"));
    ASSERT_NE(move, nullptr);
    move->click();
    house.repaint();
    EXPECT_TRUE(house.shows(QStringLiteral("Move 2 items to Trash?")));
}

TEST(FindingsSection, revealShowsTheItemOfTheRow)
{
    PatrolPageHouse house;
    house.makeFindings();
    buttonIn(house.rows()[1], "Reveal")->click();
    house.settle();
    ASSERT_EQ(house.revealed.size(), 1U);
    EXPECT_EQ(house.revealed[0],
              std::vector<FileURL>{FileURL(house.directory.path("Home/report (1).pdf"))});
}

TEST(FindingsSection, aFindingThatGrewTellsByHowMuch)
{
    PatrolPageHouse house;
    house.directory.file("Home/grows/file", 8'192);
    house.makePatrolledRealm("Home");
    house.directory.file("Home/grows/file", 40'960);
    house.patrol();
    ASSERT_EQ(house.rows().size(), 1U);
    const QStringList texts = test::textIn(house.rows().front()).split(QLatin1Char('|'));
    EXPECT_TRUE(texts.contains(QStringLiteral("41 KB")));
    EXPECT_TRUE(texts.contains(QStringLiteral("+33 KB")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Grew quickly")));
}

/// What stands at the finding's path when its "Move to Trash" is pressed, and what the question
/// calls it.
struct KindCase {
    const char* word;
    void (*put)(const std::string& path);
};

class QuestionOfAKind : public testing::TestWithParam<KindCase> {};

TEST_P(QuestionOfAKind, theQuestionNamesTheKindOfItem)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    const std::string path = house.directory.path("Home/report (1).pdf");
    std::filesystem::remove(path);
    GetParam().put(path);
    buttonIn(house.rows()[1], "Move to Trash")->click();
    house.repaint();
    QWidget* asked = house.question("trashQuestion");
    ASSERT_NE(asked, nullptr);
    EXPECT_TRUE(test::textIn(asked).contains(
        QStringLiteral("|%1 · 41 KB\n").arg(QString::fromUtf8(GetParam().word))))
        << test::textIn(asked).toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    FindingsSection, QuestionOfAKind,
    testing::Values(
        KindCase{"File", [](const std::string& path) { std::ofstream(path) << "text"; }},
        KindCase{"Folder",
                 [](const std::string& path) { std::filesystem::create_directory(path); }},
        KindCase{"Symbolic link",
                 [](const std::string& path) { std::filesystem::create_symlink("there", path); }},
        KindCase{"Filesystem item",
                 [](const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }}));

TEST(FindingsSection, anItemThatIsGoneIsNotAskedAboutAndTheUserIsTold)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    std::filesystem::remove(house.directory.path("Home/report (1).pdf"));
    buttonIn(house.rows()[1], "Move to Trash")->click();
    house.settle();
    EXPECT_EQ(house.question("trashQuestion"), nullptr);
    ASSERT_TRUE(house.model->errorMessage());
    EXPECT_TRUE(house.shows(QString::fromStdString(*house.model->errorMessage())));
    EXPECT_FALSE(house.model->lastTrashOperation());
}

TEST(FindingsSection, roomThatItDoesNotNeedYetLiesAtItsEndAndMovesNoRow)
{
    PatrolPageHouse house;
    house.makeFindings();
    auto* section = house.page()->findChild<FindingsSection*>();
    ASSERT_NE(section, nullptr);
    const auto top = [&] { return house.rows().front()->mapTo(section, QPoint()).y(); };
    const int before = top();
    section->resize(section->width(), section->height() + 90);
    section->layout()->activate();
    EXPECT_EQ(top(), before);
}

}  // namespace gruk
