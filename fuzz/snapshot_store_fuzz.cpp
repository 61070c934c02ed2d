#include <optional>
#include <vector>

#include "core/patrol/snapshot_decoder.h"
#include "core/patrol/snapshot_encoder.h"
#include "core/patrol/snapshot_store.h"
#include "fuzz/fuzz_support.h"

namespace gruk::fuzz {

namespace {

struct Decoded {
    std::vector<ScanSnapshot> snapshots;
    bool isCanonical = false;
};

/// All snapshots of a store with this text; none when it is refused.
std::optional<Decoded> decode(MemoryFile& file, std::string_view text)
{
    file.fill(text);
    std::optional<FileReader> reader = FileReader::open(file.url());
    GRUK_REQUIRE(reader.has_value(), "the file in memory is gone");
    try {
        const StoreContents contents = SnapshotDecoder::check(*reader);
        Decoded decoded{{}, contents.isCanonical};
        SnapshotDecoder::build(*reader, contents, contents.snapshots, [&](ScanSnapshot&& snapshot) {
            decoded.snapshots.push_back(std::move(snapshot));
        });
        return decoded;
    } catch (const SnapshotStoreError& error) {
        GRUK_REQUIRE(error.which() == SnapshotStoreError::Case::corruptStore, "the wrong error");
        return std::nullopt;
    }
}

std::string encode(const std::vector<ScanSnapshot>& snapshots)
{
    std::string text;
    const auto sink = [&](std::string_view piece) { text += piece; };
    sink(SnapshotEncoder::storeHead);
    for (std::size_t i = 0; i < snapshots.size(); ++i) {
        sink(i == 0 ? "" : SnapshotEncoder::betweenSnapshots);
        SnapshotEncoder::encode(snapshots[i], sink);
    }
    sink(SnapshotEncoder::storeTail);
    return text;
}

void check(std::string_view text)
{
    static MemoryFile file("snapshots.json");
    const std::optional<Decoded> decoded = decode(file, text);

    // A blank in front leaves the meaning and takes the reader for any JSON: the two must agree.
    const std::optional<Decoded> general = decode(file, " " + std::string(text));
    GRUK_REQUIRE(decoded.has_value() == general.has_value(), "one reader takes what one refuses");
    if (!decoded) {
        return;
    }
    GRUK_REQUIRE(decoded->snapshots == general->snapshots, "the readers read different snapshots");

    const std::string written = encode(decoded->snapshots);
    const std::optional<Decoded> again = decode(file, written);
    GRUK_REQUIRE(again && again->isCanonical, "what was written is not read as written");
    GRUK_REQUIRE(again->snapshots == decoded->snapshots, "the way there and back changes it");
}

}  // namespace

}  // namespace gruk::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gruk::fuzz::check(gruk::fuzz::asText(data, size));
    return 0;
}
