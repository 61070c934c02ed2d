#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// One item that a person might want to look at, with its evidence. Advice, never a verdict.
struct ReviewFinding {
    enum class Reason : std::uint8_t {
        rapidGrowth,
        duplicateDownload,
        oldInstaller,
        regenerableCache,
    };
    static constexpr std::array allReasons = {Reason::rapidGrowth, Reason::duplicateDownload,
                                              Reason::oldInstaller, Reason::regenerableCache};

    /// The reason's raw string, ":", and the relative path.
    std::string id;
    /// The realm root with the relative path appended.
    FileURL url;
    Bytes allocatedSize = 0;
    /// Growth since the previous patrol; only `rapidGrowth` has one.
    std::optional<Bytes> byteDelta;
    Reason reason = Reason::rapidGrowth;
    /// One sentence, made by the rule.
    std::string explanation;
    /// 0 to 1, fixed per rule.
    double confidence = 0;

    friend bool operator==(const ReviewFinding&, const ReviewFinding&) = default;
};

[[nodiscard]] std::string_view rawString(ReviewFinding::Reason reason);

}  // namespace gruk
