#include "app/screens/organise_sheet.h"

#include <filesystem>

#include <QLabel>
#include <QPointer>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/organise_row.h"
#include "tests/support/screen_house.h"
#include "tests/support/tab_stops.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::ScreenHouse;
using test::wordsIn;

const QString remembered = QStringLiteral("Remembered for this realm.");

class OrganiseSheetTest : public testing::Test {
protected:
    void openRealm(const std::string& name)
    {
        house.directory.file(name + "/b.png", 2'000);
        house.directory.file(name + "/a.jpg", 1'000);
        house.directory.file(name + "/song.mp3", 5'000'000);
        house.panel->answers.push_back(url(name));
        house.model->grantDesktop();
        house.settle();
        house.allowTrash();
    }

    OrganiseSheet& open(const std::optional<OrganisePlan>& plan)
    {
        sheet =
            new OrganiseSheet(*house.model, house.theme, *plan, plan->realm, house.window.get());
        house.window->activateWindow();
        sheet->open();
        house.repaint();
        return *sheet;
    }
    OrganiseSheet& openActive() { return open(house.model->organisePlanForActiveRealm()); }

    [[nodiscard]] FileURL url(const std::string& name) const
    {
        return FileURL::directory(house.directory.path(name));
    }
    [[nodiscard]] bool stands(const std::string& relative) const
    {
        return std::filesystem::exists(house.directory.path(relative));
    }
    [[nodiscard]] QAbstractButton* button(const char* text) const
    {
        return buttonIn(*sheet, QString::fromUtf8(text));
    }
    [[nodiscard]] bool says(const QString& text) const { return wordsIn(*sheet).contains(text); }

    [[nodiscard]] QLineEdit* field() const
    {
        for (QLineEdit* each : sheet->findChildren<QLineEdit*>()) {
            if (each->isVisible()) {
                return each;
            }
        }
        return nullptr;
    }
    void rename(const char* pencil, const QString& name)
    {
        button(pencil)->click();
        field()->setText(name);
        button("Save")->click();
        house.repaint();
    }

    ScreenHouse house;
    QPointer<OrganiseSheet> sheet;
};

constexpr const char* imagePencil = "Retarget the folder for image files";
constexpr const char* audioPencil = "Retarget the folder for audio files";

}  // namespace

TEST_F(OrganiseSheetTest, showsThePlanInItsOrder)
{
    openRealm("Home");
    openActive();
    for (const char* text :
         {"Organise this realm",
          ("The Gruk will gather 3 loose files into 2 folders. Nothing is deleted, nothing leaves "
           "this realm, and one click puts everything back."),
          "Images", "2 files", "3 KB", "Audio", "1 files", "5 MB", "Not now", "Organise"}) {
        EXPECT_TRUE(says(QString::fromUtf8(text))) << text;
    }
    EXPECT_FALSE(says(remembered));
    std::vector<FileKind> kinds;
    for (const OrganiseRow* row : sheet->findChildren<OrganiseRow*>()) {
        kinds.push_back(row->kind());
    }
    EXPECT_EQ(kinds, (std::vector{FileKind::image, FileKind::audio}));
    EXPECT_EQ(test::namelessControls(*sheet), QStringList());
}

TEST_F(OrganiseSheetTest, organiseDoesWhatIsShownAndCloses)
{
    openRealm("Home");
    openActive();
    button("Organise")->click();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Done. 3 files filed into 2 folders. Your realm, tidied — you did nothing, which was "
              "the plan.");
    EXPECT_TRUE(stands("Home/Images/a.jpg"));
    house.repaint();
    EXPECT_EQ(sheet, nullptr);
}

TEST_F(OrganiseSheetTest, notNowMovesNothing)
{
    openRealm("Home");
    openActive();
    button("Not now")->click();
    house.repaint();
    EXPECT_EQ(sheet, nullptr);
    EXPECT_TRUE(stands("Home/a.jpg"));
    EXPECT_FALSE(stands("Home/Images"));
}

TEST_F(OrganiseSheetTest, anEmptyPlanOffersOrganiseWhichReportsNoFiles)
{
    openRealm("Home");
    for (const char* name : {"Home/a.jpg", "Home/b.png", "Home/song.mp3"}) {
        std::filesystem::remove(house.directory.path(name));
    }
    openActive();
    EXPECT_TRUE(says(QStringLiteral(
        "The Gruk will gather 0 loose files into 0 folders. Nothing is deleted, nothing leaves "
        "this realm, and one click puts everything back.")));
    ASSERT_TRUE(button("Organise")->isEnabled());
    button("Organise")->click();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Done. 0 files filed into 0 folders. Your realm, tidied — you did nothing, which was "
              "the plan.");
}

TEST_F(OrganiseSheetTest, aNewNameIsTrimmedRememberedAndPartOfANewPlan)
{
    openRealm("Home");
    openActive();
    button(imagePencil)->click();
    ASSERT_NE(field(), nullptr);
    EXPECT_EQ(field()->text(), QStringLiteral("Images"));
    EXPECT_TRUE(says(QString::fromLatin1(imagePencil)));
    EXPECT_NE(button("Cancel"), nullptr);
    house.directory.file("Home/late.gif", 10);
    field()->setText(QStringLiteral("  My pictures "));
    button("Save")->click();
    house.repaint();
    EXPECT_EQ(sheet->plan().moves.at(0).destinationFolderName, "My pictures");
    EXPECT_EQ(sheet->plan().moves.at(0).files.size(), 3U);
    for (const QString& text :
         {QStringLiteral("My pictures"), QStringLiteral("3 files"), remembered}) {
        EXPECT_TRUE(says(text)) << text.toStdString();
    }
    EXPECT_EQ(wordsIn(*sheet).count(remembered), 1);
    EXPECT_EQ(field(), nullptr);
    button("Organise")->click();
    EXPECT_TRUE(stands("Home/My pictures/late.gif"));
    EXPECT_EQ(house.preferences->textDictionary("organise.overrides." + url("Home").path()),
              (TextDictionary{{"image", "My pictures"}}));
}

TEST_F(OrganiseSheetTest, eachKindThatWasRenamedKeepsItsNote)
{
    openRealm("Home");
    openActive();
    rename(imagePencil, QStringLiteral("Photos"));
    EXPECT_EQ(wordsIn(*sheet).count(remembered), 1);
    rename(audioPencil, QStringLiteral("Songs"));
    EXPECT_EQ(wordsIn(*sheet).count(remembered), 2);
    EXPECT_TRUE(says(QStringLiteral("Photos")));
    EXPECT_TRUE(says(QStringLiteral("Songs")));
}

TEST_F(OrganiseSheetTest, aNameThatNoFolderCanHaveIsRefusedWithAWordWhy)
{
    openRealm("Home");
    openActive();
    for (const auto& [name, why] :
         {std::pair("  ", "A folder needs a name."),
          std::pair("a/b", "A folder's name can't have a “/” in it."),
          std::pair(".a", "A name that begins with “.” would hide the folder.")}) {
        rename(imagePencil, QString::fromLatin1(name));
        EXPECT_TRUE(says(QString::fromUtf8(why))) << why;
        EXPECT_NE(field(), nullptr);
        QTest::keyClicks(field(), QStringLiteral("x"));
        EXPECT_FALSE(says(QString::fromUtf8(why))) << "the word goes once the name changes";
        button("Cancel")->click();
    }
    EXPECT_EQ(sheet->plan().moves.at(0).destinationFolderName, "Images");
    EXPECT_FALSE(house.preferences->textDictionary("organise.overrides." + url("Home").path()));
    EXPECT_FALSE(says(remembered));
}

TEST_F(OrganiseSheetTest, oneEditorIsOpenAtATime)
{
    openRealm("Home");
    openActive();
    button(imagePencil)->click();
    button(audioPencil)->click();
    EXPECT_EQ(field()->text(), QStringLiteral("Audio"));
    EXPECT_TRUE(field()->hasFocus());
    EXPECT_EQ(test::namelessControls(*sheet), QStringList());
}

TEST_F(OrganiseSheetTest, theKeyboardEditsAndEscapeEndsTheEditorBeforeTheSheet)
{
    openRealm("Home");
    openActive();
    button(audioPencil)->setFocus();
    QTest::keyClick(button(audioPencil), Qt::Key_Return);
    ASSERT_NE(field(), nullptr);
    QTest::keyClick(field(), Qt::Key_Escape);
    EXPECT_EQ(field(), nullptr);
    ASSERT_TRUE(sheet->isOpen());
    EXPECT_TRUE(button(audioPencil)->hasFocus());
    QTest::keyClick(button(audioPencil), Qt::Key_Return);
    field()->setText(QStringLiteral("Songs"));
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_EQ(sheet->plan().moves.at(1).destinationFolderName, "Songs");
    EXPECT_TRUE(button(audioPencil)->hasFocus());
    QTest::keyClick(button(audioPencil), Qt::Key_Escape);
    house.repaint();
    EXPECT_EQ(sheet, nullptr);
    EXPECT_FALSE(stands("Home/Songs"));
}

TEST_F(OrganiseSheetTest, overTheDesktopTheNewPlanIsTheDesktopsAlsoWhileAnotherRealmIsOpen)
{
    openRealm("Desktop");
    openRealm("Home");
    ASSERT_EQ(house.model->activeRootURL(), url("Home"));
    open(house.model->organisePlanForDesktop());
    rename(imagePencil, QStringLiteral("Photos"));
    EXPECT_EQ(sheet->plan().realm, url("Desktop"));
    EXPECT_EQ(sheet->plan().moves.at(0).destinationFolderName, "Photos");
    EXPECT_TRUE(house.preferences->textDictionary("organise.overrides." + url("Desktop").path()));
    button("Organise")->click();
    EXPECT_TRUE(stands("Desktop/Photos/a.jpg"));
    EXPECT_TRUE(stands("Home/a.jpg"));
}

TEST_F(OrganiseSheetTest, aNameThatARuleOverrulesIsRememberedAndTheSheetSaysWhoDecides)
{
    openRealm("Home");
    house.model->addRealmRule(FileKind::image, "Ruled", false, url("Home"));
    openActive();
    rename(imagePencil, QStringLiteral("Mine"));
    EXPECT_EQ(sheet->plan().moves.at(0).destinationFolderName, "Ruled");
    EXPECT_TRUE(
        says(remembered + QStringLiteral(" A filing rule names the folder until you remove it.")));
}

TEST_F(OrganiseSheetTest, closesWhenTheRealmMayNotBeOrganisedAnyMore)
{
    openRealm("Home");
    openActive();
    button(imagePencil)->click();
    std::filesystem::rename(url("Home").path(), house.directory.path("elsewhere"));
    field()->setText(QStringLiteral("Photos"));
    button("Save")->click();
    house.repaint();
    EXPECT_EQ(sheet, nullptr);
}

TEST_F(OrganiseSheetTest, tabGoesThroughTheSheetAsItStandsOnTheScreen)
{
    openRealm("Home");
    openActive();
    const auto expect = [this](const QStringList& stops) {
        EXPECT_EQ(test::tabStopsIn(*sheet), stops) << stops.join(u',').toStdString();
    };
    const QString image = QString::fromLatin1(imagePencil);
    const QString audio = QString::fromLatin1(audioPencil);
    const QString notNow = QStringLiteral("Not now");
    const QString organise = QStringLiteral("Organise");
    expect({image, audio, notNow, organise});
    button(imagePencil)->click();
    expect({image, QStringLiteral("Folder name"), QStringLiteral("Cancel"), QStringLiteral("Save"),
            audio, notNow, organise});
    button("Cancel")->click();
    rename(imagePencil, QStringLiteral("Photos"));
    expect({image, audio, notNow, organise});
}

TEST_F(OrganiseSheetTest, inTheSmallestWindowTheEditorOfTheLastRowIsInView)
{
    for (const char* name : {"Screenshot 2026-01-01 at 10.00.00.png", "clip.mp4", "paper.pdf",
                             "all.zip", "setup.dmg", "letter.docx", "thing.xyz"}) {
        house.directory.file("Home/" + std::string(name), 1'000);
    }
    openRealm("Home");
    house.window->resize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    house.repaint();
    openActive();
    const auto isInView = [](const QWidget& widget) {
        return widget.visibleRegion().boundingRect() == widget.rect();
    };
    OrganiseRow* last = sheet->findChildren<OrganiseRow*>().constLast();
    ASSERT_FALSE(isInView(*last)) << "there are more rows than fit";
    const std::string pencil = last->pencil()->accessibleName().toStdString();
    last->pencil()->click();
    house.repaint();
    ASSERT_TRUE(field()->hasFocus());
    EXPECT_TRUE(isInView(*field()));
    EXPECT_TRUE(isInView(*button("Save")));

    field()->setText(QStringLiteral("a/b"));
    button("Save")->click();
    house.repaint();
    EXPECT_TRUE(isInView(*field()));
    for (const QLabel* label : last->findChildren<QLabel*>()) {
        EXPECT_TRUE(!label->isVisible() || isInView(*label)) << label->text().toStdString();
    }

    field()->setText(QStringLiteral("Mine"));
    button("Save")->click();
    house.repaint();
    ASSERT_TRUE(button(pencil.c_str())->hasFocus());
    EXPECT_TRUE(isInView(*button(pencil.c_str())));
}

TEST_F(OrganiseSheetTest, inReviewOnlyOrganiseIsHeldBack)
{
    openRealm("Home");
    openActive();
    house.model->setReviewOnly(true);
    EXPECT_FALSE(button("Organise")->isEnabled());
    house.model->setReviewOnly(false);
    EXPECT_TRUE(button("Organise")->isEnabled());
}

}  // namespace gruk
