#include "core/patrol/snapshot_decoder.h"

#include <algorithm>
#include <future>
#include <utility>

#include "core/patrol/canonical_reader.h"
#include "core/patrol/general_reader.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/snapshot_store.h"
#include "platform/foundation/errors.h"

namespace gruk::SnapshotDecoder {

namespace {

[[noreturn]] void refuse()
{
    throw SnapshotStoreError(SnapshotStoreError::Case::corruptStore);
}

StoreContents checkOrThrow(FileReader& file)
{
    StoreContents contents;
    if (auto found = CanonicalReader(file).check()) {
        contents.snapshots = std::move(*found);
        contents.isCanonical = true;
        return contents;
    }
    file.seek(0);
    // Each is built, since only then it shows whether a path stands twice.
    const bool isStore = GeneralReader::read(
        file, [](std::size_t) { return true; },
        [&](const StoredSnapshot& stored, ScanSnapshot&&) {
            contents.snapshots.push_back(stored);
        });
    if (!isStore) {
        refuse();
    }
    return contents;
}

void buildGenerally(FileReader& file, const std::vector<StoredSnapshot>& wanted,
                    FunctionRef<void(ScanSnapshot&&)> take)
{
    file.seek(0);
    const auto isWanted = [&](std::size_t ordinal) {
        return std::any_of(wanted.begin(), wanted.end(),
                           [ordinal](const StoredSnapshot& one) { return one.ordinal == ordinal; });
    };
    const bool isStore = GeneralReader::read(
        file, isWanted, [&](const StoredSnapshot& stored, ScanSnapshot&& snapshot) {
            if (isWanted(stored.ordinal)) {
                take(std::move(snapshot));
            }
        });
    if (!isStore) {
        refuse();
    }
}

ScanSnapshot buildCanonically(FileReader& file, const StoredSnapshot& stored)
{
    try {
        if (auto snapshot = CanonicalReader(file).build(stored.begin)) {
            return std::move(*snapshot);
        }
    } catch (const InvalidEntryPath&) {
        // Its paths do not make up a snapshot.
    } catch (const FileError&) {
        // What cannot be read is no store.
    }
    refuse();
}

/// Builds two large ones at once, the second on a thread of its own.
std::pair<ScanSnapshot, ScanSnapshot> buildTwo(FileReader& file, const StoredSnapshot& first,
                                               const StoredSnapshot& second)
{
    FileReader other = file.another();
    auto later = std::async(std::launch::async, [&] { return buildCanonically(other, second); });
    ScanSnapshot built = buildCanonically(file, first);
    return {std::move(built), later.get()};
}

bool isLarge(const StoredSnapshot& stored)
{
    constexpr std::uint64_t worthTwoThreads = std::uint64_t{1} << 22;
    return stored.end - stored.begin >= worthTwoThreads;
}

}  // namespace

StoreContents check(FileReader& file)
{
    try {
        return checkOrThrow(file);
    } catch (const FileError&) {
        refuse();
    }
}

void build(FileReader& file, const StoreContents& contents,
           const std::vector<StoredSnapshot>& wanted, FunctionRef<void(ScanSnapshot&&)> take)
{
    if (wanted.empty()) {
        return;
    }
    if (!contents.isCanonical) {
        buildGenerally(file, wanted, take);
        return;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (i + 1 < wanted.size() && isLarge(wanted[i]) && isLarge(wanted[i + 1])) {
            auto [first, second] = buildTwo(file, wanted[i], wanted[i + 1]);
            take(std::move(first));
            take(std::move(second));
            ++i;
        } else {
            take(buildCanonically(file, wanted[i]));
        }
    }
}

}  // namespace gruk::SnapshotDecoder
