#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/file_identity.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/file_url.h"

/// What goes into the Trash service and what comes out: plain values, kept in memory only.

namespace gruk {

/// One item that the user confirmed.
struct TrashRequest {
    FileURL url;
    /// Carried through for reporting; never checked.
    Bytes allocatedSize = 0;
    /// What the item was when the user was asked.
    FileIdentity expectedIdentity;

    friend bool operator==(const TrashRequest&, const TrashRequest&) = default;
};

/// One item that is in the Trash now.
struct TrashedItem {
    /// Where it was, standardised.
    FileURL originalURL;
    /// Where it was put.
    FileURL trashURL;
    Bytes allocatedSize = 0;

    friend bool operator==(const TrashedItem&, const TrashedItem&) = default;
};

/// One item that stayed where it was, and why.
struct TrashFailure {
    enum class Reason : std::uint8_t {
        /// The system refused the move; `message` has its words.
        couldNotTrash,
        /// The system refused the move back; `message` has its words.
        couldNotRestore,
        /// Something stands at the former place again.
        destinationExists,
        /// The item is no longer in the Trash.
        missingFromTrash,
        /// Neither the authorised root nor below it.
        outsideAuthorizedRoot,
        /// The authorised root itself.
        authorizedRoot,
        protectedLocation,
        /// Nothing readable is there any more.
        missingAtReviewedPath,
        /// Another item stands there now.
        itemChangedSinceReview
    };

    FileURL url;
    Reason reason = Reason::couldNotTrash;
    /// For `couldNotTrash` and `couldNotRestore`; else empty.
    std::string message;
    /// Where another item is now that was put in the place of this one in the moment of the move
    /// and could not go back; else none.
    std::optional<FileURL> strayedTo = {};

    friend bool operator==(const TrashFailure&, const TrashFailure&) = default;
};

/// What became of a batch; both lists in the order of the requests. The record for undo.
struct TrashOperation {
    std::vector<TrashedItem> moved;
    std::vector<TrashFailure> failures;

    /// Of what was moved. A sum beyond 64 bits stops the program.
    [[nodiscard]] Bytes totalBytes() const;

    friend bool operator==(const TrashOperation&, const TrashOperation&) = default;
};

struct RestoreOperation {
    std::vector<TrashedItem> restored;
    std::vector<TrashFailure> failures;

    friend bool operator==(const RestoreOperation&, const RestoreOperation&) = default;
};

}  // namespace gruk
