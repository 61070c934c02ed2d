#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <string>

#include <QApplication>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include "app/desktop/qt_task_pool.h"
#include "app/theme/house_style.h"
#include "app/tour/private_home.h"
#include "app/tour/stage.h"

// How late a timer of 10 ms on the main thread ever is while the real model and window patrol a
// folder twice, load its history and show it. Prints one JSON line. Touches nothing of the user's
// but the folder, which it lists.

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// Beats on the main thread, and keeps the latest beat of each phase.
class Heart {
public:
    Heart()
    {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        timer_.start(interval);
    }

    void begin(const std::string& phase)
    {
        beat();
        phase_ = phase;
        latest_[phase_] = 0;
        std::fprintf(stderr, "%s\n", phase.c_str());
    }

    void print(std::size_t items)
    {
        beat();
        std::printf("{\"items\":%zu,\"max_late_ms\":{", items);
        const char* separator = "";
        for (const auto& [phase, late] : latest_) {
            std::printf("%s\"%s\":%.1f", separator, phase.c_str(), late);
            separator = ",";
        }
        std::printf("}}\n");
    }

private:
    static constexpr auto interval = 10ms;

    void beat()
    {
        const Clock::time_point now = Clock::now();
        if (!phase_.empty()) {
            const double late = Milliseconds(now - last_ - interval).count();
            latest_[phase_] = std::max(latest_[phase_], late);
        }
        last_ = now;
    }

    QTimer timer_;
    std::string phase_;
    Clock::time_point last_ = Clock::now();
    std::map<std::string, double> latest_;
};

/// Looks at everything that the page has: every order of the findings, from top to bottom.
QCoro::Task<> lookThrough(gruk::tour::Stage& stage)
{
    auto* page = qobject_cast<QScrollArea*>(stage.window().page());
    for (QRadioButton* order : page->findChildren<QRadioButton*>()) {
        order->click();
        co_await stage.settle();
        QScrollBar* bar = page->verticalScrollBar();
        for (int step = 0; step <= 20; ++step) {
            bar->setValue(bar->maximum() / 20 * step);
            co_await stage.repaint();
        }
    }
    stage.window().resize(820, 560);
    co_await stage.settle();
}

QCoro::Task<> measure(gruk::tour::Stage& stage, gruk::FileURL folder, gruk::FileURL elsewhere)
{
    gruk::AppModel& model = stage.model();
    co_await model.grantRealm(elsewhere);
    co_await model.grantRealm(folder);
    co_await stage.settle();
    Heart heart;

    heart.begin("patrol");
    co_await model.patrolActiveRealm();
    co_await stage.settle();
    co_await model.patrolActiveRealm();
    co_await stage.settle();

    heart.begin("load");
    co_await model.selectRealm(elsewhere);
    co_await stage.settle();
    co_await model.selectRealm(folder);
    co_await stage.settle();

    heart.begin("show");
    co_await lookThrough(stage);
    heart.print(model.latestSnapshot() ? model.latestSnapshot()->entries.size() : 0);
    QCoreApplication::quit();
}

}  // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_heartbeat FOLDER\n");
        return EXIT_FAILURE;
    }
    try {
        const std::filesystem::path folder = std::filesystem::canonical(argv[1]);
        const gruk::tour::PrivateHome home;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QApplication application(argc, argv);
        gruk::Theme theme;
        gruk::installHouseStyle(theme);
        const auto threads = std::make_shared<gruk::QtTaskPool>();
        gruk::tour::Stage stage(theme, threads);
        QTimer::singleShot(0, &application, [&] {
            measure(stage, gruk::FileURL::directory(folder.native()),
                    gruk::FileURL::directory(home.path().native()));
        });
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_heartbeat: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
