#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/bench_files.h"
#include "benchmarks/bench_floor.h"
#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"
#include "core/browse/scan_session.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"

// bench_main_thread: how long what has to run on the main thread holds it. Moves of 300 items and
// their undo, beside bare renames of the same number of files there and back; and a folder of
// 100,000 files until its rows are in order, beside a bare listing of the same folder. Each move is
// timed on the disk of the temporary folder, and told with how often it waits for that disk, which
// another machine multiplies by the time that its own takes. Progress goes to the error stream, one
// line of JSON to the output: milliseconds, the median of several rounds, and ratios.

namespace gruk::benchmarks {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int items = 300;
constexpr int rowCount = 100'000;
constexpr int rounds = 7;

double milliseconds(const std::function<void()>& work)
{
    const Clock::time_point begin = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double median(std::vector<double> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

double median(const std::function<double()>& measure)
{
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        times.push_back(measure());
    }
    return median(std::move(times));
}

/// Calls that count how often they wait until a disk has written.
MoveCalls countingWaits(std::size_t& waits)
{
    MoveCalls calls;
    const auto count = [&waits](auto& call) {
        call = [&waits, live = std::move(call)](auto argument) {
            ++waits;
            return live(argument);
        };
    };
    count(calls.synchronize);
    count(calls.synchronizeDirectory);
    count(calls.files.synchronize);
    count(calls.files.synchronizeDirectory);
    return calls;
}

void makeFiles(const std::string& folder, int count, const std::string& ending)
{
    fs::create_directories(folder);
    for (int i = 0; i < count; ++i) {
        std::ofstream(folder + "/file " + std::to_string(i * 7'919 % count) + ending) << i;
    }
}

/// One action and its undo: how long each took, and how often each waited.
struct Action {
    double forth = 0;
    double back = 0;
    std::size_t waitsForth = 0;
    std::size_t waitsBack = 0;
};

/// Runs an action on `items` files in a fresh realm and undoes it. `act` returns what `undo` takes.
template <typename Act, typename Undo>
Action timed(const std::string& home, Act act, Undo undo)
{
    const FileURL realm = FileURL::directory(home + "/realm");
    fs::remove_all(realm.path());
    makeFiles(realm.path(), items, ".png");
    Action action;
    std::size_t waits = 0;
    const MoveCalls calls = countingWaits(waits);
    decltype(act(calls, realm)) moved;
    action.forth = milliseconds([&] { moved = act(calls, realm); });
    action.waitsForth = std::exchange(waits, 0);
    action.back = milliseconds([&] { undo(calls, moved, realm); });
    action.waitsBack = waits;
    if (moved.size() != std::size_t{items}) {
        throw std::runtime_error("not everything moved");
    }
    return action;
}

Action trashAndBack(const std::string& home)
{
    std::vector<TrashRequest> requests;
    return timed(
        home,
        [&](const MoveCalls& calls, const FileURL& realm) {
            requests.clear();
            for (const auto& file : fs::directory_iterator(realm.path())) {
                const FileURL url(file.path().string());
                requests.push_back({url, 1, TrashService::currentIdentity(url).value()});
            }
            return TrashService(calls).moveToTrash(requests, realm).moved;
        },
        [](const MoveCalls& calls, const auto& moved, const FileURL& realm) {
            static_cast<void>(TrashService(calls).restore(moved, realm));
        });
}

void putBack(const MoveCalls& calls, const std::vector<StashedItem>& moved, const FileURL& realm)
{
    static_cast<void>(StashService(calls).restore(moved, realm));
}

Action tidyAndBack(const std::string& home)
{
    return timed(
        home,
        [](const MoveCalls& calls, const FileURL& realm) {
            return StashService(calls).stashDesktop(realm, realm).moved;
        },
        putBack);
}

Action organiseAndBack(const std::string& home)
{
    return timed(
        home,
        [](const MoveCalls& calls, const FileURL& realm) {
            const OrganiseService service(calls);
            return service.applyPlan(service.planOrganise(realm, realm, {}), realm).moved;
        },
        putBack);
}

/// As many files renamed into another folder and back by nothing but the system's call.
double bareRenames(const std::string& home)
{
    makeFiles(home + "/bare", items, "");
    fs::create_directories(home + "/other");
    return milliseconds([&] {
        for (int i = 0; i < items; ++i) {
            const std::string name = "/file " + std::to_string(i);
            fs::rename(home + "/bare" + name, home + "/other" + name);
            fs::rename(home + "/other" + name, home + "/bare" + name);
        }
    });
}

void printAction(const char* name, const std::function<Action()>& run, double bare)
{
    std::fprintf(stderr, "%s\n", name);
    std::vector<double> forth;
    std::vector<double> back;
    Action last;
    for (int i = 0; i < rounds; ++i) {
        last = run();
        forth.push_back(last.forth);
        back.push_back(last.back);
    }
    const double there = median(forth);
    const double again = median(back);
    std::printf("\"%s_ms\":%.1f,\"%s_waits\":%zu,\"undo_%s_ms\":%.1f,\"undo_%s_waits\":%zu,"
                "\"%s_over_bare\":%.1f,",
                name, there, name, last.waitsForth, name, again, name, last.waitsBack, name,
                (there + again) / bare);
}

void printFolder(const std::string& home)
{
    std::fprintf(stderr, "folder\n");
    const std::string folder = home + "/folder";
    makeFiles(folder, rowCount, ".txt");
    const double bare =
        median([&] { return milliseconds([&] { static_cast<void>(bareWalk(folder)); }); });
    const auto loop = std::make_shared<test::ManualRunLoop>();
    const auto pool = std::make_shared<test::ManualTaskPool>();
    std::vector<double> opens;
    std::vector<double> orders;
    for (int i = 0; i < rounds; ++i) {
        ScanSession session(std::make_shared<ScanEngine>(), pool, loop);
        opens.push_back(milliseconds([&] { session.open(FileURL::directory(folder)); }));
        orders.push_back(milliseconds([&] { static_cast<void>(session.displayedNodes()); }));
    }
    const double open = median(opens);
    std::printf("\"folder_open_ms\":%.1f,\"folder_order_ms\":%.1f,\"folder_bare_ms\":%.1f,"
                "\"folder_open_over_bare\":%.2f",
                open, median(orders), bare, open / bare);
}

void run()
{
    const TemporaryFolder folder;
    const std::string home = folder.path();
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("XDG_DATA_HOME", (home + "/data").c_str(), 1);
    std::printf("{");
    const double bare = median([&] { return bareRenames(home); });
    printAction(
        "trash", [&] { return trashAndBack(home); }, bare);
    printAction(
        "tidy", [&] { return tidyAndBack(home); }, bare);
    printAction(
        "organise", [&] { return organiseAndBack(home); }, bare);
    printFolder(home);
    std::printf("}\n");
}

}  // namespace

}  // namespace gruk::benchmarks

int main()
{
    try {
        gruk::benchmarks::run();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_main_thread: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
