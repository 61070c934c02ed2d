#include "core/patrol/store_writer.h"

#include <algorithm>

#include "core/patrol/snapshot_decoder.h"
#include "core/patrol/snapshot_encoder.h"
#include "core/patrol/snapshot_store.h"

namespace gruk {

namespace {

constexpr std::size_t storeCopySize = std::size_t{1} << 20;

[[noreturn]] void refuseStore()
{
    throw SnapshotStoreError(SnapshotStoreError::Case::corruptStore);
}

}  // namespace

StoreWriter::StoreWriter(AtomicFile& file) : file_(file)
{
    file_.write(SnapshotEncoder::storeHead);
}

void StoreWriter::add(const ScanSnapshot& snapshot)
{
    separate();
    SnapshotEncoder::encode(snapshot, [this](std::string_view text) { file_.write(text); });
}

void StoreWriter::keep(FileReader& from, const StoreContents& contents,
                       const std::vector<StoredSnapshot>& snapshots)
{
    keep(from, contents, snapshots,
         [](const StoredSnapshot&) -> std::optional<std::string> { return std::nullopt; });
}

void StoreWriter::keep(FileReader& from, const StoreContents& contents,
                       const std::vector<StoredSnapshot>& snapshots, NewRoot newRoot)
{
    if (!contents.isCanonical) {
        std::size_t next = 0;
        SnapshotDecoder::build(from, contents, snapshots, [&](ScanSnapshot&& kept) {
            kept.rootPath = newRoot(snapshots[next++]).value_or(kept.rootPath);
            add(kept);
        });
        return;
    }
    for (const StoredSnapshot& snapshot : snapshots) {
        separate();
        if (const std::optional<std::string> rootPath = newRoot(snapshot)) {
            copyAs(from, snapshot, *rootPath);
        } else {
            copy(from, snapshot.begin, snapshot.end);
        }
    }
}

void StoreWriter::finish()
{
    file_.write(SnapshotEncoder::storeTail);
}

void StoreWriter::separate()
{
    if (!isFirst_) {
        file_.write(SnapshotEncoder::betweenSnapshots);
    }
    isFirst_ = false;
}

void StoreWriter::copy(FileReader& from, std::uint64_t begin, std::uint64_t end)
{
    buffer_.resize(storeCopySize);
    from.seek(begin);
    for (std::uint64_t left = end - begin; left > 0;) {
        const std::size_t count =
            from.read(buffer_.data(), std::min<std::uint64_t>(left, buffer_.size()));
        if (count == 0) {
            refuseStore();
        }
        file_.write({buffer_.data(), count});
        left -= count;
    }
}

void StoreWriter::copyAs(FileReader& from, const StoredSnapshot& snapshot,
                         std::string_view rootPath)
{
    // One form for each value: what stands before the rest is known to the byte.
    const std::size_t head = SnapshotEncoder::head(snapshot.id, snapshot.rootPath).size();
    if (snapshot.end - snapshot.begin <= head) {
        refuseStore();
    }
    file_.write(SnapshotEncoder::head(snapshot.id, rootPath));
    copy(from, snapshot.begin + head, snapshot.end);
}

}  // namespace gruk
