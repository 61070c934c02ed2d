#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QScrollBar>

#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/model/app_model.h"
#include "app/screens/browse_table.h"
#include "app/screens/file_table_view.h"
#include "app/theme/house_style.h"
#include "app/theme/text_field.h"
#include "app/tour/private_home.h"

// How long the Browse page takes to appear, to scroll by a frame, to be sorted and to be filtered
// with very many rows, without a display, beside an empty window of the toolkit. The folder is
// listed from memory: what the disk takes is measured elsewhere. Prints one JSON line. Touches
// nothing of the user's.

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int usualRows = 100'000;
constexpr int folderEvery = 500;
constexpr int frames = 300;
constexpr int attempts = 5;
constexpr QSize windowSize{872, 760};

double timeOf(const std::function<void()>& work)
{
    const Clock::time_point before = Clock::now();
    work();
    return Milliseconds(Clock::now() - before).count();
}

/// The middle one of several attempts.
double usualTimeOf(const std::function<void()>& work)
{
    std::vector<double> times;
    for (int i = 0; i < attempts; ++i) {
        times.push_back(timeOf(work));
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/// Lays out and paints whatever asks for it.
void paintWhatIsDue()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

/// Names as they are found, none in its place, with a folder now and then.
std::vector<gruk::FileEntry> entriesIn(const gruk::FileURL& folder, int count)
{
    constexpr const char* names[] = {"IMG_%d.jpg", "report %d.pdf", "Screenshot %d.png", "notes-%d",
                                     "Ünïcode %d.txt"};
    constexpr int stride = 7'919;
    constexpr double firstDay = 1'600'000'000;
    std::vector<gruk::FileEntry> entries;
    for (int i = 0; i < count; ++i) {
        const int number = static_cast<int>(qint64{i} * stride % count);
        char name[64];
        std::snprintf(name, sizeof(name), names[static_cast<std::size_t>(i) % std::size(names)],
                      number);
        gruk::FileEntry entry;
        entry.isDirectory = i % folderEvery == 0;
        entry.id = folder.appending(name, entry.isDirectory ? gruk::FileURL::Names::directory
                                                            : gruk::FileURL::Names::item);
        entry.kind = gruk::classify(name, entry.isDirectory, false);
        entry.allocatedSize = entry.isDirectory ? 0 : gruk::Bytes{number} * stride;
        entry.dateLastOpened = gruk::Date{firstDay + number * 1'000.0};
        entries.push_back(std::move(entry));
    }
    return entries;
}

struct Figures {
    double emptyWindow = 0;
    double emptyFrame = 0;
    double appear = 0;
    double scrollFrame = 0;
    double slowestScrollFrame = 0;
    double sortByName = 0;
    double sortBySize = 0;
    double filter = 0;
    double catchUp = 0;
};

void measureEmptyWindow(Figures& figures)
{
    figures.emptyWindow = usualTimeOf([] {
        QWidget window;
        window.resize(windowSize);
        window.show();
        paintWhatIsDue();
    });
    QWidget window;
    window.resize(windowSize);
    window.show();
    paintWhatIsDue();
    figures.emptyFrame = usualTimeOf([&] { window.repaint(); });
}

void measureScrolling(Figures& figures, gruk::BrowseTable& table)
{
    QScrollBar& bar = *table.verticalScrollBar();
    double sum = 0;
    for (int frame = 0; frame < frames; ++frame) {
        // A few rows at first, then far jumps as by the handle.
        const int step =
            frame < frames / 2 ? 3 * gruk::ScanNodeDelegate::rowHeight : bar.maximum() / frames;
        const double time = timeOf([&] {
            bar.setValue(bar.value() + step);
            paintWhatIsDue();
        });
        sum += time;
        figures.slowestScrollFrame = std::max(figures.slowestScrollFrame, time);
    }
    figures.scrollFrame = sum / frames;
}

void measurePage(Figures& figures, gruk::AppModel& model, gruk::Theme& theme,
                 const gruk::FileURL& folder)
{
    figures.appear = usualTimeOf([&] {
        model.session().open(folder);
        gruk::FileTableView page(model, theme);
        page.resize(windowSize);
        page.show();
        paintWhatIsDue();
    });
    gruk::FileTableView page(model, theme);
    page.resize(windowSize);
    page.show();
    paintWhatIsDue();
    auto& table = *page.findChild<gruk::BrowseTable*>();
    measureScrolling(figures, table);

    const auto press = [&](std::size_t column) {
        table.browseHeader().buttons()[column]->click();
        paintWhatIsDue();
    };
    figures.sortByName = timeOf([&] { press(0); });
    figures.sortBySize = usualTimeOf([&] { press(1); });
    auto* field = page.findChild<gruk::TextField*>();
    figures.filter = timeOf([&] {
        field->setText(QStringLiteral("1"));
        paintWhatIsDue();
    });
    field->clear();
    auto* rows = page.findChild<gruk::ScanNodeModel*>();
    figures.catchUp = usualTimeOf([&] {
        // As when one folder's size has come, which sends its row elsewhere.
        model.session().nodes().front()->report({1, 1});
        rows->catchUp();
        paintWhatIsDue();
    });
}

void print(const Figures& f, int rows)
{
    std::printf(
        "{\"rows\":%d,\"empty_window_ms\":%.2f,\"appear_ms\":%.1f,\"appear_ratio\":%.1f,"
        "\"empty_frame_ms\":%.2f,\"scroll_frame_ms\":%.2f,\"scroll_frame_ratio\":%.1f,"
        "\"slowest_scroll_frame_ms\":%.2f,\"sort_by_name_ms\":%.1f,\"sort_by_size_ms\":%.1f,"
        "\"filter_ms\":%.1f,\"size_arrives_ms\":%.1f}\n",
        rows, f.emptyWindow, f.appear, f.appear / f.emptyWindow, f.emptyFrame, f.scrollFrame,
        f.scrollFrame / f.emptyFrame, f.slowestScrollFrame, f.sortByName, f.sortBySize, f.filter,
        f.catchUp);
}

void run(int rows)
{
    gruk::Theme theme;
    gruk::installHouseStyle(theme);
    const gruk::FileURL folder = gruk::FileURL::directory("/memory");
    const std::vector<gruk::FileEntry> entries = entriesIn(folder, rows);
    const auto loop = std::make_shared<gruk::QtRunLoop>();
    const auto threads = std::make_shared<gruk::QtTaskPool>();
    const auto session =
        std::make_shared<gruk::ScanSession>(std::make_shared<gruk::ScanEngine>(), threads, loop,
                                            [&](const gruk::FileURL&) { return entries; });
    gruk::AppModel model({.session = session, .runLoop = loop, .taskPool = threads});
    Figures figures;
    measureEmptyWindow(figures);
    measurePage(figures, model, theme, folder);
    print(figures, rows);
}

}  // namespace

int main(int argc, char* argv[])
{
    try {
        const gruk::tour::PrivateHome home;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QApplication application(argc, argv);
        run(argc > 1 ? std::max(1, std::atoi(argv[1])) : usualRows);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_screens: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
