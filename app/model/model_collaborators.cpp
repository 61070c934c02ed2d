#include "app/model/model_collaborators.h"

#include <utility>

#include <QCoreApplication>
#include <QDebug>

#include "app/desktop/file_dialog_open_panel.h"
#include "app/desktop/file_revealer.h"
#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "core/patrol/metadata_reader.h"
#include "platform/files/known_folders.h"
#include "platform/settings/login_item.h"

namespace gruk {

namespace {

/// Fills `given`, if it is empty, with what `makeDefault` makes.
template <typename T, typename Default>
void complete(T& given, Default makeDefault)
{
    if (!given) {
        given = makeDefault();
    }
}

/// The Trash at home need not lie where its name would tell it.
std::shared_ptr<const UnreviewedPlaces> unreviewedPlaces(const OwnFolders& ownFolders)
{
    std::vector<FileURL> trashes;
    if (const auto data = applicationSupportDirectory()) {
        trashes = {data->appending("Trash", FileURL::Names::directory)};
    }
    return std::make_shared<const UnreviewedPlaces>(
        UnreviewedPlaces{ownFolders, OwnFolders::resolved(trashes).folders()});
}

void completeMainThread(ModelCollaborators& all)
{
    complete(all.runLoop, [] { return std::make_shared<QtRunLoop>(); });
    complete(all.taskPool, [] { return std::make_shared<QtTaskPool>(); });
    complete(all.openPanel, [] { return std::make_shared<FileDialogOpenPanel>(); });
    if (!all.log) {
        all.log = [](const std::string& line) { qWarning("%s", line.c_str()); };
    }
}

void completeServices(ModelCollaborators& all)
{
    const FileURL directory = applicationDirectory();
    complete(all.ownFolders, [&] {
        return OwnFolders::resolved(
            {directory, UserDefaults::standardFile().deletingLastPathComponent()});
    });
    complete(all.unreviewedPlaces, [&] { return unreviewedPlaces(*all.ownFolders); });
    complete(all.grantStore,
             [&] { return std::make_shared<GrantStore>(directory.appending("grants.json")); });
    complete(all.session, [&] {
        return std::make_shared<ScanSession>(std::make_shared<ScanEngine>(), all.taskPool,
                                             all.runLoop);
    });
    complete(all.snapshotScanner, [] { return std::make_shared<SnapshotScanner>(); });
    complete(all.snapshotStore, [&] {
        return std::make_shared<SnapshotStore>(directory.appending("snapshots.json"));
    });
    const MoveCalls& moves = MoveCalls::live();
    const OwnFolders& own = *all.ownFolders;
    complete(all.trashService, [&] { return std::make_shared<TrashService>(moves, own); });
    complete(all.stashService, [&] { return std::make_shared<StashService>(moves, own); });
    complete(all.organiseService, [&] { return std::make_shared<OrganiseService>(moves, own); });
    complete(all.realmIdentityStore,
             [&] { return std::make_shared<RealmIdentityStore>(directory); });
}

void completeDesktop(ModelCollaborators& all)
{
    complete(all.preferences, [] { return std::make_shared<UserDefaults>(); });
    if (!all.loginItem.isEnabled) {
        all.loginItem = LoginItemCalls::live();
    }
    if (!all.eventStreams) {
        const UnheardItems unheard{
            all.ownFolders.value_or(OwnFolders()),
            {OrganiseService::journalFileName, StashService::journalFileName}};
        all.eventStreams = [loop = all.runLoop, log = all.log,
                            unheard](const FileURL& directory, std::function<void()> onEvent) {
            return makeFileEventStream(loop, directory, std::move(onEvent), log, unheard);
        };
    }
    if (!all.desktopDirectory) {
        all.desktopDirectory = gruk::desktopDirectory;
    }
    if (!all.reveal) {
        all.reveal = [revealer = FileRevealer(all.taskPool, all.runLoop)](
                         const std::vector<FileURL>& items, std::function<void()> onFailure) {
            revealer.reveal(items, std::move(onFailure));
        };
    }
}

}  // namespace

LoginItemCalls LoginItemCalls::live()
{
    return {
        [] { return LoginItem().isEnabled(); },
        [] { LoginItem().enable(FileURL(QCoreApplication::applicationFilePath().toStdString())); },
        [] { LoginItem().disable(); }};
}

ModelCollaborators ModelCollaborators::completed() &&
{
    completeMainThread(*this);
    completeServices(*this);
    completeDesktop(*this);
    return std::move(*this);
}

FileURL applicationDirectory()
{
    const FileURL support = applicationSupportDirectory().value_or(temporaryDirectory());
    return support.appending("Gruk", FileURL::Names::directory);
}

}  // namespace gruk
