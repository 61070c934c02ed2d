#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/date.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// In which order the children of a folder are shown.
enum class SortOrder {
    sizeDescending,
    sizeAscending,
    /// Large things that were left alone the longest.
    oldForgotten,
    name
};

/// All of them, in the order in which they are offered.
inline constexpr std::array allSortOrders = {SortOrder::sizeDescending, SortOrder::sizeAscending,
                                             SortOrder::oldForgotten, SortOrder::name};

/// The name of the case: "sizeDescending".
[[nodiscard]] std::string_view rawString(SortOrder order);

/// Reads what `rawString` writes; none for any other text.
[[nodiscard]] std::optional<SortOrder> sortOrder(std::string_view raw);

/// From this size on a thing that was left alone counts as large: 100 MiB.
inline constexpr Bytes forgottenFloor = 104'857'600;

/// What the orders look at in one row.
struct SortKey {
    /// None while nothing is known of it; counts as 0 where sizes are compared.
    std::optional<Bytes> size;
    std::optional<Date> lastOpened;
    /// The place of its name in the text order.
    std::uint32_t nameRank = 0;
};

/// The positions of `rows` in that order. Rows that it leaves equal keep their order. Pure.
///
/// `oldForgotten` has two groups: those of a known size of at least `forgottenFloor`, then all
/// others. In each, those that were once opened come first, the longest ago before the others.
[[nodiscard]] std::vector<std::uint32_t> arranged(std::span<const SortKey> rows, SortOrder order);

/// Brings `positions` into that order again after a few of the rows have changed: `hasChanged` says
/// which, by position, and `keyOf` tells what a row is now. The others must stand in their order;
/// of equal rows the lower position goes first. Costs little more than a copy of `positions`.
void rearrange(std::vector<std::uint32_t>& positions, const std::vector<bool>& hasChanged,
               FunctionRef<SortKey(std::uint32_t)> keyOf, SortOrder order);

}  // namespace gruk
