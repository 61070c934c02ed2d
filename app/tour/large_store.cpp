#include "app/tour/large_store.h"

#include <filesystem>
#include <string>
#include <vector>

#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/snapshot_store.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr int patrols = 4;
constexpr int filesInAFolder = 500;
/// As long as names get, so that the bytes come from few files.
constexpr std::size_t nameLength = 200;
/// What a file's entry takes in the store, at least.
constexpr std::uintmax_t bytesOfAFile = 2 * nameLength + 110;
constexpr double day = 86'400;
constexpr Bytes fileSize = 40'960;
/// What each folder gains until the last patrol.
constexpr Bytes growth = 90'000'000;

std::string nameOf(const char* what, int number)
{
    std::string name = std::string(what) + " " + std::to_string(number) + " ";
    return name.append(nameLength - name.size(), 'x');
}

SnapshotEntries entriesOf(int folders, Bytes grown, Date modified)
{
    SnapshotEntriesBuilder builder;
    std::vector<SnapshotEntries::Index> places;
    for (int folder = 0; folder < folders; ++folder) {
        places.push_back(builder.add(SnapshotEntries::noIndex, nameOf("reel", folder), 0, modified,
                                     FileKind::folder, true));
    }
    for (const SnapshotEntries::Index place : places) {
        for (int file = 0; file < filesInAFolder; ++file) {
            builder.add(place, nameOf("frame", file), file == 0 ? fileSize + grown : fileSize,
                        modified, FileKind::image, false);
        }
    }
    return builder.finish();
}

}  // namespace

std::uintmax_t makeLargeStore(const FileURL& store, const FileURL& realm, std::uintmax_t bytes)
{
    fs::remove(store.path());
    const int folders = static_cast<int>(bytes / (bytesOfAFile * patrols * filesInAFolder)) + 1;
    const Date now = Date::now();
    const Date old{now.secondsSince1970 - 100 * day};
    SnapshotStore writer{store};
    ScanSnapshot snapshot;
    snapshot.rootPath = realm.standardized().path();
    snapshot.isComplete = true;
    snapshot.entries = entriesOf(folders, 0, old);
    for (int patrol = 1; patrol <= patrols; ++patrol) {
        if (patrol == patrols) {
            snapshot.entries = entriesOf(folders, growth, old);
        }
        snapshot.id = UUID::random();
        snapshot.capturedAt = Date{now.secondsSince1970 - (patrols - patrol + 1) * day};
        writer.save(snapshot);
    }
    return fs::file_size(store.path());
}

}  // namespace gruk::tour
