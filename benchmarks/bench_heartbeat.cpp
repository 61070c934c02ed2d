#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iomanip>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>

#include <QApplication>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include "app/desktop/qt_run_loop.h"
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

constexpr auto interval = 10ms;

/// How late each phase's latest beat was.
class LatestBeats {
public:
    void begin(const std::string& phase)
    {
        const std::lock_guard guard(lock_);
        phase_ = phase;
        latest_[phase_] = 0;
        last_ = Clock::now();
    }

    void beat()
    {
        const std::lock_guard guard(lock_);
        const Clock::time_point now = Clock::now();
        if (!phase_.empty()) {
            const double late = Milliseconds(now - last_ - interval).count();
            latest_[phase_] = std::max(latest_[phase_], late);
        }
        last_ = now;
    }

    [[nodiscard]] std::string json() const
    {
        std::ostringstream text;
        text << std::fixed << std::setprecision(1);
        const char* separator = "{";
        for (const auto& [phase, late] : latest_) {
            text << separator << '"' << phase << "\":" << late;
            separator = ",";
        }
        text << '}';
        return text.str();
    }

private:
    /// Guards the rest.
    std::mutex lock_;
    std::string phase_;
    Clock::time_point last_ = Clock::now();
    std::map<std::string, double> latest_;
};

/// Beats on the main thread, and beside it on a thread that does nothing else: what is late there
/// too is the machine's doing.
class Heart {
public:
    Heart()
    {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { main_.beat(); });
        timer_.start(interval);
        control_ = std::jthread([this](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                std::this_thread::sleep_for(interval);
                machine_.beat();
            }
        });
    }

    void begin(const std::string& phase)
    {
        main_.beat();
        main_.begin(phase);
        machine_.begin(phase);
        std::fprintf(stderr, "%s\n", phase.c_str());
    }

    void print(std::size_t items)
    {
        main_.beat();
        control_.request_stop();
        control_.join();
        std::printf("{\"items\":%zu,\"max_late_ms\":%s,\"machine_max_late_ms\":%s}\n", items,
                    main_.json().c_str(), machine_.json().c_str());
    }

private:
    QTimer timer_;
    LatestBeats main_;
    LatestBeats machine_;
    std::jthread control_;
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
        const auto loop = std::make_shared<gruk::QtRunLoop>();
        const auto threads = std::make_shared<gruk::QtTaskPool>();
        gruk::tour::Stage stage(theme, loop, threads);
        QTimer::singleShot(0, &application, [&] {
            measure(stage, gruk::FileURL::directory(folder.native()),
                    gruk::FileURL::directory(home.home().native()));
        });
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_heartbeat: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
