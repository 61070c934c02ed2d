#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QProcess>

#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/model/setting_keys.h"
#include "app/screens/main_window.h"
#include "app/theme/house_style.h"
#include "app/tour/private_home.h"
#include "app/tour/sample_realm.h"

// How long the program takes from its start to the first painted frame with twenty realms, beside a
// program of the toolkit that shows an empty window; and how long each page takes to be painted
// whole. Without a display. Prints one JSON line. Touches nothing of the user's.

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int realmCount = 20;
constexpr int attempts = 9;
constexpr const char* emptyChild = "--empty-window";
constexpr const char* wholeChild = "--whole-window";

double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

double timeOf(const std::function<void()>& work)
{
    const Clock::time_point before = Clock::now();
    work();
    return Milliseconds(Clock::now() - before).count();
}

/// The services and the window of one run of the program.
struct Program {
    Program()
    {
        gruk::installHouseStyle(theme);
        theme.setReducedMotion(true);
        model = std::make_unique<gruk::AppModel>(
            gruk::ModelCollaborators{.runLoop = loop, .taskPool = pool});
        theme.followPreferences(model->preferences());
        window = std::make_unique<gruk::SweepView>(*model, theme);
    }

    std::shared_ptr<gruk::QtRunLoop> loop = std::make_shared<gruk::QtRunLoop>();
    std::shared_ptr<gruk::QtTaskPool> pool = std::make_shared<gruk::QtTaskPool>();
    gruk::Theme theme;
    std::unique_ptr<gruk::AppModel> model;
    std::unique_ptr<gruk::SweepView> window;
};

/// Lets the program go on until it has nothing left to do.
void rest(Program& program)
{
    for (int turn = 0; turn < 20; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    while (program.model->isPatrolling() || program.model->isLoadingRealmHistory()
           || program.model->isLoadingTerritories()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    for (int turn = 0; turn < 20; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void makeRealms(const fs::path& home)
{
    Program program;
    program.model->preferences().setBoolean(gruk::SettingKeys::hasSeenWalkthrough, true);
    program.window->show();
    for (int number = 1; number <= realmCount; ++number) {
        const fs::path realm = home / "realms" / ("Realm " + std::to_string(number));
        if (number == 1) {
            gruk::tour::makeSampleRealm(realm);
        } else {
            gruk::tour::makeTidyRealm(realm);
        }
        program.model->grantRealm(gruk::FileURL::directory(realm.native()));
        rest(program);
        program.model->patrolActiveRealm();
        rest(program);
    }
}

/// How long this program takes as a child with that argument, from its start to its end, which
/// comes with the first frame.
double startTime(const char* child)
{
    std::vector<double> times;
    for (int i = 0; i < attempts; ++i) {
        times.push_back(timeOf([&] {
            if (QProcess::execute(QCoreApplication::applicationFilePath(),
                                  {QString::fromLatin1(child)})
                != 0) {
                throw std::runtime_error("a child failed");
            }
        }));
    }
    return median(std::move(times));
}

/// Paints the whole window and everything in it, whatever the window system would leave out.
void paint(QWidget& window)
{
    QImage frame(window.size(), QImage::Format_ARGB32_Premultiplied);
    window.render(&frame);
}

double paintTime(QWidget& window)
{
    std::vector<double> times;
    for (int i = 0; i < attempts; ++i) {
        times.push_back(timeOf([&] { paint(window); }));
    }
    return median(std::move(times));
}

void measure(const fs::path& home)
{
    makeRealms(home);
    const double empty = startTime(emptyChild);
    const double whole = startTime(wholeChild);
    std::printf("{\"empty_start_ms\":%.1f,\"start_ms\":%.1f,\"start_ratio\":%.2f", empty, whole,
                whole / empty);

    Program program;
    program.window->show();
    rest(program);
    std::printf(",\"territories_frame_ms\":%.2f", paintTime(*program.window));
    program.model->selectRealm(program.model->grants().empty()
                                   ? gruk::FileURL()
                                   : gruk::FileURL::directory(program.model->grants()[0].path));
    rest(program);
    std::printf(",\"patrol_frame_ms\":%.2f", paintTime(*program.window));
    program.window->setDetailPage(gruk::DetailPage::browse);
    rest(program);
    std::printf(",\"browse_frame_ms\":%.2f", paintTime(*program.window));
    program.window->showWalkthrough();
    rest(program);
    std::printf(",\"walkthrough_frame_ms\":%.2f}\n", paintTime(*program.window));
}

int showEmptyWindow()
{
    QWidget window;
    window.resize(gruk::Measure::defaultWindowWidth, gruk::Measure::defaultWindowHeight);
    window.show();
    QCoreApplication::processEvents();
    paint(window);
    return EXIT_SUCCESS;
}

int showWholeWindow()
{
    Program program;
    program.window->show();
    QCoreApplication::processEvents();
    paint(*program.window);
    // What is still being loaded is of no interest any more.
    std::_Exit(EXIT_SUCCESS);
}

}  // namespace

int main(int argc, char* argv[])
{
    try {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        const std::string mode = argc > 1 ? argv[1] : "";
        if (mode == emptyChild || mode == wholeChild) {
            const QApplication application(argc, argv);
            return mode == emptyChild ? showEmptyWindow() : showWholeWindow();
        }
        // Before anything asks for a folder of the user's.
        const gruk::tour::PrivateHome home;
        const QApplication application(argc, argv);
        measure(home.home());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_window: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
