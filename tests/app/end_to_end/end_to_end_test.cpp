// A user's whole acquaintance with the program, at the real window, with mouse and keys, on real
// files, real threads and the real Trash, in a home of its own. What the window says is checked
// against a count of the disk that knows nothing of the program.

#include <cstdlib>
#include <filesystem>
#include <memory>

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/finding_row.h"
#include "app/screens/metric_card.h"
#include "app/screens/realm_row.h"
#include "app/theme/house_style.h"
#include "app/theme/picker.h"
#include "app/theme/text_field.h"
#include "app/theme/toggle.h"
#include "core/patrol/byte_format.h"
#include "tests/support/disk_count.h"
#include "tests/support/running_program.h"
#include "tests/support/window_user.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

QString bytesText(std::int64_t bytes)
{
    return QString::fromStdString(ByteFormat::string(bytes));
}

/// A home with a Desktop and a realm, and the program on it.
class House : public test::RunningProgram {
public:
    House()
    {
        directory.file("home/Desktop/note.txt", 6'000);
        directory.file("home/Desktop/photo.png", 9'000);
        directory.file("home/realm/letter.txt", 5'000);
        directory.file("home/realm/scan.pdf", 60'000);
        directory.file("home/realm/scan (1).pdf", 60'000);
        directory.file("home/realm/p/node_modules/x.js", 200'000);
    }
};

/// One user in one house.
class Story {
public:
    Story() : pictures_(picturesFolder()) { start(); }

    void start()
    {
        house_.start();
        const int taken = user_ ? user_->picturesTaken() : 0;
        user_ = std::make_unique<test::WindowUser>(*house_.window, pictures_, taken);
    }

    void isWelcomed()
    {
        user_->waitToSee(QStringLiteral("Choose a realm."));
        user_->show("walkthrough");
        while (!user_->sees(QStringLiteral("Off you go"))) {
            user_->click(QStringLiteral("Next"));
        }
        user_->click(QStringLiteral("Off you go"));
        user_->waitToSee(QStringLiteral("KNOW WHAT GREW."));
        user_->show("welcome");
    }

    void grantsARealm()
    {
        house_.panel->answers.push_back(FileURL::directory(house_.path("realm")));
        user_->click(QStringLiteral("Choose a realm to patrol"));
        user_->waitToSee(QStringLiteral("Map this realm"));
        user_->show("granted");
    }

    void patrols(const QString& sentence)
    {
        user_->press(Qt::Key_F5);
        user_->until(sentence.toStdString(),
                     [&] { return !house_.model->isPatrolling() && user_->seesPart(sentence); });
        figuresAreTrue();
    }

    void figuresAreTrue() const
    {
        const QString mapped = bytesText(test::allocatedBytes(house_.path("realm")));
        user_->until("MAPPED " + mapped.toStdString(), [&] { return metric(0) == mapped; });
        const auto findings = static_cast<qsizetype>(house_.model->findings().size());
        user_->until("a row for each finding",
                     [&] { return user_->all<FindingRow>().size() == findings; });
        EXPECT_EQ(metric(2), QString::number(findings));
    }

    void changesTheDisk()
    {
        const std::int64_t before = test::allocatedBytes(house_.path("realm"));
        house_.directory.file("home/realm/quarry/stone.bin", 300'000);
        fs::remove(house_.path("realm/letter.txt"));
        const std::int64_t change = test::allocatedBytes(house_.path("realm")) - before;
        patrols(QStringLiteral("Patrol of realm complete."));
        EXPECT_EQ(metric(1), QString::fromStdString(ByteFormat::signedString(change)));
        EXPECT_TRUE(user_->seesPart(QStringLiteral("quarry")));
        user_->show("second-patrol");
    }

    void readsWhyAFindingWasFlagged()
    {
        user_->click(QStringLiteral("Why the Gruk flagged this"));
        user_->waitToSee(QStringLiteral("Hide why"));
        user_->show("why");
        user_->click(QStringLiteral("Hide why"));
    }

    void enablesTrashActions()
    {
        user_->click(QStringLiteral("Enable Trash actions…"));
        user_->click(QStringLiteral("Enable Trash Actions"), &user_->named("trashUnlockDialog"));
        user_->waitToSee(QStringLiteral("Trash actions enabled"));
    }

    void trashesOneAndTakesItBack()
    {
        FindingRow* row = rowOf(QStringLiteral("node_modules"));
        user_->click(QStringLiteral("Move to Trash"), row);
        user_->show("trash-question");
        user_->click(QStringLiteral("Move to Trash"), &user_->named("trashQuestion"));
        user_->waitToSee(QStringLiteral("Moved node_modules to Trash."));
        EXPECT_FALSE(house_.stands("realm/p/node_modules"));
        EXPECT_TRUE(house_.stands(".local/share/Trash/files/node_modules/x.js"));
        figuresAreTrue();
        user_->show("trashed");
        user_->press(Qt::Key_Z, Qt::ControlModifier);
        user_->until("node_modules is back",
                     [&] { return house_.stands("realm/p/node_modules/x.js"); });
        figuresAreTrue();
    }

    void trashesABatchAndTakesItBack()
    {
        patrols(QStringLiteral("Patrol of realm complete."));
        const int files = test::fileCount(house_.path("realm"));
        user_->click(QStringLiteral("Select all"));
        const QString count = QString::number(house_.model->findings().size());
        user_->click(QStringLiteral("Move %1 to Trash…").arg(count));
        user_->click(QStringLiteral("Move to Trash"), &user_->named("batchTrashQuestion"));
        user_->until("the batch is gone", [&] { return house_.model->findings().empty(); });
        EXPECT_LT(test::fileCount(house_.path("realm")), files);
        figuresAreTrue();
        user_->click(QStringLiteral("Undo"));
        user_->until("the batch is back",
                     [&] { return test::fileCount(house_.path("realm")) == files; });
        figuresAreTrue();
    }

    void tidiesTheDesktopAndPutsItBack()
    {
        house_.panel->answers.push_back(FileURL::directory(house_.path("Desktop")));
        user_->click(QStringLiteral("Let the Gruk at the Desktop…"));
        user_->waitToSee(QStringLiteral("Stash it all"));
        user_->click(QStringLiteral("Stash it all"));
        user_->show("hoard-question");
        user_->click(QStringLiteral("Stash it all"), &user_->named("hoardQuestion"));
        user_->until("the Desktop is clear", [&] { return !house_.stands("Desktop/note.txt"); });
        // Both, and the list by which they find back.
        EXPECT_EQ(test::fileCount(house_.path("Desktop")), 3);
        user_->click(QStringLiteral("Put everything back"));
        user_->until("the Desktop is back", [&] {
            return house_.stands("Desktop/note.txt") && house_.stands("Desktop/photo.png");
        });
        user_->show("desktop-back");
    }

    void organisesUnderANameOfItsOwnAndPutsItBack()
    {
        opens("realm");
        user_->click(QStringLiteral("Organise this realm"));
        user_->waitToSee(QStringLiteral("Not now"));
        user_->show("organise");
        user_->click(QStringLiteral("Retarget the folder for PDF files"));
        user_->type(*user_->all<TextField>().constFirst(), QStringLiteral("Papers"));
        user_->click(QStringLiteral("Save"));
        user_->waitToSee(QStringLiteral("Remembered for this realm."));
        user_->show("organise-remembered");
        user_->click(QStringLiteral("Organise"));
        user_->until("the papers are filed",
                     [&] { return house_.stands("realm/Papers/scan.pdf"); });
        EXPECT_TRUE(house_.stands("realm/Papers/scan (1).pdf"));
        user_->click(QStringLiteral("Put everything back"));
        user_->until("the papers are back", [&] { return house_.stands("realm/scan.pdf"); });
        EXPECT_TRUE(house_.stands("realm/scan (1).pdf"));
    }

    void addsARuleThatFilesNewArrivals()
    {
        user_->click(QStringLiteral("Automations"));
        user_->click(QStringLiteral("Filing rules"));
        Picker* kinds = picker(QStringLiteral("Archive"));
        kinds->setFocus();
        QTest::keyClicks(kinds, QStringLiteral("Archive"));
        user_->type(*user_->all<TextField>().constFirst(), QStringLiteral("Boxes"));
        user_->clickOn(*user_->all<Toggle>().constFirst());
        user_->click(QStringLiteral("Add rule"));
        user_->waitToSee(QStringLiteral("Boxes"));
        user_->show("rule");
        house_.directory.file("home/realm/new.zip", 7'000);
        user_->press(Qt::Key_F5);
        user_->waitToSee(QStringLiteral("The Gruk can file 1 new arrivals under your rules."));
        user_->show("new-arrivals");
        user_->click(QStringLiteral("File them"));
        user_->until("the box is filed", [&] { return house_.stands("realm/Boxes/new.zip"); });
    }

    void repaintsTheShield()
    {
        const RealmIdentity before = house_.model->activeRealmIdentity();
        user_->click(QStringLiteral("Customise this realm's shield"));
        user_->waitToSee(
            QStringLiteral("Your realm, your colours. The Gruk just paints what you choose."));
        user_->click(before.charge == Charge::acorn ? QStringLiteral("Key")
                                                    : QStringLiteral("Acorn"));
        user_->until("another shield",
                     [&] { return house_.model->activeRealmIdentity() != before; });
        user_->show("shield");
        user_->press(Qt::Key_Escape);
    }

    void setsStandGuard()
    {
        Picker* cadence = picker(QStringLiteral("Stand Guard"));
        cadence->setFocus();
        QTest::keyClicks(cadence, QStringLiteral("Stand Guard"));
        user_->until("stand guard", [&] {
            return house_.model->cadence(house_.model->grants().front())
                   == PatrolCadence::standGuard;
        });
        user_->show("stand-guard");
    }

    void startsAgain()
    {
        const RealmIdentity shield = house_.model->activeRealmIdentity();
        const QString mapped = metric(0);
        house_.quit();
        start();
        // The window comes back to the page that it was left on.
        user_->until("the history", [&] { return house_.model->latestSnapshot() != nullptr; });
        EXPECT_FALSE(user_->sees(QStringLiteral("Choose a realm.")));
        house_.model->showTerritories();
        user_->waitToSee(QStringLiteral("YOUR TERRITORIES"));
        user_->until("the territories", [&] { return !house_.model->isLoadingTerritories(); });
        user_->show("territories");
        opens("realm");
        user_->until("the history", [&] { return house_.model->latestSnapshot() != nullptr; });
        EXPECT_EQ(house_.model->activeRealmIdentity(), shield);
        EXPECT_EQ(house_.model->cadence(house_.model->grants().front()), PatrolCadence::standGuard);
        EXPECT_EQ(house_.model->realmRules(*house_.model->activeRootURL()).size(), 1U);
        EXPECT_FALSE(house_.model->reviewOnlyMode());
        user_->show("started-again");
    }

private:
    static std::string picturesFolder()
    {
        const char* folder = std::getenv("GRUK_PICTURES");
        return folder != nullptr ? folder : "";
    }

    [[nodiscard]] QString metric(qsizetype index) const
    {
        const auto cards = user_->all<MetricCard>();
        return index < cards.size() ? cards[index]->valueText() : QString();
    }

    [[nodiscard]] FindingRow* rowOf(const QString& name) const
    {
        for (FindingRow* row : user_->all<FindingRow>()) {
            if (row->accessibleName().startsWith(name)) {
                return row;
            }
        }
        throw std::runtime_error("no finding " + name.toStdString());
    }

    [[nodiscard]] Picker* picker(const QString& choice) const
    {
        for (Picker* each : user_->all<Picker>()) {
            if (each->findText(choice) >= 0) {
                return each;
            }
        }
        throw std::runtime_error("no picker with " + choice.toStdString());
    }

    void opens(const char* realm)
    {
        for (RealmRow* row : user_->all<RealmRow>()) {
            if (row->accessibleName() == QString::fromLatin1(realm)) {
                user_->clickOn(*row);
                user_->until("the realm's page", [&] {
                    return house_.model->activeRootURL()
                           && house_.model->activeRootURL()->lastPathComponent() == realm
                           && !house_.model->isLoadingRealmHistory();
                });
                return;
            }
        }
        throw std::runtime_error("no realm " + std::string(realm));
    }

    House house_;
    std::string pictures_;
    std::unique_ptr<test::WindowUser> user_;
};

}  // namespace

TEST(EndToEnd, aUserDoesEverythingOnce)
{
    Story story;
    story.isWelcomed();
    story.grantsARealm();
    story.patrols(QStringLiteral("First patrol of realm complete."));
    story.changesTheDisk();
    story.readsWhyAFindingWasFlagged();
    story.enablesTrashActions();
    story.trashesOneAndTakesItBack();
    story.trashesABatchAndTakesItBack();
    story.tidiesTheDesktopAndPutsItBack();
    story.organisesUnderANameOfItsOwnAndPutsItBack();
    story.addsARuleThatFilesNewArrivals();
    story.repaintsTheShield();
    story.setsStandGuard();
    story.startsAgain();
}

}  // namespace gruk
