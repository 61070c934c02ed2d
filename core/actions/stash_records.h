#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/date.h"
#include "platform/foundation/file_url.h"

/// What the stash and the organise services report, and the journal that both write: plain values.

namespace gruk {

/// One item that stands elsewhere now.
struct StashedItem {
    FileURL originalURL;
    FileURL stashedURL;

    friend bool operator==(const StashedItem&, const StashedItem&) = default;
};

/// One item or folder for which something could not be done, and why.
struct StashFailure {
    enum class Reason : std::uint8_t {
        /// Listing, making the folder or a move failed; `message` has the system's words.
        couldNotStash,
        /// A move back failed; `message` has the system's words.
        couldNotRestore,
        /// The moves stand, but the journal could not be written; `message` has the words.
        couldNotWriteJournal,
        outsideAuthorizedRoot,
        protectedLocation,
        /// Something stands at the target already.
        destinationExists,
        /// The item is gone from where it was put.
        missingFromHoard
    };

    FileURL url;
    Reason reason = Reason::couldNotStash;
    /// For the first three reasons; else empty.
    std::string message;

    friend bool operator==(const StashFailure&, const StashFailure&) = default;
};

/// What became of a stash or an organise. The record for undo.
struct StashOperation {
    /// The folder that received the items; none when nothing was tried.
    std::optional<FileURL> hoardFolder;
    std::vector<StashedItem> moved;
    std::vector<StashFailure> failures;

    friend bool operator==(const StashOperation&, const StashOperation&) = default;
};

struct StashRestoreOperation {
    std::vector<StashedItem> restored;
    std::vector<StashFailure> failures;

    friend bool operator==(const StashRestoreOperation&, const StashRestoreOperation&) = default;
};

/// The journal of one stash or organise (docs/formats.md).
struct StashJournalFile {
    FileURL hoardFolder;
    std::vector<StashedItem> items;
    Date createdAt;

    friend bool operator==(const StashJournalFile&, const StashJournalFile&) = default;
};

}  // namespace gruk
