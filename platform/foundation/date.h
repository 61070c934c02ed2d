#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gruk {

/// A moment: seconds since 1970-01-01 00:00:00 UTC as a double, negative before it. Leap seconds
/// do not exist. A plain value; any thread.
struct Date {
    double secondsSince1970 = 0;

    /// The system clock now. Rules never call this: they take a date as a parameter.
    static Date now();

    static Date fromSecondsSince2001(double seconds) { return {seconds + epoch2001}; }
    [[nodiscard]] double secondsSince2001() const { return secondsSince1970 - epoch2001; }

    /// Before every other date.
    static Date distantPast();

    friend auto operator<=>(const Date&, const Date&) = default;

    /// 2001-01-01 00:00:00 UTC, the zero of the dates in "grants.json".
    static constexpr double epoch2001 = 978'307'200;
};

/// The longest text that `ISO8601::write` makes.
inline constexpr std::size_t iso8601MaxLength = 32;

/// ISO 8601 in UTC with whole seconds: "2026-11-20T08:05:09Z". A fraction is dropped toward the
/// past. Years outside 0000 to 9999 carry a sign and at least six digits ("+012026-…"). Years
/// beyond six digits are clamped to ±999999, so every date has a text.
namespace iso8601 {

[[nodiscard]] std::string text(Date date);

/// Writes the same text at `out`, which must have room for `iso8601MaxLength` bytes, and returns
/// the end. For the writer of large files.
char* write(Date date, char* out);

/// Reads exactly what `text` writes: that form, an existing day, hours below 24, minutes and
/// seconds below 60. Anything else is none; a date that is not written in the one form is refused.
[[nodiscard]] std::optional<Date> parse(std::string_view text);

}  // namespace iso8601

/// Whole days from `from` to `to` in the Gregorian calendar of the user's time zone: the day
/// component of the calendar difference, truncated toward zero, negative when `to` is earlier.
/// The time of day counts: 23:00 to 22:00 the next day is 0 days.
[[nodiscard]] int calendarDays(Date from, Date to);

/// The day in the user's time zone as British English writes it short: "15 Nov 2026", with the day
/// of the month as one or two digits.
[[nodiscard]] std::string dayMonthYear(Date date);

}  // namespace gruk
