#include "platform/foundation/date.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

#include "platform/foundation/require.h"

namespace gruk {

namespace {

constexpr std::int64_t secondsPerDay = 86'400;
constexpr std::uint32_t daysPerEra = 146'097;  // 400 years
constexpr std::int64_t maximumYear = 999'999;

/// Days from 0000-03-01, where the years of the day algorithms begin, to 1970-01-01.
constexpr std::int64_t epochFromMarch = 719'468;
/// Whole eras that make every day in range positive, so that all of it is unsigned 32-bit.
constexpr std::uint32_t shiftedEras = 2'501;
constexpr std::int64_t dayShift = epochFromMarch + std::int64_t{daysPerEra} * shiftedEras;
constexpr std::int64_t yearShift = std::int64_t{400} * shiftedEras;

struct Day {
    std::int64_t year;
    std::uint32_t month;
    std::uint32_t day;
};

/// The day that lies `days` after 1970-01-01, after the algorithm `civil_from_days` of Howard
/// Hinnant, "chrono-Compatible Low-Level Date Algorithms". Years ±999999.
constexpr Day dayFrom(std::int64_t days)
{
    const auto shifted = static_cast<std::uint32_t>(days + dayShift);
    const std::uint32_t era = shifted / daysPerEra;
    const std::uint32_t ofEra = shifted % daysPerEra;
    const std::uint32_t yearOfEra =
        (ofEra - ofEra / 1'460 + ofEra / 36'524 - ofEra / 146'096) / 365;
    const std::uint32_t ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::uint32_t monthFromMarch = (5 * ofYear + 2) / 153;
    const std::uint32_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const std::int64_t year = std::int64_t{yearOfEra + era * 400} - yearShift;
    return {year + (month <= 2 ? 1 : 0), month, ofYear - (153 * monthFromMarch + 2) / 5 + 1};
}

/// The inverse, `days_from_civil` of the same source.
constexpr std::int64_t daysTo(const Day& day)
{
    const auto year = static_cast<std::uint32_t>(day.year + yearShift - (day.month <= 2 ? 1 : 0));
    const std::uint32_t yearOfEra = year % 400;
    const std::uint32_t ofYear =
        (153 * (day.month > 2 ? day.month - 3 : day.month + 9) + 2) / 5 + day.day - 1;
    const std::uint32_t ofEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + ofYear;
    return std::int64_t{year / 400} * daysPerEra + ofEra - dayShift;
}

constexpr std::int64_t firstSecond = daysTo({-maximumYear, 1, 1}) * secondsPerDay;
constexpr std::int64_t lastSecond = (daysTo({maximumYear, 12, 31}) + 1) * secondsPerDay - 1;
constexpr std::int64_t firstPlainSecond = daysTo({0, 1, 1}) * secondsPerDay;
constexpr std::int64_t lastPlainSecond = daysTo({10'000, 1, 1}) * secondsPerDay - 1;

static_assert(daysTo({1970, 1, 1}) == 0 && daysTo({2001, 1, 1}) * secondsPerDay == 978'307'200);
static_assert(firstSecond / secondsPerDay + dayShift >= 0);

constexpr std::uint32_t daysInMonth(std::int64_t year, std::uint32_t month)
{
    constexpr std::array<std::uint8_t, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && isLeap ? 29 : days[month - 1];
}

constexpr std::array<char, 200> makeDigitPairs()
{
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}

constexpr std::array<char, 200> digitPairs = makeDigitPairs();

char* writePair(std::size_t value, char* out)
{
    out[0] = digitPairs[2 * value];
    out[1] = digitPairs[2 * value + 1];
    return out + 2;
}

char* writePairAfter(char separator, std::uint32_t value, char* out)
{
    *out = separator;
    return writePair(value, out + 1);
}

/// The whole second at or before `seconds`, which is in the range of the texts.
std::int64_t wholeSecond(double seconds)
{
    const auto truncated = static_cast<std::int64_t>(seconds);
    return truncated - (static_cast<double>(truncated) > seconds ? 1 : 0);
}

char* writeYear(std::int64_t year, bool isPlain, char* out)
{
    auto magnitude = static_cast<std::uint32_t>(year < 0 ? -year : year);
    if (!isPlain) {
        *out++ = year < 0 ? '-' : '+';
        out = writePair(magnitude / 10'000, out);
        magnitude %= 10'000;
    }
    out = writePair(magnitude / 100, out);
    return writePair(magnitude % 100, out);
}

char* writeSecond(std::int64_t second, bool isPlain, char* out)
{
    // The shift makes the division unsigned and still rounds toward the past.
    const auto shifted = static_cast<std::uint64_t>(second + dayShift * secondsPerDay);
    const auto ofDay = static_cast<std::uint32_t>(shifted % secondsPerDay);
    const Day day = dayFrom(static_cast<std::int64_t>(shifted / secondsPerDay) - dayShift);
    out = writeYear(day.year, isPlain, out);
    out = writePairAfter('-', day.month, out);
    out = writePairAfter('-', day.day, out);
    out = writePairAfter('T', ofDay / 3'600, out);
    out = writePairAfter(':', ofDay / 60 % 60, out);
    out = writePairAfter(':', ofDay % 60, out);
    *out = 'Z';
    return out + 1;
}

char* writeFarDate(double seconds, char* out)
{
    // The negation sends what is not a number to the past too.
    const bool isPast = !(seconds > 0);
    if (isPast && !(seconds >= static_cast<double>(firstSecond))) {
        return writeSecond(firstSecond, false, out);
    }
    if (!isPast && seconds >= static_cast<double>(lastSecond)) {
        return writeSecond(lastSecond, false, out);
    }
    return writeSecond(wholeSecond(seconds), false, out);
}

/// Reads `count` digits at `text`; sets `failed` for any other character.
std::uint32_t readDigits(const char* text, std::size_t count, bool& failed)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])) - '0';
        failed |= digit > 9;
        value = value * 10 + digit;
    }
    return value;
}

constexpr std::size_t plainYearLength = 4;
constexpr std::size_t signedYearLength = 7;
constexpr std::size_t afterYearLength = 16;

/// The year of a text of the right length; none where `text` would not have written it so.
std::optional<std::int64_t> readYear(std::string_view digits)
{
    bool failed = false;
    if (digits.size() == plainYearLength) {
        const std::uint32_t year = readDigits(digits.data(), plainYearLength, failed);
        return failed ? std::nullopt : std::optional<std::int64_t>(year);
    }
    const char sign = digits[0];
    const std::int64_t year = readDigits(digits.data() + 1, signedYearLength - 1, failed);
    if (failed || (sign == '+' ? year < 10'000 : sign != '-' || year == 0)) {
        return std::nullopt;
    }
    return sign == '-' ? -year : year;
}

/// A moment as the calendar library takes it: milliseconds, within the years it can count.
double calendarMoment(Date date)
{
    const double seconds = std::isnan(date.secondsSince1970) ? static_cast<double>(firstSecond)
                                                             : date.secondsSince1970;
    return std::clamp(seconds, static_cast<double>(firstSecond), static_cast<double>(lastSecond))
           * 1'000;
}

}  // namespace

Date Date::now()
{
    using Seconds = std::chrono::duration<double>;
    return {Seconds(std::chrono::system_clock::now().time_since_epoch()).count()};
}

Date Date::distantPast()
{
    return {-std::numeric_limits<double>::infinity()};
}

namespace iso8601 {

std::string text(Date date)
{
    std::array<char, iso8601MaxLength> buffer{};
    return {buffer.data(), write(date, buffer.data())};
}

char* write(Date date, char* out)
{
    const double seconds = date.secondsSince1970;
    if (seconds >= static_cast<double>(firstPlainSecond)
        && seconds < static_cast<double>(lastPlainSecond + 1)) [[likely]] {
        return writeSecond(wholeSecond(seconds), true, out);
    }
    return writeFarDate(seconds, out);
}

std::optional<Date> parse(std::string_view text)
{
    if (text.size() != plainYearLength + afterYearLength
        && text.size() != signedYearLength + afterYearLength) {
        return std::nullopt;
    }
    const std::size_t yearLength = text.size() - afterYearLength;
    const char* rest = text.data() + yearLength;  // "-MM-DDThh:mm:ssZ"
    bool failed = rest[0] != '-' || rest[3] != '-' || rest[6] != 'T' || rest[9] != ':'
                  || rest[12] != ':' || rest[15] != 'Z';
    const std::uint32_t month = readDigits(rest + 1, 2, failed);
    const std::uint32_t day = readDigits(rest + 4, 2, failed);
    const std::uint32_t hour = readDigits(rest + 7, 2, failed);
    const std::uint32_t minute = readDigits(rest + 10, 2, failed);
    const std::uint32_t second = readDigits(rest + 13, 2, failed);
    const std::optional<std::int64_t> year = readYear(text.substr(0, yearLength));
    failed |= month < 1 || month > 12 || hour > 23 || minute > 59 || second > 59;
    if (failed || !year || day < 1 || day > daysInMonth(*year, month)) {
        return std::nullopt;
    }
    const std::int64_t ofDay = std::int64_t{hour} * 3'600 + std::int64_t{minute} * 60 + second;
    return Date{static_cast<double>(daysTo({*year, month, day}) * secondsPerDay + ofDay)};
}

}  // namespace iso8601

int calendarDays(Date from, Date to)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(status);
    calendar.setTime(calendarMoment(from), status);
    const std::int32_t days = calendar.fieldDifference(calendarMoment(to), UCAL_DATE, status);
    GRUK_REQUIRE(U_SUCCESS(status), "the calendar does not answer");
    return days;
}

std::string dayMonthYear(Date date)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::SimpleDateFormat format(icu::UnicodeString::fromUTF8("d MMM yyyy"),
                                       icu::Locale("en", "GB"), status);
    GRUK_REQUIRE(U_SUCCESS(status), "ICU has no British dates; its data is not installed");
    icu::UnicodeString words;
    format.format(calendarMoment(date), words);
    std::string text;
    words.toUTF8String(text);
    return text;
}

}  // namespace gruk
