#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// One path whose size changed between two snapshots.
struct SnapshotDelta {
    enum class Change : std::uint8_t { added, grown, shrunk, removed };

    std::string relativePath;
    Change change = Change::grown;
    /// Allocated bytes in the earlier snapshot; 0 when it had no such path.
    Bytes previousBytes = 0;
    /// Allocated bytes in the later snapshot; 0 when it has no such path.
    Bytes currentBytes = 0;

    /// What changed: positive for growth.
    [[nodiscard]] Bytes netBytes() const { return checkedSubtract(currentBytes, previousBytes); }

    friend bool operator==(const SnapshotDelta&, const SnapshotDelta&) = default;
};

/// "new", "grown", "shrunk", "removed". (`added` is the case "new", a word that the language
/// keeps for itself.)
[[nodiscard]] std::string_view rawString(SnapshotDelta::Change change);

/// Whether `a` stands before `b` in a list of changes: growth before the rest, then the larger
/// magnitude, then the path in the text order.
[[nodiscard]] bool standsBefore(const SnapshotDelta& a, const SnapshotDelta& b);

/// Why two snapshots could not be compared.
class SnapshotDeltaError : public std::exception {
public:
    enum class Case : std::uint8_t { rootMismatch, incompleteSnapshot };

    explicit SnapshotDeltaError(Case which) : which_(which) {}
    [[nodiscard]] Case which() const noexcept { return which_; }
    [[nodiscard]] const char* what() const noexcept override;

    friend bool operator==(const SnapshotDeltaError& a, const SnapshotDeltaError& b)
    {
        return a.which_ == b.which_;
    }

private:
    Case which_;
};

}  // namespace gruk
