#include "app/screens/memory_card.h"

#include <fstream>

#include <QLabel>
#include <gtest/gtest.h>

#include "app/screens/confirmation_dialog.h"
#include "app/screens/settings_view.h"
#include "app/theme/text.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

/// The settings over a model with a realm that is there and one that was removed.
class MemoryCardTest : public testing::Test {
protected:
    MemoryCardTest()
    {
        kept_ = house_.makePatrolledRealm("kept");
        gone_ = house_.makePatrolledRealm("gone");
        house_.model->removeRealm(house_.grantOf(gone_));
    }

    void open()
    {
        view_ = std::make_unique<SettingsView>(*house_.model, theme_);
        view_->show();
        rest();
    }
    void rest()
    {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            house_.settle();
        }
    }
    [[nodiscard]] QStringList texts() const
    {
        QStringList texts;
        for (const QLabel* label : card().findChildren<QLabel*>()) {
            if (label->isVisible()) {
                texts.append(label->text());
            }
        }
        return texts;
    }
    [[nodiscard]] MemoryCard& card() const { return *view_->findChild<MemoryCard*>(); }
    [[nodiscard]] QAbstractButton* button(const QString& text) const
    {
        for (QAbstractButton* each : view_->findChildren<QAbstractButton*>()) {
            if (each->isVisible() && each->text() == text) {
                return each;
            }
        }
        return nullptr;
    }
    void press(const char* text)
    {
        QAbstractButton* found = button(QString::fromUtf8(text));
        ASSERT_NE(found, nullptr) << text;
        found->click();
        rest();
    }

    test::ModelHouse house_;
    FileURL kept_;
    FileURL gone_;
    Theme theme_;
    std::unique_ptr<SettingsView> view_;
};

}  // namespace

TEST_F(MemoryCardTest, tellsWhatPastPatrolsTakeAndTheShareOfEachForgottenRealm)
{
    open();
    const PatrolMemory memory = house_.model->memory().value();
    EXPECT_EQ(texts(),
              (QStringList{
                  QStringLiteral("What the Gruk remembers"),
                  QStringLiteral("Past patrols of all realms take %1 on this disk.")
                      .arg(bytesText(memory.bytes)),
                  QStringLiteral("Of these, which are no realms of yours, there are past "
                                 "patrols too:"),
                  QString::fromStdString(gone_.path()),
                  QStringLiteral("1 patrol, %1").arg(bytesText(memory.forgettable.at(0).bytes))}));
    EXPECT_EQ(test::namelessControls(*view_), QStringList());
}

TEST_F(MemoryCardTest, forgetsAfterAQuestionOnly)
{
    open();
    press("Forget…");
    auto* question = view_->findChild<ConfirmationDialog*>();
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->accessibleName(), QStringLiteral("Forget gone?"));
    press("Keep it");
    EXPECT_EQ(house_.stored(gone_).size(), 1U);

    press("Forget…");
    press("Forget");
    EXPECT_TRUE(house_.stored(gone_).empty());
    EXPECT_EQ(house_.stored(kept_).size(), 1U);
    EXPECT_EQ(button(QStringLiteral("Forget…")), nullptr);
    EXPECT_EQ(texts().size(), 2);
}

TEST_F(MemoryCardTest, whatCouldNotBeForgottenIsToldThere)
{
    open();
    press("Forget…");
    // It is a realm again before the answer.
    house_.model->grantRealm(gone_);
    press("Forget");
    EXPECT_EQ(house_.stored(gone_).size(), 1U);
    EXPECT_TRUE(texts().contains(
        QStringLiteral("That place is one of your realms. Nothing was forgotten.")));
}

TEST_F(MemoryCardTest, followsWhatBecomesARealmAndWhatAPatrolAdds)
{
    open();
    house_.model->removeRealm(house_.grantOf(kept_));
    rest();
    EXPECT_EQ(house_.model->memory()->forgettable.size(), 2U);
    house_.model->grantRealm(gone_);
    rest();
    EXPECT_EQ(house_.model->memory()->forgettable.size(), 1U);
    const Bytes before = house_.model->memory()->bytes;
    house_.patrol();
    rest();
    EXPECT_GT(house_.model->memory()->bytes, before);
}

TEST_F(MemoryCardTest, aDamagedFileIsToldWithTheWaysOutOfIt)
{
    std::ofstream(house_.directory.path("app/snapshots.json")) << "no store";
    open();
    EXPECT_TRUE(texts().contains(
        QStringLiteral("The file of past patrols is damaged. It was left as it is.")));
    press("Show it");
    EXPECT_EQ(house_.revealed.size(), 1U);
    press("Set it aside and begin anew");
    EXPECT_EQ(house_.directory.read("app/snapshots.json.damaged"), "no store");
    EXPECT_TRUE(texts().contains(QStringLiteral("Nothing yet. The first patrol begins it.")));
}

}  // namespace gruk
