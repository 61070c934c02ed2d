#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <QApplication>
#include <QCommandLineParser>

#include "app/desktop/file_dialog_open_panel.h"
#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/desktop/termination_signals.h"
#include "app/model/app_model.h"
#include "app/screens/main_window.h"
#include "app/theme/house_style.h"

namespace {

using namespace std::chrono_literals;

/// How long an end waits for a walk that was told to stop. A disk that does not answer must not
/// keep the process: what it was doing leaves no trace.
constexpr auto patienceAtEnd = 3s;

/// The toolkit ends the process in a crash when it finds no display; one sentence is kinder.
void reportFatal(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "Gruk needs a display, and found none that it can use.\n");
        std::_Exit(EXIT_FAILURE);
    }
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

int runWindow(QApplication& application)
{
    const auto taskPool = std::make_shared<gruk::QtTaskPool>();
    const auto openPanel = std::make_shared<gruk::FileDialogOpenPanel>();
    int code = 0;
    {
        gruk::Theme theme;
        gruk::installHouseStyle(theme);
        gruk::AppModel model({.runLoop = std::make_shared<gruk::QtRunLoop>(),
                              .taskPool = taskPool,
                              .openPanel = openPanel});
        gruk::SweepView window(model, theme);
        openPanel->setParentWindow(&window);
        window.show();
        const gruk::TerminationSignals signals([] { QApplication::quit(); });
        code = application.exec();
    }
    if (!taskPool->waitForDone(patienceAtEnd)) {
        std::_Exit(code);
    }
    return code;
}

}  // namespace

int main(int argc, char* argv[])
{
    const QtMessageHandler usual = qInstallMessageHandler(reportFatal);
    QApplication application(argc, argv);
    qInstallMessageHandler(usual);
    QApplication::setApplicationName(QStringLiteral("Gruk"));
    QApplication::setApplicationVersion(QStringLiteral(GRUK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.gruk.Gruk"));

    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Maps your folders, remembers them, and shows what changed."));
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.process(application);
    return runWindow(application);
}
