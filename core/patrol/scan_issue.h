#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gruk {

/// One place that a walk could not cover.
struct ScanIssue {
    enum class Reason : std::uint8_t {
        permissionDenied,
        unreadable,
        disappeared,
        differentFilesystem,
    };

    /// Path from the realm root, as in `SnapshotEntry`.
    std::string relativePath;
    Reason reason = Reason::unreadable;

    friend bool operator==(const ScanIssue&, const ScanIssue&) = default;
};

[[nodiscard]] std::string_view rawString(ScanIssue::Reason reason);
[[nodiscard]] std::optional<ScanIssue::Reason> scanIssueReason(std::string_view rawString);

}  // namespace gruk
