#include "app/screens/desktop_tidy_section.h"

#include <filesystem>

#include <QSignalSpy>
#include <gtest/gtest.h>

#include "app/screens/hoard_confirmation.h"
#include "tests/support/screen_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::ScreenHouse;
using test::wordsIn;

class DesktopTidy : public testing::Test {
protected:
    DesktopTidy() { section.show(); }

    void grantDesktop()
    {
        house.directory.folder("Desktop");
        house.panel->answers.push_back(desktop());
        house.model->grantDesktop();
        house.settle();
    }

    [[nodiscard]] FileURL desktop() const
    {
        return FileURL::directory(house.directory.path("Desktop"));
    }
    [[nodiscard]] QStringList words() const
    {
        QStringList all = wordsIn(section);
        all.sort();
        return all;
    }
    [[nodiscard]] QAbstractButton* button(const char* text) const
    {
        return buttonIn(section, QString::fromUtf8(text));
    }

    ScreenHouse house;
    DesktopTidySection section{*house.model, house.theme};
};

const QString locked = QStringLiteral("Needs Trash actions enabled first — it's a bulk move, so it "
                                      "gets the same trust bar.");

}  // namespace

TEST_F(DesktopTidy, withoutTheDesktopItAsksForIt)
{
    EXPECT_EQ(words(), (QStringList{QStringLiteral("Let the Gruk at the Desktop…"),
                                    QStringLiteral("The Gruk can only tidy what you've let it see. "
                                                   "One grant, and the panic button is yours.")}));
    EXPECT_EQ(test::namelessControls(section), QStringList());
    house.directory.folder("Desktop");
    house.panel->answers.push_back(desktop());
    button("Let the Gruk at the Desktop…")->click();
    house.settle();
    ASSERT_EQ(house.panel->requests.size(), 1U);
    EXPECT_EQ(house.panel->requests[0].prompt, "Grant the Desktop");
    EXPECT_EQ(button("Let the Gruk at the Desktop…"), nullptr);
    EXPECT_NE(button("Stash it all"), nullptr);
}

TEST_F(DesktopTidy, inReviewOnlyTheControlsAreHeldBackAndTheLinesGiveWayToTheReason)
{
    grantDesktop();
    EXPECT_EQ(words(),
              (QStringList{locked, QStringLiteral("Sort into folders"),
                           QStringLiteral("Stash it all"), QStringLiteral("Tidy my Desktop")}));
    EXPECT_FALSE(button("Stash it all")->isEnabled());
    EXPECT_FALSE(button("Sort into folders")->isEnabled());
}

TEST_F(DesktopTidy, withTrashActionsEnabledItOffersBoth)
{
    grantDesktop();
    house.allowTrash();
    house.settle();
    EXPECT_EQ(words(),
              (QStringList{QStringLiteral("Group loose files by kind — Screenshots, Installers, "
                                          "and so on. Same folder, tidier."),
                           QStringLiteral("Move everything into one dated folder. Nothing sorted, "
                                          "nothing deleted, one click undoes it."),
                           QStringLiteral("Sort into folders"), QStringLiteral("Stash it all"),
                           QStringLiteral("Tidy my Desktop")}));
    EXPECT_EQ(test::namelessControls(section), QStringList());
    QSignalSpy stash(&section, &DesktopTidySection::stashRequested);
    button("Stash it all")->click();
    EXPECT_EQ(stash.count(), 1);
}

TEST_F(DesktopTidy, sortingHandsOverThePlanOfTheDesktop)
{
    grantDesktop();
    house.allowTrash();
    house.directory.file("Desktop/photo.png", 10);
    house.settle();
    std::vector<std::pair<OrganisePlan, FileURL>> asked;
    QObject::connect(
        &section, &DesktopTidySection::organiseRequested, &section,
        [&](const OrganisePlan& plan, const FileURL& realm) { asked.emplace_back(plan, realm); });
    button("Sort into folders")->click();
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].first.moves.at(0).destinationFolderName, "Images");
    EXPECT_EQ(asked[0].second, desktop());
}

TEST_F(DesktopTidy, aDesktopThatHasGoneIsAskedForAgain)
{
    grantDesktop();
    house.allowTrash();
    house.settle();
    std::filesystem::remove_all(desktop().path());
    bool isAsked = false;
    QObject::connect(&section, &DesktopTidySection::organiseRequested, &section,
                     [&] { isAsked = true; });
    button("Sort into folders")->click();
    EXPECT_FALSE(isAsked);
    EXPECT_NE(button("Let the Gruk at the Desktop…"), nullptr);
    EXPECT_FALSE(hoardConfirmation(*house.model));
}

TEST_F(DesktopTidy, theConfirmationTellsHowManyItemsGoIntoWhichFolder)
{
    EXPECT_FALSE(hoardConfirmation(*house.model));
    grantDesktop();
    for (const char* name : {"Desktop/a", "Desktop/b.png", "Desktop/folder/inside", "Desktop/.c"}) {
        house.directory.file(name);
    }
    const std::optional<Confirmation> question = hoardConfirmation(*house.model);
    ASSERT_TRUE(question);
    const QString name = QString::fromStdString(house.model->proposedHoardName(desktop()));
    EXPECT_TRUE(name.startsWith(QStringLiteral("Desktop Hoard — ")));
    EXPECT_EQ(question->title, QStringLiteral("Desktop Hoard"));
    EXPECT_EQ(question->message,
              QStringLiteral("The Gruk will move all 3 items into one folder:\n🗂 ") + name
                  + QStringLiteral("\n\nNothing is deleted, nothing is sorted, nothing leaves your "
                                   "Desktop folder.\nOne click puts everything back exactly where "
                                   "it was."));
    EXPECT_EQ(question->action, QStringLiteral("Stash it all"));
    EXPECT_EQ(question->refusal, QStringLiteral("Cancel"));
}

}  // namespace gruk
