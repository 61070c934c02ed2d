#include <filesystem>
#include <string>

#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

#include "app/screens/message_strip.h"
#include "app/theme/overlay.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::PatrolPageHouse;

/// As wide as 200 letters can be, with nothing between them at which a line could end.
const std::string name(200, 'W');

/// A realm whose name and findings have such names, a path of almost 4,000 bytes down.
class LongNames : public testing::Test {
protected:
    LongNames()
    {
        constexpr std::size_t deepest = 3'700;
        std::string realm = name;
        while (house.directory.path(realm).size() < deepest - name.size()) {
            realm += "/" + name;
        }
        house.directory.file(realm + "/" + name + ".pdf", 40'960);
        house.directory.file(realm + "/" + name + " (1).pdf", 40'960);
        house.makePatrolledRealm(realm);
        house.patrol();
        house.allowTrash();
        house.window->resize(Measure::smallestWindowWidth, tall);
        house.settle();
    }

    /// What sticks out of the window, or of the page, at either side.
    void expectAllWithin(const char* screen) const
    {
        const QWidget& window = *house.window;
        EXPECT_EQ(window.width(), Measure::smallestWindowWidth) << screen;
        EXPECT_LE(window.minimumSizeHint().width(), Measure::smallestWindowWidth) << screen;
        for (const QWidget* each : window.findChildren<QWidget*>()) {
            if (!each->isVisible()) {
                continue;
            }
            const QRect place(each->mapTo(&window, QPoint()), each->size());
            const QString what = QLatin1String(each->metaObject()->className()) + QLatin1Char(' ')
                                 + each->objectName();
            EXPECT_GE(place.left(), 0) << screen << ": " << what.toStdString();
            EXPECT_LT(place.right(), window.width()) << screen << ": " << what.toStdString();
        }
        for (const QScrollArea* area : window.findChildren<QScrollArea*>()) {
            if (area->isVisible()) {
                EXPECT_LE(area->widget()->width(), area->viewport()->width()) << screen;
            }
        }
    }

    static constexpr int tall = 4'000;
    PatrolPageHouse house;
};

}  // namespace

TEST_F(LongNames, widenNoPage)
{
    expectAllWithin("patrol");
    static_cast<QAbstractButton*>(house.rows().at(0)->disclosure())->click();
    house.settle();
    expectAllWithin("why");
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    expectAllWithin("browse");
    house.window->setDetailPage(DetailPage::patrol);
    house.model->showTerritories();
    house.settle();
    expectAllWithin("territories");
}

TEST_F(LongNames, leaveUndoInTheWindowAndTheMessageWhole)
{
    house.button(QStringLiteral("Move to Trash"))->click();
    house.settle();
    house.answer("trashQuestion", "Move to Trash");
    QAbstractButton* undo = house.button(QStringLiteral("Undo"));
    ASSERT_NE(undo, nullptr);
    const QRect place(undo->mapTo(house.window.get(), QPoint()), undo->size());
    EXPECT_TRUE(house.window->rect().contains(place));
    expectAllWithin("moved");
    for (const Label* label : house.window->findChildren<Label*>()) {
        if (label->isVisible() && label->text().contains(QStringLiteral("to Trash."))) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << "cut off";
        }
    }
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    expectAllWithin("moved, over the folders");
}

TEST_F(LongNames, areShownWholeByTheTrashQuestionAtTheSmallestWindow)
{
    house.window->resize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    house.settle();
    house.scrollBar()->setValue(house.scrollBar()->maximum() / 2);
    house.settle();
    QAbstractButton* move = house.button(QStringLiteral("Move to Trash"));
    ASSERT_NE(move, nullptr);
    move->click();
    house.settle();
    const QWidget* question = house.question("trashQuestion");
    ASSERT_NE(question, nullptr);
    expectAllWithin("question");
    QString all;
    for (const Label* label : question->findChildren<Label*>()) {
        all += label->text();
        EXPECT_GE(label->height(), label->heightForWidth(label->width())) << "cut off";
    }
    EXPECT_TRUE(all.contains(QString::fromStdString("Move " + name)));
    EXPECT_TRUE(all.contains(QString::fromStdString(house.model->findings().at(0).url.path())));
    for (const char* text : {"Cancel", "Move to Trash"}) {
        const QWidget* button = test::buttonIn(question, text);
        const QRect place(button->mapTo(house.window.get(), QPoint()), button->size());
        EXPECT_TRUE(house.window->rect().contains(place)) << text;
    }
}

}  // namespace gruk
