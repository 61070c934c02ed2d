#include "app/desktop/file_revealer.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTextBrowser>
#include <QUrl>
#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/private_session.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/thread_task_pool.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;
using test::PrivateSession;

const QString managerName = QStringLiteral("org.freedesktop.FileManager1");

/// A file manager on the session's bus that notes what it is asked for.
class FakeFileManager : public QDBusVirtualObject {
public:
    enum class Manner { answers, refuses, staysSilent };

    explicit FakeFileManager(Manner manner)
        : manner_(manner), bus_(QDBusConnection::connectToBus(
                               qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), managerName))
    {
        bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), this);
        bus_.registerService(managerName);
    }
    ~FakeFileManager() override { QDBusConnection::disconnectFromBus(managerName); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.interface() != managerName || message.member() != QStringLiteral("ShowItems")
            || message.signature() != QStringLiteral("ass")) {
            return false;
        }
        asked.push_back(message.arguments().constFirst().toStringList());
        if (manner_ == Manner::answers) {
            bus.send(message.createReply());
        } else if (manner_ == Manner::refuses) {
            bus.send(message.createErrorReply(QDBusError::Failed, QStringLiteral("no window")));
        }
        return true;
    }

    std::vector<QStringList> asked;

private:
    Manner manner_;
    QDBusConnection bus_;
};

class FileRevealerTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateSession::canHaveBus()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        ASSERT_TRUE(session.startBus());
    }

    /// Reveals and returns when all has been done.
    void reveal(const std::vector<FileURL>& items, std::chrono::milliseconds limit = 20s)
    {
        const FileRevealer revealer(
            pool, loop,
            [this](const FileURL& folder, const std::function<void()>& onFailure) {
                opened.push_back(folder);
                if (nothingOpens) {
                    onFailure();
                }
            },
            limit);
        revealer.reveal(items, [this] { ++failures; });
        QEventLoop events;
        const std::jthread waiting([&] {
            pool->wait();
            QMetaObject::invokeMethod(
                &events, [&] { events.quit(); }, Qt::QueuedConnection);
        });
        events.exec();
        loop->run();
    }

    PrivateSession session;
    std::shared_ptr<test::ThreadTaskPool> pool = std::make_shared<test::ThreadTaskPool>();
    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::vector<FileURL> opened;
    /// Whether there is no program for folders.
    bool nothingOpens = false;
    int failures = 0;
};

const std::vector<FileURL> someItems = {FileURL("/home/a b/ä.txt"), FileURL("/home/a b/c")};

}  // namespace

TEST_F(FileRevealerTest, theFileManagerIsAskedForAllItemsAtOnce)
{
    FakeFileManager manager(FakeFileManager::Manner::answers);
    reveal(someItems);
    ASSERT_EQ(manager.asked.size(), 1U);
    EXPECT_EQ(manager.asked.front(), (QStringList{QStringLiteral("file:///home/a%20b/%C3%A4.txt"),
                                                  QStringLiteral("file:///home/a%20b/c")}));
    EXPECT_TRUE(opened.empty());
}

TEST_F(FileRevealerTest, aNameThatIsNotUTF8IsHandedOverByteForByte)
{
    FakeFileManager manager(FakeFileManager::Manner::answers);
    const FileURL url("/tmp/\xFF\xFE%41\n\x01.txt");
    reveal({url});
    ASSERT_EQ(manager.asked.size(), 1U);
    const std::string text = manager.asked.front().constFirst().toStdString();
    EXPECT_EQ(text, "file:///tmp/%FF%FE%2541%0A%01.txt");
    EXPECT_EQ(FileURL::fromFileURLText(text), url);
}

TEST_F(FileRevealerTest, aFolderIsMarkedInTheFolderThatHoldsIt)
{
    FakeFileManager manager(FakeFileManager::Manner::answers);
    reveal({FileURL::directory("/home/pictures")});
    ASSERT_EQ(manager.asked.size(), 1U);
    EXPECT_EQ(manager.asked.front(), QStringList{QStringLiteral("file:///home/pictures")});
}

TEST_F(FileRevealerTest, withoutAFileManagerTheirFolderIsOpenedOnce)
{
    reveal(someItems);
    EXPECT_EQ(opened, std::vector<FileURL>{FileURL::directory("/home/a b")});
}

TEST_F(FileRevealerTest, withoutABusTheirFoldersAreOpened)
{
    session.stopBus();
    reveal({FileURL("/a/b"), FileURL("/c"), FileURL("/a/d")});
    EXPECT_EQ(opened, (std::vector<FileURL>{FileURL::directory("/a"), FileURL::directory("/")}));
}

TEST_F(FileRevealerTest, aFileManagerThatRefusesLeavesItToTheFolder)
{
    FakeFileManager manager(FakeFileManager::Manner::refuses);
    reveal(someItems);
    EXPECT_EQ(manager.asked.size(), 1U);
    EXPECT_EQ(opened.size(), 1U);
}

TEST_F(FileRevealerTest, aFileManagerThatDoesNotAnswerIsWaitedForNoLongerThanTheLimit)
{
    FakeFileManager manager(FakeFileManager::Manner::staysSilent);
    QElapsedTimer time;
    time.start();
    reveal(someItems, 400ms);
    EXPECT_GE(time.elapsed(), 300);
    EXPECT_LT(time.elapsed(), 10'000);
    EXPECT_EQ(opened.size(), 1U);
}

TEST_F(FileRevealerTest, aBusThatIsStoppedHoldsTheMainThreadUpForNoMoment)
{
    const auto bus = static_cast<pid_t>(session.busProcess());
    ::kill(bus, SIGSTOP);
    const FileRevealer revealer(
        pool, loop,
        [this](const FileURL& folder, const std::function<void()>&) { opened.push_back(folder); },
        2s);
    QElapsedTimer time;
    time.start();
    revealer.reveal(someItems, [] {});
    EXPECT_LT(time.elapsed(), 500);
    pool->wait();
    ::kill(bus, SIGCONT);
    loop->run();
    EXPECT_EQ(opened.size(), 1U);
}

TEST_F(FileRevealerTest, nothingHappensForNoItems)
{
    FakeFileManager manager(FakeFileManager::Manner::answers);
    reveal({});
    EXPECT_TRUE(manager.asked.empty());
    EXPECT_TRUE(opened.empty());
}

TEST_F(FileRevealerTest, whatNothingCanShowIsToldOnce)
{
    nothingOpens = true;
    reveal({FileURL("/a/b"), FileURL("/c/d")});
    EXPECT_EQ(opened.size(), 2U);
    EXPECT_EQ(failures, 1);
    nothingOpens = false;
    reveal({FileURL("/a/b")});
    EXPECT_EQ(failures, 1);
}

namespace {

/// A machine whose programs are those of the test.
class FolderOnDesktop : public testing::Test {
protected:
    /// An opener of the desktop that notes what it is asked for and exits with that code.
    void makeOpener(int code)
    {
        const std::string opener = programs.path("xdg-open");
        std::ofstream(opener) << "#!/bin/sh\necho \"$@\" > '" << programs.path("asked")
                              << "'\nexit " << code << "\n";
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    }
    /// Opens it and waits until `isDone`.
    void open(const FileURL& folder, const std::function<bool()>& isDone)
    {
        openFolderOnDesktop(folder, [this] { ++failures; });
        QDeadlineTimer patience(20'000);
        while (!isDone() && !patience.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        }
    }

    test::TemporaryDirectory programs;
    test::EnvironmentVariable path{"PATH", programs.path()};
    int failures = 0;
};

}  // namespace

TEST_F(FolderOnDesktop, isOpenedAtItsPlaceByteForByte)
{
    // The toolkit calls what handles a URL by its name, and a signal has one.
    QTextBrowser handler;
    std::vector<QByteArray> opened;
    QObject::connect(&handler, &QTextBrowser::anchorClicked, &handler,
                     [&](const QUrl& url) { opened.push_back(url.toEncoded()); });
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &handler, "anchorClicked");
    openFolderOnDesktop(FileURL::directory("/tmp/\xFF %41?#"), [this] { ++failures; });
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    EXPECT_EQ(opened, std::vector<QByteArray>{"file:///tmp/%FF%20%2541%3F%23/"});
    EXPECT_EQ(failures, 0);
}

TEST_F(FolderOnDesktop, theDesktopsOpenerIsAskedForItByteForByte)
{
    makeOpener(0);
    open(FileURL::directory("/tmp/\xFF %41?#"), [this] {
        std::error_code failure;
        return std::filesystem::file_size(programs.path("asked"), failure) > 0 && !failure;
    });
    EXPECT_EQ(programs.read("asked"), "file:///tmp/%FF%20%2541%3F%23/\n");
    EXPECT_EQ(failures, 0);
}

TEST_F(FolderOnDesktop, anOpenerThatFindsNoProgramForItIsAFailure)
{
    constexpr int noProgramFound = 3;
    makeOpener(noProgramFound);
    open(FileURL::directory("/tmp"), [this] { return failures > 0; });
    EXPECT_EQ(failures, 1);
}

TEST_F(FolderOnDesktop, aDesktopWithoutAnythingThatOpensIsAFailure)
{
    openFolderOnDesktop(FileURL::directory("/tmp"), [this] { ++failures; });
    EXPECT_EQ(failures, 1);
}

}  // namespace gruk
