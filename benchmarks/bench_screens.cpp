#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>

#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/model/app_model.h"
#include "app/screens/browse_table.h"
#include "app/screens/file_table_view.h"
#include "app/screens/findings_list.h"
#include "app/theme/house_style.h"
#include "app/theme/text_field.h"
#include "app/tour/private_home.h"

// How long the Browse page takes to appear, to scroll by a frame, to be sorted and to be filtered
// with very many rows, without a display, beside an empty window of the toolkit. The folder is
// listed from memory: what the disk takes is measured elsewhere. Scrolling is measured once all
// sizes are known, and again while they arrive, and so are the rows of findings; of each way to
// scroll the usual and the slowest frame are told, by the clock and by the processor's time of this
// thread, which does not count what else the machine is busy with. Prints one JSON line. Touches
// nothing of the user's.

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int usualRows = 100'000;
constexpr int folderEvery = 500;
constexpr int frames = 300;
constexpr int attempts = 5;
/// Sizes that arrive show once in so many frames, as with 60 of them in a second.
constexpr int framesACatchUp = 6;
/// How many folders have grown by then.
constexpr std::size_t foldersAtATime = 20;
constexpr QSize windowSize{872, 760};

double timeOf(const std::function<void()>& work)
{
    const Clock::time_point before = Clock::now();
    work();
    return Milliseconds(Clock::now() - before).count();
}

double processorTime()
{
    constexpr double millisecondsASecond = 1e3;
    constexpr double nanosecondsAMillisecond = 1e6;
    std::timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * millisecondsASecond
           + static_cast<double>(now.tv_nsec) / nanosecondsAMillisecond;
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

/// One way to scroll.
struct Scrolling {
    const char* way = "";
    double frame = 0;
    double slowestFrame = 0;
    double slowestByProcessor = 0;
};

struct Figures {
    double emptyWindow = 0;
    double emptyFrame = 0;
    double appear = 0;
    std::vector<Scrolling> scrolling;
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

/// `step` does what the user does for the frame of that number.
Scrolling scrolled(const char* way, const std::function<void(int frame)>& step)
{
    Scrolling figures{way};
    for (int frame = 0; frame < frames; ++frame) {
        const double before = processorTime();
        const double time = timeOf([&] {
            step(frame);
            paintWhatIsDue();
        });
        figures.frame += time / frames;
        figures.slowestFrame = std::max(figures.slowestFrame, time);
        figures.slowestByProcessor = std::max(figures.slowestByProcessor, processorTime() - before);
    }
    return figures;
}

void press(QWidget& widget, Qt::Key key)
{
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &down);
}

void measureScrolling(Figures& figures, gruk::BrowseTable& table)
{
    QScrollBar& bar = *table.verticalScrollBar();
    const auto byRows = [&](int) {
        bar.setValue(bar.value() + 3 * gruk::ScanNodeDelegate::rowHeight);
    };
    std::minstd_rand random;
    std::uniform_int_distribution<int> anywhere(0, bar.maximum());
    figures.scrolling.push_back(scrolled("rows", byRows));
    figures.scrolling.push_back(
        scrolled("page", [&](int) { bar.triggerAction(QScrollBar::SliderPageStepAdd); }));
    figures.scrolling.push_back(
        scrolled("handle", [&](int) { bar.setSliderPosition(anywhere(random)); }));
    figures.scrolling.push_back(scrolled(
        "ends", [&](int frame) { press(table, frame % 2 == 0 ? Qt::Key_End : Qt::Key_Home); }));
    figures.scrolling.push_back(scrolled("page_key", [&](int) { press(table, Qt::Key_PageDown); }));
}

/// The sizes of folders arrive while the rows scroll, in the order by size; such as send the rows
/// elsewhere, or leave them where they are.
void measureArriving(Figures& figures, gruk::AppModel& model, gruk::BrowseTable& table,
                     gruk::ScanNodeModel& rows, bool doMove)
{
    std::vector<std::shared_ptr<gruk::ScanNode>> folders;
    for (const auto& node : model.session().nodes()) {
        if (node->entry().isDirectory) {
            folders.push_back(node);
        }
    }
    QScrollBar& bar = *table.verticalScrollBar();
    bar.setValue(0);
    std::minstd_rand random;
    std::uniform_int_distribution<gruk::Bytes> anySize(1, 1'000'000'000);
    std::size_t next = 0;
    figures.scrolling.push_back(
        scrolled(doMove ? "while_rows_move" : "while_sizes_arrive", [&](int frame) {
            bar.setValue(bar.value() + 3 * gruk::ScanNodeDelegate::rowHeight);
            if (frame % framesACatchUp != 0) {
                return;
            }
            for (std::size_t i = 0; i < foldersAtATime; ++i, ++next) {
                const std::shared_ptr<gruk::ScanNode>& folder = folders[next % folders.size()];
                folder->endComputing(gruk::DirectoryStats{
                    .allocated = doMove ? anySize(random) : folder->displaySize()});
            }
            rows.catchUp();
        }));
}

/// The rows of findings are widgets, made as they come into view.
void measureFindings(Figures& figures, gruk::Theme& theme, int count)
{
    auto findings = std::make_shared<std::vector<gruk::ReviewFinding>>();
    for (int i = 0; i < count; ++i) {
        gruk::ReviewFinding finding;
        finding.id = "oldInstaller:" + std::to_string(i);
        finding.url = gruk::FileURL("/memory/a folder/installer " + std::to_string(i) + ".dmg");
        finding.reason = gruk::ReviewFinding::Reason::oldInstaller;
        finding.allocatedSize = gruk::Bytes{count - i} * 1'000;
        findings->push_back(std::move(finding));
    }
    QScrollArea page;
    auto* list = new gruk::FindingsList(theme);
    list->setReviewOnly(false);
    page.setWidgetResizable(true);
    page.setWidget(list);
    page.resize(windowSize);
    QScrollBar& bar = *page.verticalScrollBar();
    const auto showRows = [&] { list->showWithin(bar.value(), bar.value() + page.height()); };
    QObject::connect(&bar, &QScrollBar::valueChanged, list, showRows);
    page.show();
    static_cast<void>(list->setFindings(findings));
    paintWhatIsDue();
    showRows();
    paintWhatIsDue();
    const int rowHeight = gruk::FindingRow::closedHeight(theme);
    figures.scrolling.push_back(
        scrolled("findings", [&](int) { bar.setValue(bar.value() + 2 * rowHeight); }));
}

/// Until every folder is measured and shows.
void settle(const gruk::AppModel& model, const gruk::ScanNodeModel& rows)
{
    const auto isComputing = [](const auto& node) { return node->isComputing(); };
    const gruk::ScanSession::Nodes& nodes = model.session().nodes();
    while (rows.isBehind() || std::any_of(nodes.begin(), nodes.end(), isComputing)) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
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
    auto* rows = page.findChild<gruk::ScanNodeModel*>();
    settle(model, *rows);
    measureScrolling(figures, table);
    measureArriving(figures, model, table, *rows, false);
    measureArriving(figures, model, table, *rows, true);

    const auto sort = [&](std::size_t column) {
        table.browseHeader().buttons()[column]->click();
        paintWhatIsDue();
    };
    figures.sortByName = timeOf([&] { sort(0); });
    figures.sortBySize = usualTimeOf([&] { sort(1); });
    auto* field = page.findChild<gruk::TextField*>();
    figures.filter = timeOf([&] {
        field->setText(QStringLiteral("1"));
        paintWhatIsDue();
    });
    field->clear();
    figures.catchUp = usualTimeOf([&] {
        // As when one folder's size has come, which sends its row elsewhere.
        model.session().nodes().front()->report({1, 1});
        rows->catchUp();
        paintWhatIsDue();
    });
}

void print(const Figures& f, int rows)
{
    std::printf("{\"rows\":%d,\"empty_window_ms\":%.2f,\"appear_ms\":%.1f,\"appear_ratio\":%.1f,"
                "\"empty_frame_ms\":%.2f,",
                rows, f.emptyWindow, f.appear, f.appear / f.emptyWindow, f.emptyFrame);
    for (const Scrolling& s : f.scrolling) {
        std::printf("\"scroll_%s_ms\":%.2f,\"scroll_%s_slowest_ms\":%.2f,"
                    "\"scroll_%s_slowest_cpu_ms\":%.2f,",
                    s.way, s.frame, s.way, s.slowestFrame, s.way, s.slowestByProcessor);
    }
    std::printf("\"sort_by_name_ms\":%.1f,\"sort_by_size_ms\":%.1f,\"filter_ms\":%.1f,"
                "\"size_arrives_ms\":%.1f}\n",
                f.sortByName, f.sortBySize, f.filter, f.catchUp);
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
    measureFindings(figures, theme, rows);
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
