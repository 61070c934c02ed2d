#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include <QApplication>
#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDeadlineTimer>

#include "app/desktop/activation.h"
#include "app/desktop/desktop_appearance.h"
#include "app/desktop/file_dialog_open_panel.h"
#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/desktop/session_bus.h"
#include "app/desktop/single_instance.h"
#include "app/desktop/termination_signals.h"
#include "app/model/app_model.h"
#include "app/screens/gruk_app.h"
#include "app/screens/main_window.h"
#include "app/theme/art.h"
#include "app/theme/house_style.h"

namespace {

using namespace std::chrono_literals;

/// How long an end waits for a walk that was told to stop. A disk that does not answer must not
/// keep the process: what it was doing leaves no trace.
constexpr auto patienceAtEnd = 3s;

/// The toolkit ends the process in a crash, after some talk, when it finds no display; one sentence
/// is kinder.
void reportFatal(QtMsgType type, const QMessageLogContext&, const QString&)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "Gruk needs a display, and found none that it can use.\n");
        std::_Exit(EXIT_FAILURE);
    }
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("Gruk"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GRUK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.gruk.Gruk"));
}

/// Whether only words are asked for, which need no display.
bool asksForWords(int argc, char* argv[])
{
    constexpr std::string_view options[] = {"-h", "--help", "--help-all", "-v", "--version"};
    return std::any_of(argv + 1, argv + argc, [&](const char* argument) {
        return std::find(std::begin(options), std::end(options), argument) != std::end(options);
    });
}

/// How the program is to start. Ends the process when only words were asked for, or something that
/// there is not.
gruk::GrukApp::Start readArguments(const QCoreApplication& application)
{
    using enum gruk::GrukApp::Start;
    const QCommandLineOption background(
        QStringLiteral("background"),
        QStringLiteral("Show no window where the desktop has a tray."));
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Maps your folders, remembers them, and shows what changed."));
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.addOption(background);
    arguments.process(application);
    return arguments.isSet(background) ? inTheBackground : inTheOpen;
}

/// What the desktop says of the look of programs; without a bus it says nothing.
gruk::DesktopAppearance askDesktop()
{
    return gruk::DesktopAppearance(gruk::connectToSessionBus(QDeadlineTimer(gruk::patienceWithBus))
                                       .value_or(QDBusConnection(QString())));
}

/// How this process was started.
struct Opening {
    gruk::GrukApp::Start start = gruk::GrukApp::Start::inTheOpen;
    gruk::ActivationTokens tokens = {};
};

int runScenes(QApplication& application, gruk::SingleInstance& instance, const Opening& opening)
{
    // What runs on the pool may post to the loop until it has ended.
    const auto runLoop = std::make_shared<gruk::QtRunLoop>();
    const auto taskPool = std::make_shared<gruk::QtTaskPool>();
    const auto openPanel = std::make_shared<gruk::FileDialogOpenPanel>();
    int code = 0;
    {
        const auto preferences = std::make_shared<gruk::UserDefaults>();
        const gruk::DesktopAppearance desktop = askDesktop();
        gruk::Theme theme;
        theme.followPreferences(*preferences);
        theme.followDesktop(desktop);
        gruk::installHouseStyle(theme);
        gruk::AppModel model({.preferences = preferences,
                              .runLoop = runLoop,
                              .taskPool = taskPool,
                              .openPanel = openPanel});
        gruk::GrukApp scenes(model, theme);
        QObject::connect(
            &scenes, &gruk::GrukApp::mainWindowMade, &scenes,
            [&openPanel](gruk::SweepView& window) { openPanel->setParentWindow(&window); });
        QObject::connect(&scenes, &gruk::GrukApp::quitRequested, &application, &QApplication::quit);
        QObject::connect(&instance, &gruk::SingleInstance::activated, &scenes,
                         &gruk::GrukApp::openMainWindow);
        scenes.start(opening.start, opening.tokens);
        const gruk::TerminationSignals signals([] { QApplication::quit(); });
        code = application.exec();
    }
    if (!taskPool->waitForDone(patienceAtEnd)) {
        std::_Exit(code);
    }
    return code;
}

/// Runs the program, or shows the window of the process that runs it already.
int runOnce(QApplication& application, const Opening& opening)
{
    // The other one may be about to end: then this one is the first at the second attempt.
    constexpr int attempts = 2;
    for (int i = 0; i < attempts; ++i) {
        gruk::SingleInstance instance(QGuiApplication::desktopFileName());
        if (instance.isFirst()) {
            return runScenes(application, instance, opening);
        }
        if (opening.start == gruk::GrukApp::Start::inTheBackground) {
            // It runs, and that is all that was asked for.
            return EXIT_SUCCESS;
        }
        if (instance.activateOther(opening.tokens)) {
            return EXIT_SUCCESS;
        }
    }
    std::fprintf(stderr, "Gruk is running already, but does not answer.\n");
    return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char* argv[])
{
    nameApplication();
    if (asksForWords(argc, argv)) {
        const QCoreApplication application(argc, argv);
        readArguments(application);
    }
    const gruk::ActivationTokens tokens = gruk::ActivationTokens::fromEnvironment();
    const QtMessageHandler usual = qInstallMessageHandler(reportFatal);
    QApplication application(argc, argv);
    qInstallMessageHandler(usual);
    QApplication::setWindowIcon(gruk::programIcon());
    return runOnce(application, {readArguments(application), tokens});
}
