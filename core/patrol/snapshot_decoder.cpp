#include "core/patrol/snapshot_decoder.h"

#include <algorithm>

#include "core/patrol/canonical_reader.h"
#include "core/patrol/general_reader.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/snapshot_store.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

[[noreturn]] void refuse()
{
    throw SnapshotStoreError(SnapshotStoreError::Case::corruptStore);
}

}  // namespace

SnapshotDecoder::SnapshotDecoder(FileReader& file) : file_(file)
{
    try {
        check();
    } catch (const FileError&) {
        refuse();
    }
}

void SnapshotDecoder::check()
{
    if (auto found = CanonicalReader(file_).check()) {
        snapshots_ = std::move(*found);
        isCanonical_ = true;
        return;
    }
    file_.seek(0);
    const bool isStore = GeneralReader::read(
        file_, [](std::size_t) { return false; },
        [this](const StoredSnapshot& stored, ScanSnapshot&&) { snapshots_.push_back(stored); });
    if (!isStore) {
        refuse();
    }
}

void SnapshotDecoder::build(const std::vector<StoredSnapshot>& wanted,
                            FunctionRef<void(ScanSnapshot&&)> take)
{
    if (wanted.empty()) {
        return;
    }
    if (!isCanonical_) {
        file_.seek(0);
        const auto isWanted = [&](std::size_t ordinal) {
            return std::any_of(wanted.begin(), wanted.end(), [ordinal](const StoredSnapshot& one) {
                return one.ordinal == ordinal;
            });
        };
        const bool isStore = GeneralReader::read(
            file_, isWanted, [&](const StoredSnapshot& stored, ScanSnapshot&& snapshot) {
                if (isWanted(stored.ordinal)) {
                    take(std::move(snapshot));
                }
            });
        if (!isStore) {
            refuse();
        }
        return;
    }
    for (const StoredSnapshot& stored : wanted) {
        std::optional<ScanSnapshot> snapshot;
        try {
            snapshot = CanonicalReader(file_).build(stored.begin);
        } catch (const InvalidEntryPath&) {
            refuse();
        } catch (const FileError&) {
            refuse();
        }
        if (!snapshot) {
            refuse();
        }
        take(std::move(*snapshot));
    }
}

}  // namespace gruk
