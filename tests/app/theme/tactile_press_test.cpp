#include "app/theme/tactile_press.h"

#include <cmath>
#include <numbers>

#include <QAbstractAnimation>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <gtest/gtest.h>

#include "tests/support/theme_window.h"

namespace gruk {

namespace {

/// The animation of a press, moved by hand.
class Clock {
public:
    explicit Clock(const QObject& press) : run_(press.findChild<QAbstractAnimation*>()) {}

    void setMilliseconds(int milliseconds)
    {
        run_->pause();
        run_->setCurrentTime(milliseconds);
    }

private:
    QAbstractAnimation* run_;
};

/// By small steps of the spring's own law: mass 1, the stiffness of the response, damping twice its
/// root.
double simulated(double seconds)
{
    const double frequency = 2 * std::numbers::pi / springResponse;
    constexpr double step = 1e-6;
    double place = 0;
    double speed = 0;
    for (double time = 0; time < seconds; time += step) {
        const double force = frequency * frequency * (1 - place) - 2 * frequency * speed;
        speed += force * step;
        place += speed * step;
    }
    return place;
}

}  // namespace

TEST(PressLook, isTheFiguresFullyPressedAndNothingAtRest)
{
    EXPECT_EQ(pressLook(0), PressLook{});
    const PressLook pressed = pressLook(1);
    EXPECT_DOUBLE_EQ(pressed.scale, 0.97);
    EXPECT_DOUBLE_EQ(pressed.offset, 1.5);
    EXPECT_DOUBLE_EQ(pressed.opacity, 0.88);
}

TEST(SpringWay, goesAsASpringOfThatResponseAndCriticalDamping)
{
    EXPECT_DOUBLE_EQ(springResponse, 0.16);
    const SpringWay way = {0, 0, 1};
    for (const double seconds : {0.01, 0.02, 0.04, 0.08, 0.16}) {
        EXPECT_NEAR(way.at(seconds), simulated(seconds), 1e-3) << seconds;
    }
    // By the closed form, one minus (1 + wt) e^-wt, where wt is pi half way through.
    EXPECT_NEAR(way.at(0.08), 1 - (1 + std::numbers::pi) * std::exp(-std::numbers::pi), 1e-12);
}

TEST(SpringWay, startsAtRestNeverSwingsPastAndArrives)
{
    const SpringWay way = {0, 0, 1};
    EXPECT_DOUBLE_EQ(way.at(0), 0);
    EXPECT_DOUBLE_EQ(way.speedAt(0), 0);
    double last = 0;
    for (int millisecond = 1; millisecond <= springMilliseconds; ++millisecond) {
        const double place = way.at(millisecond / 1'000.0);
        EXPECT_GT(place, last);
        EXPECT_LT(place, 1);
        last = place;
    }
    EXPECT_GT(last, 0.9995);
}

TEST(SpringWay, takesItsSpeedAlongWhenItTurns)
{
    const SpringWay way = {0, 0, 1};
    const SpringWay back = {way.at(0.03), way.speedAt(0.03), 0};
    EXPECT_DOUBLE_EQ(back.at(0), way.at(0.03));
    EXPECT_NEAR((back.at(1e-6) - back.at(0)) / 1e-6, way.speedAt(0.03), 1e-2);
    EXPECT_GT(back.at(0.002), back.at(0));
    EXPECT_NEAR(back.at(0.3), 0, 0.002);
}

TEST(GrukTactileButtonStyle, followsTheButtonByItsSpring)
{
    test::ThemeWindow window;
    auto* button = new QPushButton(QStringLiteral("Press"), &window);
    auto* press = new GrukTactileButtonStyle(window.theme, *button);
    window.begin();
    EXPECT_EQ(press->look(), PressLook{});
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.middleOf(*button));
    EXPECT_TRUE(press->isPressed());
    Clock clock(*press);
    clock.setMilliseconds(80);
    EXPECT_EQ(press->look(), pressLook(SpringWay{0, 0, 1}.at(0.08)));
    clock.setMilliseconds(springMilliseconds);
    EXPECT_NEAR(press->look().scale, 0.97, 1e-4);
    EXPECT_NEAR(press->look().offset, 1.5, 1e-3);
    EXPECT_NEAR(press->look().opacity, 0.88, 1e-4);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, window.middleOf(*button));
    EXPECT_FALSE(press->isPressed());
    clock.setMilliseconds(80);
    EXPECT_NEAR(press->look().scale, pressLook(SpringWay{1, 0, 0}.at(0.08)).scale, 1e-4);
}

TEST(GrukTactileButtonStyle, followsTheKeyboardToo)
{
    test::ThemeWindow window;
    auto* button = new QPushButton(QStringLiteral("Press"), &window);
    const auto* press = new GrukTactileButtonStyle(window.theme, *button);
    window.begin();
    button->setFocus();
    QTest::keyPress(window.windowHandle(), Qt::Key_Space);
    EXPECT_TRUE(press->isPressed());
    QTest::keyRelease(window.windowHandle(), Qt::Key_Space);
    EXPECT_FALSE(press->isPressed());
}

TEST(GrukTactilePressModifier, isPressedWhileThePointerIsDownAndNoLonger)
{
    test::ThemeWindow window;
    auto* card = new QWidget(&window);
    card->setGeometry(20, 20, 100, 60);
    const auto* press = new GrukTactilePressModifier(window.theme, *card);
    window.begin();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_TRUE(press->isPressed());
    QTest::mouseMove(window.windowHandle(), QPoint(300, 300));
    EXPECT_TRUE(press->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(300, 300));
    EXPECT_FALSE(press->isPressed());
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    card->hide();
    EXPECT_FALSE(press->isPressed());
}

TEST(GrukTactilePressModifier, withReducedMotionIsPressedAtOnce)
{
    test::ThemeWindow window;
    window.theme.setReducedMotion(true);
    const auto* press = new GrukTactilePressModifier(window.theme, window);
    window.begin();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_EQ(press->look(), pressLook(1));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_EQ(press->look(), PressLook{});
}

TEST(GrukTactilePressModifier, scalesAboutTheMiddleMovesTowardTheShadowAndPales)
{
    test::ThemeWindow window;
    window.theme.setReducedMotion(true);
    const auto* press = new GrukTactilePressModifier(window.theme, window);
    window.begin();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    QImage image(200, 100, QImage::Format_ARGB32);
    QPainter painter(&image);
    press->apply(painter, QRectF(0, 0, 200, 100));
    EXPECT_NEAR(painter.transform().map(QPointF(100, 50)).x(), 101.5, 1e-9);
    EXPECT_NEAR(painter.transform().map(QPointF(100, 50)).y(), 51.5, 1e-9);
    EXPECT_NEAR(painter.transform().map(QPointF(0, 0)).x(), 4.5, 1e-9);
    EXPECT_NEAR(painter.transform().map(QPointF(0, 0)).y(), 3, 1e-9);
    EXPECT_NEAR(painter.opacity(), 0.88, 1e-6);
    painter.end();
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
}

TEST(GrukTactilePressModifier, paintsItsWidgetAnewOnlyWhenItsLookChanges)
{
    test::ThemeWindow window;
    window.theme.setReducedMotion(true);
    const auto* press = new GrukTactilePressModifier(window.theme, window);
    window.begin();
    int changes = 0;
    QObject::connect(press, &GrukTactilePressModifier::lookChanged, &window, [&] { ++changes; });
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_EQ(changes, 1);
    QTest::mouseMove(window.windowHandle(), QPoint(70, 50));
    QTest::mouseMove(window.windowHandle(), QPoint(900, 900));
    EXPECT_EQ(changes, 1);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(900, 900));
    EXPECT_EQ(changes, 2);
}

TEST(GrukTactileGroupPress, pressesAllThatIsInTheGroupAsOne)
{
    test::ThemeWindow window;
    window.theme.setReducedMotion(true);
    auto* group = new QWidget(&window);
    group->setGeometry(100, 100, 200, 100);
    auto* patch = new QLabel(group);
    patch->setGeometry(0, 0, 200, 100);
    QPixmap black(200, 100);
    black.fill(Qt::black);
    patch->setPixmap(black);
    const auto* press = new GrukTactileGroupPress(window.theme, *group);
    window.begin();
    const auto lightness = [&](const QPoint& at) {
        return qGray(window.grab().toImage().pixel(at));
    };
    const QImage before = window.grab().toImage();
    ASSERT_EQ(lightness({101, 150}), 0);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(150, 150));
    EXPECT_TRUE(press->isPressed());
    // 0.97 of the width about the middle, and 1.5 to the right: from 104.5 to 298.5, and paler.
    EXPECT_GT(lightness({103, 150}), 200);
    EXPECT_GT(lightness({200, 150}), 10);
    EXPECT_LT(lightness({200, 150}), 60);
    EXPECT_LT(lightness({296, 150}), 60);
    EXPECT_GT(lightness({299, 150}), 200);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(150, 150));
    EXPECT_EQ(window.grab().toImage(), before);
}

TEST(GrukTactileGroupPress, hasItsPictureOnlyWhileSomethingIsSeenOfIt)
{
    test::ThemeWindow window;
    auto* press = new GrukTactileGroupPress(window.theme, window);
    window.begin();
    EXPECT_EQ(window.graphicsEffect(), nullptr);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    Clock clock(*press);
    clock.setMilliseconds(80);
    EXPECT_NE(window.graphicsEffect(), nullptr);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    clock.setMilliseconds(80);
    EXPECT_NE(window.graphicsEffect(), nullptr);
    press->findChild<QAbstractAnimation*>()->resume();
    press->findChild<QAbstractAnimation*>()->setCurrentTime(springMilliseconds);
    EXPECT_EQ(window.graphicsEffect(), nullptr);
}

TEST(GrukTactileGroupPress, isNotPressedWhileItMayNotBe)
{
    test::ThemeWindow window;
    auto* press = new GrukTactileGroupPress(window.theme, window);
    window.begin();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    press->setPressable(false);
    EXPECT_FALSE(press->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_FALSE(press->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    press->setPressable(true);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_TRUE(press->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
}

}  // namespace gruk
