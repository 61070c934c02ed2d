#include "app/desktop/tray_item.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <gtest/gtest.h>

#include "app/desktop/tray_bus_types.h"
#include "tests/support/fake_tray.h"
#include "tests/support/private_session.h"

namespace gruk {

namespace {

using test::FakeTray;
using test::PrivateSession;

constexpr int patience = 20'000;
const QString applicationID = QStringLiteral("io.github.gruk.Gruk");

class TrayItemTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateSession::canHaveBus()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        ASSERT_TRUE(session.startBus());
    }

    void makeItem()
    {
        item = std::make_unique<TrayItem>(applicationID);
        QPixmap picture(32, 32);
        picture.fill(QColor(1, 2, 3));
        item->setLook(
            {QStringLiteral("Gruk"), QStringLiteral("Baseline mapped"), QString(), QIcon(picture)});
        item->setEntries(entries);
        QObject::connect(item.get(), &TrayItem::chosen, item.get(),
                         [this](int id, const ActivationTokens& given) {
                             chosen.push_back(id);
                             tokens = given;
                         });
        QObject::connect(item.get(), &TrayItem::activated, item.get(),
                         [this](const QRect& anchor, const ActivationTokens& given) {
                             anchors.push_back(anchor);
                             tokens = given;
                         });
    }

    template <typename Condition>
    static bool waitUntil(Condition isSo)
    {
        const QDeadlineTimer deadline(patience);
        while (!isSo() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        return isSo();
    }
    [[nodiscard]] bool becomesShown()
    {
        return waitUntil([this] { return item->isShown(); });
    }

    PrivateSession session;
    std::vector<TrayEntry> entries = {
        {TrayEntry::Kind::action, 1, QStringLiteral("Patrol_now & then"), true},
        {TrayEntry::Kind::action, 2, QStringLiteral("Patrolling…"), false},
        {TrayEntry::Kind::divider, 3},
        {TrayEntry::Kind::action, 4, QStringLiteral("Quit Gruk"), true},
    };
    std::unique_ptr<TrayItem> item;
    std::vector<int> chosen;
    std::vector<QRect> anchors;
    ActivationTokens tokens;
};

QStringList shownMenu()
{
    return {QStringLiteral("Patrol__now & then"), QStringLiteral("-Patrolling…"),
            QStringLiteral("---"), QStringLiteral("Quit Gruk")};
}

}  // namespace

TEST_F(TrayItemTest, aTrayThatIsThereShowsIt)
{
    FakeTray tray;
    ASSERT_TRUE(tray.isRunning());
    makeItem();
    EXPECT_FALSE(item->isShown());
    ASSERT_TRUE(becomesShown());
    EXPECT_EQ(tray.items().size(), 1);
    EXPECT_EQ(tray.property(QStringLiteral("Title")), QStringLiteral("Gruk"));
    EXPECT_EQ(tray.property(QStringLiteral("Id")), applicationID);
    EXPECT_EQ(tray.property(QStringLiteral("Category")), QStringLiteral("ApplicationStatus"));
    EXPECT_EQ(tray.property(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_EQ(tray.property(QStringLiteral("ItemIsMenu")), false);
    const auto toolTip = qdbus_cast<TrayToolTip>(tray.property(QStringLiteral("ToolTip")));
    EXPECT_EQ(toolTip.title, QStringLiteral("Gruk"));
    EXPECT_EQ(toolTip.text, QStringLiteral("Baseline mapped"));
}

TEST_F(TrayItemTest, theIconComesInPixelsOfNetworkOrder)
{
    FakeTray tray;
    makeItem();
    ASSERT_TRUE(becomesShown());
    const auto icons = qdbus_cast<TrayPixmaps>(tray.property(QStringLiteral("IconPixmap")));
    ASSERT_FALSE(icons.isEmpty());
    for (const TrayPixmap& icon : icons) {
        EXPECT_EQ(icon.pixels.size(), qsizetype{4} * icon.width * icon.height);
        EXPECT_EQ(icon.pixels.left(4), QByteArray("\xFF\x01\x02\x03", 4));
    }
}

TEST_F(TrayItemTest, aTrayThatComesLaterIsNoticedAndOneThatGoesIsToo)
{
    makeItem();
    QCoreApplication::processEvents();
    EXPECT_FALSE(item->isShown());
    {
        FakeTray tray;
        ASSERT_TRUE(becomesShown());
        EXPECT_EQ(tray.menu(), shownMenu());
    }
    EXPECT_TRUE(waitUntil([this] { return !item->isShown(); }));
    FakeTray next;
    EXPECT_TRUE(becomesShown());
    EXPECT_EQ(next.menu(), shownMenu());
}

TEST_F(TrayItemTest, aTrayThatNobodyShowsIsNone)
{
    FakeTray tray(FakeTray::Host::none);
    makeItem();
    ASSERT_TRUE(tray.waitForItem());
    EXPECT_EQ(tray.menu(), shownMenu());
    EXPECT_FALSE(item->isShown());
    tray.setHost(FakeTray::Host::shown);
    EXPECT_TRUE(becomesShown());
}

TEST_F(TrayItemTest, whatIsClickedInItsMenuIsChosen)
{
    FakeTray tray;
    makeItem();
    ASSERT_TRUE(becomesShown());
    ASSERT_TRUE(tray.click(QStringLiteral("Patrol__now & then")));
    EXPECT_TRUE(waitUntil([this] { return !chosen.empty(); }));
    ASSERT_TRUE(tray.click(QStringLiteral("Patrolling…")));
    ASSERT_TRUE(tray.click(QStringLiteral("Quit Gruk")));
    EXPECT_TRUE(waitUntil([this] { return chosen.size() >= 2; }));
    EXPECT_EQ(chosen, (std::vector{1, 4})) << "what is disabled can't be chosen";
}

TEST_F(TrayItemTest, aClickOnItComesWithTheTokenThatTheTrayGave)
{
    FakeTray tray;
    makeItem();
    ASSERT_TRUE(becomesShown());
    tray.call(QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.kde.StatusNotifierItem"),
              QStringLiteral("ProvideXdgActivationToken"), {QStringLiteral("a token")});
    tray.activate({700, 10});
    ASSERT_EQ(anchors.size(), 1U);
    EXPECT_EQ(tokens.activationToken, QStringLiteral("a token"));
    tray.activate({700, 10});
    EXPECT_EQ(tokens.activationToken, QString()) << "a token is good for once";
    EXPECT_EQ(chosen, std::vector<int>());
}

TEST_F(TrayItemTest, theTrayIsToldWhatChangedAndNoMore)
{
    FakeTray tray;
    makeItem();
    ASSERT_TRUE(becomesShown());
    EXPECT_EQ(tray.menu(), shownMenu());
    item->setEntries(entries);
    entries[1].text = QStringLiteral("Patrol again");
    entries[1].isEnabled = true;
    item->setEntries(entries);
    EXPECT_TRUE(waitUntil([&] { return tray.entryChanges == 1; }));
    EXPECT_EQ(tray.layoutChanges, 0);
    EXPECT_EQ(tray.menu()[1], QStringLiteral("Patrol again"));
    entries.erase(entries.begin());
    item->setEntries(entries);
    EXPECT_TRUE(waitUntil([&] { return tray.layoutChanges == 1; }));
    EXPECT_EQ(tray.menu(), (QStringList{QStringLiteral("Patrol again"), QStringLiteral("---"),
                                        QStringLiteral("Quit Gruk")}));
    EXPECT_EQ(tray.entryChanges, 1);
}

TEST_F(TrayItemTest, theMenuAnswersForSeveralEntriesAtOnce)
{
    FakeTray tray;
    makeItem();
    ASSERT_TRUE(becomesShown());
    const QString menu = QStringLiteral("com.canonical.dbusmenu");
    const QVariantList properties =
        tray.call(QStringLiteral("/MenuBar"), menu, QStringLiteral("GetGroupProperties"),
                  {QVariant::fromValue(QList<int>{4, 2}), QStringList{QStringLiteral("label")}});
    ASSERT_EQ(properties.size(), 1);
    const auto items = qdbus_cast<QList<TrayMenuItem>>(properties[0]);
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].id, 2);
    EXPECT_EQ(items[0].properties,
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("Patrolling…")}}));
    const QList<TrayMenuEvent> events = {
        {4, QStringLiteral("hovered"), QDBusVariant(0), 0},
        {77, QStringLiteral("clicked"), QDBusVariant(0), 0},
        {1, QStringLiteral("clicked"), QDBusVariant(0), 0},
    };
    const QVariantList unknown =
        tray.call(QStringLiteral("/MenuBar"), menu, QStringLiteral("EventGroup"),
                  {QVariant::fromValue(events)});
    ASSERT_EQ(unknown.size(), 1);
    EXPECT_EQ(qdbus_cast<QList<int>>(unknown[0]), QList<int>{77});
    EXPECT_TRUE(waitUntil([this] { return !chosen.empty(); }));
    EXPECT_EQ(chosen, std::vector{1});
}

TEST_F(TrayItemTest, itsOwnMenuHasTheSameEntries)
{
    makeItem();
    const QList<QAction*> actions = item->menu().actions();
    ASSERT_EQ(actions.size(), 4);
    EXPECT_EQ(actions[0]->text(), QStringLiteral("Patrol_now && then"));
    EXPECT_FALSE(actions[1]->isEnabled());
    EXPECT_TRUE(actions[2]->isSeparator());
    actions[3]->trigger();
    EXPECT_EQ(chosen, std::vector{4});
}

TEST(TrayItem, withoutABusThereIsNoTrayAndNothingFails)
{
    const PrivateSession session;
    TrayItem item(applicationID);
    item.setEntries({{TrayEntry::Kind::action, 1, QStringLiteral("Quit Gruk"), true}});
    QCoreApplication::processEvents();
    EXPECT_FALSE(item.isShown());
}

TEST_F(TrayItemTest, theProgramItselfIsInTheTrayAndEndsByItsMenu)
{
    FakeTray tray;
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(GRUK_PROGRAM), {QStringLiteral("--background")});
    ASSERT_TRUE(program.waitForStarted(patience));
    ASSERT_TRUE(tray.waitForItem());
    EXPECT_EQ(tray.property(QStringLiteral("Title")), QStringLiteral("Gruk"));
    EXPECT_EQ(tray.menu(), (QStringList{QStringLiteral("-Choose a realm in the app"),
                                        QStringLiteral("Tidy my Desktop"),
                                        QStringLiteral("Settings…"), QStringLiteral("Open Gruk"),
                                        QStringLiteral("---"), QStringLiteral("Quit Gruk")}));
    ASSERT_TRUE(tray.click(QStringLiteral("Open Gruk")));
    EXPECT_EQ(program.state(), QProcess::Running);
    ASSERT_TRUE(tray.click(QStringLiteral("Quit Gruk")));
    EXPECT_TRUE(program.waitForFinished(patience));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
}

}  // namespace gruk
