#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include <QCoreApplication>

#include "app/model/app_model.h"
#include "app/model/setting_keys.h"
#include "benchmarks/bench_files.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"

// bench_due: how long the look for a realm whose patrol is due holds the main thread, with 1,000
// realms that all have a cadence and a store of 1,000,000 entries, of which the last realm is due.
// Prints one line of JSON: the longest piece on the main thread in milliseconds, also as a part of
// one frame of a 60 Hz display, and the look at the store, which runs on the pool, the first time
// and with a store that was not touched since.

namespace gruk::benchmarks {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int realms = 1'000;
constexpr int storedEntries = 1'000'000;
constexpr double frame = 1'000.0 / 60;

template <typename Work>
double milliseconds(Work work)
{
    const Clock::time_point begin = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

ScanSnapshot snapshotOf(const std::string& path, int entries, Date moment)
{
    SnapshotEntriesBuilder builder;
    for (int i = 0; i < entries; ++i) {
        builder.add(SnapshotEntriesBuilder::Index(-1), "file " + std::to_string(i) + ".txt", 4'096,
                    moment, FileKind::document, false);
    }
    ScanSnapshot snapshot;
    snapshot.id = UUID::random();
    snapshot.rootPath = path;
    snapshot.capturedAt = moment;
    snapshot.entries = builder.finish();
    snapshot.isComplete = true;
    return snapshot;
}

/// A model with everything on disk in a folder of its own, and its two threads by hand.
class House {
public:
    House()
    {
        const std::string& home = folder_.path();
        ::setenv("HOME", home.c_str(), 1);
        ::setenv("XDG_DATA_HOME", (home + "/data").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
        ModelCollaborators all;
        all.runLoop = loop;
        all.taskPool = pool;
        all.grantStore = std::make_shared<GrantStore>(FileURL(home + "/grants.json"));
        all.snapshotStore = std::make_shared<SnapshotStore>(FileURL(home + "/snapshots.json"));
        all.preferences = std::make_shared<UserDefaults>(FileURL(home + "/settings.json"));
        furnish(all);
        model = std::make_unique<AppModel>(std::move(all));
    }

    std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    std::shared_ptr<test::ManualTaskPool> pool = std::make_shared<test::ManualTaskPool>();
    std::unique_ptr<AppModel> model;

private:
    void furnish(const ModelCollaborators& all)
    {
        const Date now = Date::now();
        loop->setNow(now);
        Date former = now;
        former.secondsSince1970 -= 2 * 86'400;
        for (int i = 0; i < realms; ++i) {
            const std::string path = folder_.path() + "/realm " + std::to_string(i);
            fs::create_directory(path);
            const Grant grant = all.grantStore->addGrant(FileURL::directory(path));
            all.preferences->setText(SettingKeys::cadence(grant), "daily");
        }
        // The large one last, since each save writes the store anew.
        for (int i = realms - 1; i >= 0; --i) {
            all.snapshotStore->save(snapshotOf(folder_.path() + "/realm " + std::to_string(i),
                                               i == 0 ? storedEntries : 1,
                                               i == realms - 1 ? former : now));
        }
    }

    TemporaryFolder folder_;
};

/// One look for what is due: the pieces on the main thread, and the one on the pool.
struct Look {
    double before = 0;
    double onPool = 0;
    double after = 0;
};

Look look(House& house)
{
    Look look;
    look.before = milliseconds([&] { house.model->patrolDueRealms(); });
    look.onPool = milliseconds([&] { house.pool->runNext(); });
    // Finds the realm, opens the access to it and begins its patrol.
    look.after = milliseconds([&] { house.loop->run(); });
    if (!house.model->isPatrolling()) {
        throw std::runtime_error("the realm that is due was not found");
    }
    return look;
}

void run()
{
    std::fprintf(stderr, "store\n");
    House house;
    std::fprintf(stderr, "looks\n");
    const Look first = look(house);
    house.model->cancelPatrol();
    while (house.pool->runNext() || house.loop->run()) {
    }
    const Look second = look(house);
    const double longest = std::max({first.before, first.after, second.before, second.after});
    std::printf("{\"before_ms\":%.2f,\"after_ms\":%.2f,\"longest_of_a_frame\":%.2f,"
                "\"store_first_ms\":%.1f,\"store_again_ms\":%.1f}\n",
                std::max(first.before, second.before), std::max(first.after, second.after),
                longest / frame, first.onPool, second.onPool);
}

}  // namespace

}  // namespace gruk::benchmarks

int main(int argc, char* argv[])
{
    try {
        const QCoreApplication application(argc, argv);
        gruk::benchmarks::run();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_due: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
