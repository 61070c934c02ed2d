#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/actions/stash_records.h"
#include "platform/files/moves.h"

/// The journal as text (docs/formats.md). Any thread.

namespace gruk {

/// A longer text is no journal: a name has at most 255 bytes.
inline constexpr std::size_t longestStashJournal = std::size_t{64} << 20U;

[[nodiscard]] std::string encodedStashJournal(const StashJournalFile& journal);

/// None for anything that is not a whole journal: another JSON, a key that is missing, a place
/// that is not a `file://` text, a date that is not a number.
[[nodiscard]] std::optional<StashJournalFile> decodedStashJournal(std::string_view text);

/// What a journal on the disk is told from a user's file of its name by: it decodes.
[[nodiscard]] OwnContent ownStashJournal();

}  // namespace gruk
