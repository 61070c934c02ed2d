#include "app/desktop/desktop_appearance.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QTest>
#include <gtest/gtest.h>

#include "app/theme/theme.h"
#include "tests/support/private_session.h"

namespace gruk {

namespace {

using Groups = QMap<QString, QVariantMap>;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");
const QString scheme = QStringLiteral("color-scheme");
const QString motion = QStringLiteral("reduced-motion");

/// A portal with the settings given, on a bus.
class FakePortal : public QDBusVirtualObject {
public:
    explicit FakePortal(const QDBusConnection& bus) : bus_(bus) { qDBusRegisterMetaType<Groups>(); }

    void come()
    {
        bus_.registerVirtualObject(portalPath, this);
        bus_.registerService(portalName);
    }

    void change(const QString& group, const QString& key, const QVariant& value)
    {
        groups[group][key] = value;
        QDBusMessage signal = QDBusMessage::createSignal(portalPath, settingsInterface,
                                                         QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.member() != QLatin1String("ReadAll")) {
            return false;
        }
        asked = message.arguments().constFirst().toStringList();
        ++questions;
        if (answers) {
            bus.send(message.createReply(answer.isValid() ? answer : QVariant::fromValue(groups)));
        }
        return true;
    }

    Groups groups;
    /// Instead of the settings.
    QVariant answer;
    bool answers = true;
    QStringList asked;
    int questions = 0;

private:
    QDBusConnection bus_;
};

class DesktopAppearanceTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!test::PrivateSession::canHaveBus()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        ASSERT_TRUE(session_.startBus());
        portal = std::make_unique<FakePortal>(connection("portal"));
    }

    void TearDown() override
    {
        portal.reset();
        for (const char* name : {"portal", "program"}) {
            QDBusConnection::disconnectFromBus(QLatin1String(name));
        }
    }

    [[nodiscard]] static QDBusConnection connection(const char* name)
    {
        return QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                             QLatin1String(name));
    }

    /// One that has heard the portal's first answer.
    [[nodiscard]] std::unique_ptr<DesktopAppearance> informed()
    {
        auto desktop = std::make_unique<DesktopAppearance>(connection("program"));
        EXPECT_TRUE(happens(*desktop));
        return desktop;
    }

    /// Whether it tells of a change before long.
    [[nodiscard]] static bool happens(DesktopAppearance& desktop)
    {
        bool isChanged = false;
        const QObject listener;
        QObject::connect(&desktop, &DesktopAppearance::changed, &listener,
                         [&] { isChanged = true; });
        return QTest::qWaitFor([&] { return isChanged; }, patience);
    }

    static constexpr int patience = 20'000;
    std::unique_ptr<FakePortal> portal;

private:
    test::PrivateSession session_;
};

}  // namespace

TEST_F(DesktopAppearanceTest, oneIsDarkAndAllElseIsLight)
{
    portal->come();
    const std::pair<uint, ColourScheme> cases[] = {
        {1, ColourScheme::dark},
        {2, ColourScheme::light},
        {0, ColourScheme::light},
        {77, ColourScheme::light},
    };
    for (const auto& [value, expected] : cases) {
        portal->groups[appearance][scheme] = value;
        EXPECT_EQ(informed()->scheme(), expected);
    }
    EXPECT_EQ(portal->asked.constFirst(), appearance);
}

TEST_F(DesktopAppearanceTest, whatThePortalDoesNotSayIsOpen)
{
    portal->groups[appearance][QStringLiteral("accent-color")] = QStringLiteral("red");
    portal->come();
    const auto desktop = informed();
    EXPECT_EQ(desktop->scheme(), std::nullopt);
    EXPECT_FALSE(desktop->hasReducedMotion());
}

TEST_F(DesktopAppearanceTest, aValueOfAnotherTypeIsOpen)
{
    portal->groups[appearance][scheme] = QStringLiteral("dark");
    portal->groups[appearance][motion] = QStringLiteral("1");
    portal->come();
    const auto desktop = informed();
    EXPECT_EQ(desktop->scheme(), std::nullopt);
    EXPECT_FALSE(desktop->hasReducedMotion());
}

TEST_F(DesktopAppearanceTest, aValueThatIsWrappedTwiceCountsToo)
{
    portal->groups[appearance][scheme] =
        QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1U))));
    portal->come();
    EXPECT_EQ(informed()->scheme(), ColourScheme::dark);
}

TEST_F(DesktopAppearanceTest, readsMotionByTheCommonKeyFirstThenByTheDesktopsOwn)
{
    portal->come();
    portal->groups[kde][QStringLiteral("AnimationDurationFactor")] = QStringLiteral("1");
    EXPECT_FALSE(informed()->hasReducedMotion());
    portal->groups[kde][QStringLiteral("AnimationDurationFactor")] = QStringLiteral("0");
    EXPECT_TRUE(informed()->hasReducedMotion());
    portal->groups[gnome][QStringLiteral("enable-animations")] = true;
    EXPECT_FALSE(informed()->hasReducedMotion());
    portal->groups[gnome][QStringLiteral("enable-animations")] = false;
    EXPECT_TRUE(informed()->hasReducedMotion());
    portal->groups[appearance][motion] = 0U;
    EXPECT_FALSE(informed()->hasReducedMotion());
    portal->groups[appearance][motion] = 1U;
    EXPECT_TRUE(informed()->hasReducedMotion());
}

TEST_F(DesktopAppearanceTest, hearsOfEachChange)
{
    portal->come();
    const auto desktop = informed();
    portal->change(appearance, scheme, 1U);
    ASSERT_TRUE(happens(*desktop));
    EXPECT_EQ(desktop->scheme(), ColourScheme::dark);
    portal->change(appearance, motion, 1U);
    ASSERT_TRUE(happens(*desktop));
    EXPECT_TRUE(desktop->hasReducedMotion());
}

TEST_F(DesktopAppearanceTest, asksAgainWhenThePortalComes)
{
    DesktopAppearance desktop(connection("program"));
    EXPECT_EQ(desktop.scheme(), std::nullopt);
    portal->groups[appearance][scheme] = 1U;
    portal->come();
    ASSERT_TRUE(happens(desktop));
    EXPECT_EQ(desktop.scheme(), ColourScheme::dark);
}

TEST_F(DesktopAppearanceTest, aPortalThatDoesNotAnswerLeavesAllOpenAndHoldsNothingUp)
{
    portal->answers = false;
    portal->come();
    constexpr int shortPatience = 50;
    DesktopAppearance desktop(connection("program"), shortPatience);
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal->questions > 0; }, patience));
    EXPECT_EQ(desktop.scheme(), std::nullopt);
    portal->change(appearance, scheme, 1U);
    ASSERT_TRUE(happens(desktop));
    EXPECT_EQ(desktop.scheme(), ColourScheme::dark);
}

TEST_F(DesktopAppearanceTest, anAnswerThatMakesNoSenseIsNone)
{
    portal->answer = QStringLiteral("dark");
    portal->come();
    DesktopAppearance desktop(connection("program"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal->questions > 0; }, patience));
    portal->change(appearance, motion, 1U);
    ASSERT_TRUE(happens(desktop));
    EXPECT_EQ(desktop.scheme(), std::nullopt);
    EXPECT_TRUE(desktop.hasReducedMotion());
}

TEST_F(DesktopAppearanceTest, theThemeFollowsItBeforeTheToolkitAndAfterTheUser)
{
    portal->groups[appearance][scheme] = 1U;
    portal->come();
    const auto desktop = informed();
    Theme theme;
    ASSERT_EQ(theme.scheme(), ColourScheme::light);
    theme.followDesktop(*desktop);
    EXPECT_EQ(theme.scheme(), ColourScheme::dark);

    theme.setAppTheme(AppTheme::light);
    EXPECT_EQ(theme.scheme(), ColourScheme::light);
    theme.setAppTheme(AppTheme::system);
    EXPECT_EQ(theme.scheme(), ColourScheme::dark);

    int changes = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { ++changes; });
    portal->change(appearance, scheme, 2U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return changes > 0; }, patience));
    EXPECT_EQ(theme.scheme(), ColourScheme::light);

    EXPECT_EQ(theme.duration(160), 160);
    portal->change(appearance, motion, 1U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return theme.duration(160) == 0; }, patience));
}

TEST(DesktopAppearance, withoutABusLeavesAllOpen)
{
    const DesktopAppearance desktop(QDBusConnection(QStringLiteral("no such connection")));
    EXPECT_EQ(desktop.scheme(), std::nullopt);
    EXPECT_FALSE(desktop.hasReducedMotion());
}

}  // namespace gruk
