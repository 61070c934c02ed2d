#include <atomic>
#include <filesystem>

#include <QCoreApplication>
#include <QEventLoop>
#include <gtest/gtest.h>

#include "app/desktop/qt_run_loop.h"
#include "app/model/app_model.h"
#include "core/patrol/metadata_reader.h"
#include "tests/support/scripted_open_panel.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/thread_task_pool.h"

namespace gruk {

namespace {

/// A model on a real event loop and real threads, with its files in the test's own folder. It is
/// the only one to hold the loop and the pool that are not given.
std::unique_ptr<AppModel> makeModel(const test::TemporaryDirectory& directory,
                                    std::shared_ptr<RunLoop> loop = nullptr,
                                    std::shared_ptr<TaskPool> pool = nullptr,
                                    std::shared_ptr<SnapshotScanner> scanner = nullptr)
{
    AppModel::Collaborators collaborators;
    collaborators.grantStore =
        std::make_shared<GrantStore>(FileURL(directory.path("app/grants.json")));
    collaborators.snapshotStore =
        std::make_shared<SnapshotStore>(FileURL(directory.path("app/snapshots.json")));
    collaborators.snapshotScanner = std::move(scanner);
    collaborators.runLoop = std::move(loop);
    collaborators.taskPool = pool ? std::move(pool) : std::make_shared<test::ThreadTaskPool>();
    collaborators.openPanel = std::make_shared<test::ScriptedOpenPanel>();
    collaborators.realmIdentityStore =
        std::make_shared<RealmIdentityStore>(FileURL::directory(directory.path("app")));
    collaborators.preferences =
        std::make_shared<UserDefaults>(FileURL(directory.path("app/settings.json")));
    collaborators.desktopDirectory = [place = directory.path("Desktop")] {
        return FileURL::directory(place);
    };
    collaborators.loginItem = {[] { return false; }, [] {}, [] {}};
    collaborators.quietPeriod = 0.2;
    return std::make_unique<AppModel>(std::move(collaborators));
}

FileURL makeRealm(const test::TemporaryDirectory& directory, int folders)
{
    for (int folder = 0; folder < folders; ++folder) {
        directory.file("realm/" + std::to_string(folder) + "/file", 5'000);
    }
    return FileURL::directory(directory.path("realm"));
}

void waitFor(AppModel& model, void (AppModel::*changed)(), bool (AppModel::*isBusy)() const)
{
    QEventLoop events;
    QObject::connect(&model, changed, &events, [&] {
        if (!(model.*isBusy)()) {
            events.quit();
        }
    });
    if ((model.*isBusy)()) {
        events.exec();
    }
}

}  // namespace

TEST(AppModelLive, patrolsAndLoadsOnRealThreads)
{
    const test::TemporaryDirectory directory;
    const FileURL realm = makeRealm(directory, 300);
    const auto model = makeModel(directory);
    model->grantRealm(realm);
    waitFor(*model, &AppModel::isLoadingRealmHistoryChanged, &AppModel::isLoadingRealmHistory);
    for (int patrol = 0; patrol < 2; ++patrol) {
        model->patrolActiveRealm();
        waitFor(*model, &AppModel::isPatrollingChanged, &AppModel::isPatrolling);
    }
    EXPECT_EQ(model->lastActionMessage(),
              "Patrol of realm complete. No size changes since the last map.");

    const AppModel::Snapshot patrolled = model->latestSnapshot();
    model->selectRealm(FileURL::directory(directory.path("realm/7")));
    model->selectRealm(realm);
    waitFor(*model, &AppModel::isLoadingRealmHistoryChanged, &AppModel::isLoadingRealmHistory);
    ASSERT_TRUE(model->latestSnapshot());
    EXPECT_EQ(model->latestSnapshot()->id, patrolled->id);
    EXPECT_EQ(model->latestTotalBytes(), patrolled->entries.totalBytes());
}

TEST(AppModelLive, aPatrolOnRealThreadsCanBeStopped)
{
    const test::TemporaryDirectory directory;
    const FileURL realm = makeRealm(directory, 300);
    // The walk goes no further than its first folder before it was told to stop.
    std::atomic<bool> isTold = false;
    const auto scanner = std::make_shared<SnapshotScanner>([&](const FileURL& folder) {
        isTold.wait(false);
        return MetadataReader::entries(folder);
    });
    const auto model = makeModel(directory, nullptr, nullptr, scanner);
    model->grantRealm(realm);
    for (int attempt = 0; attempt < 10; ++attempt) {
        isTold = false;
        model->patrolActiveRealm();
        model->cancelPatrol();
        isTold = true;
        isTold.notify_all();
        waitFor(*model, &AppModel::isPatrollingChanged, &AppModel::isPatrolling);
        EXPECT_EQ(model->lastActionMessage(), "Patrol stopped. No partial snapshot was saved.");
    }
}

TEST(AppModelLive, aModelMayEndAtAnyMomentOfItsWork)
{
    const test::TemporaryDirectory directory;
    const FileURL realm = makeRealm(directory, 100);
    for (int attempt = 0; attempt < 20; ++attempt) {
        const auto model = makeModel(directory);
        model->grantRealm(realm);
        model->patrolActiveRealm();
        QEventLoop events;
        const auto end = std::make_shared<QtRunLoop>();
        const auto timer = end->after(std::chrono::milliseconds(attempt), [&] { events.quit(); });
        events.exec();
    }
    // The pool of each model ended with it, so nothing is at work any more.
    for (const auto& item : std::filesystem::directory_iterator(directory.path("app"))) {
        EXPECT_FALSE(item.path().filename().string().ends_with(".gruk-new")) << item.path();
    }
}

TEST(AppModelLive, aModelMayEndBeforeTheLoopAndThePoolThatItWorksWith)
{
    const test::TemporaryDirectory directory;
    const FileURL realm = makeRealm(directory, 100);
    const auto loop = std::make_shared<QtRunLoop>();
    const auto pool = std::make_shared<test::ThreadTaskPool>();
    auto model = makeModel(directory, loop, pool);
    model->grantRealm(realm);
    model->patrolActiveRealm();
    model.reset();
    pool->wait();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(loop.use_count(), 1);
}

TEST(AppModelLive, aGuardedRealmThatChangedAndWentQuietIsPatrolled)
{
    const test::TemporaryDirectory directory;
    const FileURL realm = makeRealm(directory, 20);
    const auto model = makeModel(directory);
    model->grantRealm(realm);
    waitFor(*model, &AppModel::isLoadingRealmHistoryChanged, &AppModel::isLoadingRealmHistory);
    model->setCadence(PatrolCadence::standGuard, model->grants().front());

    QEventLoop events;
    QObject::connect(model.get(), &AppModel::lastActionMessageChanged, &events, [&] {
        const auto message = model->lastActionMessage();
        if (message && message->starts_with("Automatic patrol")) {
            events.quit();
        }
    });
    directory.file("realm/3/new", 100);
    events.exec();
    EXPECT_EQ(model->lastActionMessage(),
              "Automatic patrol of realm finished \xE2\x80\x94 nothing needs you.");
    ASSERT_TRUE(model->latestSnapshot());
    EXPECT_TRUE(model->latestSnapshot()->entries.find("3/new"));
}

}  // namespace gruk
