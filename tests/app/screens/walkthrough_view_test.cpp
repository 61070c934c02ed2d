#include "app/screens/walkthrough_view.h"

#include <set>

#include <QAbstractAnimation>
#include <QLabel>
#include <gtest/gtest.h>

#include "app/theme/button.h"
#include "tests/support/screen_house.h"
#include "tests/support/theme_window.h"

namespace gruk {

namespace {

class WalkthroughViewTest : public testing::Test {
protected:
    WalkthroughViewTest()
    {
        window_.resize(820, 560);
        window_.theme.setReducedMotion(true);
        window_.begin();
        view_ = new WalkthroughView(window_.theme, &window_);
        QObject::connect(view_, &Sheet::finished, &window_, [this] { ++finished_; });
        view_->open();
        test::ThemeWindow::rest();
    }

    /// The button with that text that can be seen.
    [[nodiscard]] Button* button(const char* text) const
    {
        for (Button* each : view_->findChildren<Button*>()) {
            if (each->isVisible() && each->text() == QLatin1String(text)) {
                return each;
            }
        }
        return nullptr;
    }

    /// The texts and the picture of the page that shows.
    [[nodiscard]] QStringList texts() const
    {
        QStringList texts;
        for (const QLabel* label : view_->findChildren<QLabel*>()) {
            if (label->isVisible()) {
                texts.append(label->text());
            }
        }
        return texts;
    }
    [[nodiscard]] std::vector<Art> pictures() const
    {
        std::vector<Art> pictures;
        for (const ArtView* art : view_->findChildren<ArtView*>()) {
            if (art->isVisible()) {
                pictures.push_back(art->art());
            }
        }
        return pictures;
    }

    test::ThemeWindow window_;
    QPointer<WalkthroughView> view_;
    int finished_ = 0;
};

}  // namespace

TEST_F(WalkthroughViewTest, hasFivePagesEachWithItsPictureHeadingAndBody)
{
    const std::vector<WalkthroughPage> pages = {
        {Art::grukStateMap, QStringLiteral("Choose a realm."),
         QStringLiteral("Point the Gruk at a folder or disk. It maps what's there — names, sizes, "
                        "dates. Never the contents of your files.")},
        {Art::grukStateReport, QStringLiteral("Day one already helps."),
         QStringLiteral("The first patrol already finds real space to take back — duplicate "
                        "downloads, finished installers, caches apps rebuild on their own. You "
                        "don't need to organise anything.")},
        {Art::grukStatePatrol, QStringLiteral("Then the Gruk remembers."),
         QStringLiteral("Patrol again whenever you like. The Gruk tells you what changed and why "
                        "it flagged what it flagged. Evidence, not verdicts.")},
        {Art::grukStateCelebrate, QStringLiteral("You stay in charge."),
         QStringLiteral("Review Only is on until you say otherwise. Nothing is ever deleted — the "
                        "most the Gruk can do is move things to the system Trash, one "
                        "confirmation at a time.")},
        {Art::grukStateAttack, QStringLiteral("Make it yours."),
         QStringLiteral("Click a realm's shield to repaint it — shape, colours, even a creature "
                        "face if you want one. And when a realm gets cluttered, Organise can sort "
                        "loose files into folders for you, no typing required.")},
    };
    for (std::size_t index = 0; index < pages.size(); ++index) {
        EXPECT_EQ(view_->page(), static_cast<int>(index));
        EXPECT_EQ(texts(), QStringList({pages[index].heading, pages[index].body}));
        EXPECT_EQ(pictures(), std::vector<Art>{pages[index].image});
        if (index + 1 < pages.size()) {
            window_.click(*button("Next"));
        }
    }
    EXPECT_EQ(WalkthroughView::pages().size(), pages.size());
}

TEST_F(WalkthroughViewTest, is640By520)
{
    const QWidget* card = button("Next")->parentWidget();
    EXPECT_EQ(card->size(), QSize(640, 520));
}

TEST_F(WalkthroughViewTest, theLastPageSaysOffYouGoAndEndsIt)
{
    EXPECT_NE(button("Skip"), nullptr);
    EXPECT_EQ(button("Off you go"), nullptr);
    view_->setPage(4);
    EXPECT_EQ(button("Next"), nullptr);
    EXPECT_EQ(button("Skip"), nullptr);
    window_.click(*button("Off you go"));
    EXPECT_EQ(finished_, 1);
    EXPECT_EQ(view_, nullptr);
}

TEST_F(WalkthroughViewTest, skipAndEscapeEndItOnAnyPage)
{
    view_->setPage(2);
    window_.click(*button("Skip"));
    EXPECT_EQ(finished_, 1);

    auto* again = new WalkthroughView(window_.theme, &window_);
    QObject::connect(again, &Sheet::finished, &window_, [this] { ++finished_; });
    again->open();
    window_.key(Qt::Key_Escape);
    EXPECT_EQ(finished_, 2);
}

TEST_F(WalkthroughViewTest, theArrowKeysTurnThePagesAndStopAtTheEnds)
{
    window_.key(Qt::Key_Left);
    EXPECT_EQ(view_->page(), 0);
    for (const int page : {1, 2, 3, 4, 4}) {
        window_.key(Qt::Key_Right);
        EXPECT_EQ(view_->page(), page);
    }
    window_.key(Qt::Key_Left);
    EXPECT_EQ(view_->page(), 3);
    EXPECT_EQ(finished_, 0);
}

TEST_F(WalkthroughViewTest, returnGoesThroughItFromBeginningToEnd)
{
    for (int press = 0; press < 5; ++press) {
        ASSERT_NE(view_, nullptr);
        window_.key(Qt::Key_Return);
    }
    EXPECT_EQ(finished_, 1);
}

TEST_F(WalkthroughViewTest, aPageSlidesInAndAKeyOnTheWayTurnsItRound)
{
    window_.theme.setReducedMotion(false);
    view_->setPage(1);
    auto* turn = view_->findChild<QAbstractAnimation*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_NE(turn, nullptr);
    EXPECT_EQ(turn->duration(), 280);
    turn->pause();
    turn->setCurrentTime(140);
    EXPECT_EQ(pictures().size(), 2U);
    view_->setPage(0);
    turn->pause();
    turn->setCurrentTime(280);
    EXPECT_EQ(pictures(), std::vector<Art>{Art::grukStateMap});
}

TEST_F(WalkthroughViewTest, tellsAssistiveTechnologyWhichPageShows)
{
    EXPECT_EQ(view_->accessibleName(), QStringLiteral("How the Gruk works"));
    EXPECT_TRUE(view_->accessibleDescription().startsWith(QStringLiteral("Choose a realm. Point")));
    view_->setPage(3);
    EXPECT_TRUE(view_->accessibleDescription().startsWith(QStringLiteral("You stay in charge.")));
    EXPECT_EQ(test::namelessControls(window_), QStringList());
}

TEST_F(WalkthroughViewTest, keepsPictureAndTitleWhereTheyAreFromPageToPage)
{
    std::set<int> places;
    for (int page = 0; page < static_cast<int>(WalkthroughView::pages().size()); ++page) {
        view_->setPage(page);
        test::ThemeWindow::rest();
        for (const ArtView* art : view_->findChildren<ArtView*>()) {
            if (art->isVisible()) {
                places.insert(art->mapTo(&window_, QPoint()).y());
            }
        }
    }
    EXPECT_EQ(places.size(), 1U);
}

}  // namespace gruk
