#include "app/screens/status_banner.h"

#include <QLabel>
#include <gtest/gtest.h>

#include "app/theme/label.h"
#include "tests/support/theme_window.h"

namespace gruk {

namespace {

int middleIn(const QWidget& part, const QWidget& whole)
{
    return part.mapTo(&whole, QPoint(0, part.height() / 2)).y();
}

class StatusBannerTest : public testing::Test {
protected:
    StatusBannerTest()
    {
        banner_ = new StatusBanner(window_.theme, Role::blue, Icon::info, &window_);
        window_.begin();
    }

    void show(const QString& message, int width)
    {
        banner_->setMessage(message, {QStringLiteral("Put everything back"), [] {}});
        banner_->resize(width, banner_->heightForWidth(width));
        test::ThemeWindow::rest();
        words_ = banner_->findChild<QLabel*>();
        icon_ = banner_->findChild<IconLabel*>();
        button_ = banner_->findChild<Button*>();
    }

    test::ThemeWindow window_;
    StatusBanner* banner_ = nullptr;
    QLabel* words_ = nullptr;
    IconLabel* icon_ = nullptr;
    Button* button_ = nullptr;
};

}  // namespace

TEST_F(StatusBannerTest, keepsIconWordsAndActionOnOneLine)
{
    show(QStringLiteral("Moved 9 items to Trash."), 600);
    EXPECT_NEAR(middleIn(*icon_, *banner_), middleIn(*words_, *banner_), 1);
    EXPECT_NEAR(middleIn(*icon_, *banner_), middleIn(*button_, *banner_), 1);
}

TEST_F(StatusBannerTest, keepsTheIconOnTheFirstOfManyLines)
{
    show(QStringLiteral("Moved 9 items to Trash. ").repeated(12), 600);
    ASSERT_GT(words_->height(), 3 * words_->fontMetrics().height());
    const int firstLine = words_->mapTo(banner_, words_->contentsRect().topLeft()).y()
                          + words_->fontMetrics().height() / 2;
    EXPECT_NEAR(middleIn(*icon_, *banner_), firstLine, 2);
    EXPECT_NEAR(middleIn(*button_, *banner_), middleIn(*words_, *banner_), 2);
}

}  // namespace gruk
