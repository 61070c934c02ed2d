#pragma once

#include <string>
#include <string_view>

#include "core/patrol/scan_snapshot.h"
#include "platform/foundation/function_ref.h"

/// Writes snapshots in the one form that Gruk gives them (docs/formats.md): compact, keys in
/// declared order. Pure but for the sink; any thread.
namespace gruk::SnapshotEncoder {

/// Takes the next piece of text; may throw, which ends the encoding.
using Sink = FunctionRef<void(std::string_view)>;

/// What stands before the first snapshot of a store, between two, and after the last.
inline constexpr std::string_view storeHead = R"({"schemaVersion":1,"snapshots":[)";
inline constexpr std::string_view betweenSnapshots = ",";
inline constexpr std::string_view storeTail = "]}";

/// What a snapshot's object begins with, up to and with its path.
[[nodiscard]] std::string head(const UUID& id, std::string_view rootPath);

/// Hands the snapshot's JSON object to `sink` in pieces of some hundred kilobytes, on this thread
/// and in order; a large one is encoded on another thread meanwhile.
void encode(const ScanSnapshot& snapshot, Sink sink);

}  // namespace gruk::SnapshotEncoder
