#pragma once

#include <compare>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// The orders of text. Each is one shared operation over ICU's root collation, so that it is the
/// same in every locale and on every machine. Any thread. Text is UTF-8; bytes that are not count
/// as U+FFFD.

namespace gruk {

/// The order of a file browser, made total.
///
/// Two texts are compared component by component, split at "/", so that a folder is followed by
/// its whole subtree ("a", "a/b", "a b"). Components compare as ICU's root collation does with
/// runs of digits taken by value ("file2" before "file10"); base letters decide first, then
/// accents, then case (lower first), each over the whole component; last its bytes. Equal only
/// for equal bytes.
///
/// Two components of printable ASCII, the usual case, are decided by a table that was read from
/// the collation at start (30 to 60 times faster, the same answer); everything else asks ICU.
[[nodiscard]] std::strong_ordering localizedStandardCompare(std::string_view a, std::string_view b);

/// The same for two names without "/", which saves the search for it.
[[nodiscard]] std::strong_ordering localizedStandardCompareNames(std::string_view a,
                                                                 std::string_view b);

/// The place of each name among all of them in that order, from 0; equal names have the places in
/// which they stand here. Each name is looked at once and turned into bytes that compare as it
/// does: for many names this is several times as fast as sorting by comparisons.
[[nodiscard]] std::vector<std::uint32_t>
localizedNameRanks(std::span<const std::string_view> names);

/// Alphabetical without regard to case; accents count, digits stand one by one. Not total: texts
/// that differ in case alone are equivalent, and a stable sort keeps their order.
[[nodiscard]] std::weak_ordering localizedCaseInsensitiveCompare(std::string_view a,
                                                                 std::string_view b);

}  // namespace gruk
