#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/actions/stash_records.h"

/// The journal as text (docs/formats.md). Pure; any thread.

namespace gruk {

[[nodiscard]] std::string encodedStashJournal(const StashJournalFile& journal);

/// None for anything that is not a whole journal: another JSON, a key that is missing, a place
/// that is not a `file://` text, a date that is not a number.
[[nodiscard]] std::optional<StashJournalFile> decodedStashJournal(std::string_view text);

}  // namespace gruk
