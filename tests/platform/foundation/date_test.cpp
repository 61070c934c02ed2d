#include "platform/foundation/date.h"

#include <array>
#include <cmath>
#include <ctime>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/support/in_time_zone.h"

namespace gruk {

namespace {

using test::InTimeZone;

constexpr double infinity = std::numeric_limits<double>::infinity();

Date at(const char* text)
{
    const std::optional<Date> date = iso8601::parse(text);
    EXPECT_TRUE(date) << text;
    return date.value_or(Date{});
}

TEST(ISO8601, writesWholeSecondsInUTC)
{
    EXPECT_EQ(iso8601::text({0}), "1970-01-01T00:00:00Z");
    EXPECT_EQ(iso8601::text({1'795'161'909}), "2026-11-20T08:05:09Z");
    EXPECT_EQ(iso8601::text({951'782'400}), "2000-02-29T00:00:00Z");
    EXPECT_EQ(iso8601::text({4'294'967'296}), "2106-02-07T06:28:16Z");
}

TEST(ISO8601, dropsAFractionTowardThePast)
{
    EXPECT_EQ(iso8601::text({0.999}), "1970-01-01T00:00:00Z");
    EXPECT_EQ(iso8601::text({-0.001}), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601::text({-1}), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601::text({-1.5}), "1969-12-31T23:59:58Z");
}

TEST(ISO8601, writesYearsOfOtherLengthsWithASign)
{
    EXPECT_EQ(iso8601::text(at("0000-01-01T00:00:00Z")), "0000-01-01T00:00:00Z");
    EXPECT_EQ(iso8601::text({at("0000-01-01T00:00:00Z").secondsSince1970 - 1}),
              "-000001-12-31T23:59:59Z");
    EXPECT_EQ(iso8601::text({at("0000-01-01T00:00:00Z").secondsSince1970 - 0.5}),
              "-000001-12-31T23:59:59Z");
    EXPECT_EQ(iso8601::text({at("9999-12-31T23:59:59Z").secondsSince1970 + 0.5}),
              "9999-12-31T23:59:59Z");
    EXPECT_EQ(iso8601::text({at("9999-12-31T23:59:59Z").secondsSince1970 + 1}),
              "+010000-01-01T00:00:00Z");
}

TEST(ISO8601, clampsYearsBeyondSixDigits)
{
    for (const double seconds : {1e14, 1e300, infinity}) {
        EXPECT_EQ(iso8601::text({seconds}), "+999999-12-31T23:59:59Z") << seconds;
        EXPECT_EQ(iso8601::text({-seconds}), "-999999-01-01T00:00:00Z") << seconds;
    }
    EXPECT_EQ(iso8601::text(Date::distantPast()), "-999999-01-01T00:00:00Z");
    EXPECT_EQ(iso8601::text({std::nan("")}), "-999999-01-01T00:00:00Z");
}

TEST(ISO8601, refusesEveryOtherForm)
{
    for (const char* text : {"",
                             "2026-11-20",
                             "2026-11-20T08:05:09",
                             "2026-11-20T08:05:09z",
                             "2026-11-20t08:05:09Z",
                             "2026-11-20 08:05:09Z",
                             "2026-11-20T08:05:09+00:00",
                             "2026-11-20T08:05:09.5Z",
                             "20261120T080509Z",
                             "2026-11-20T08:05Z",
                             "2026-11-20T08:05:09Z ",
                             " 2026-11-20T08:05:09Z",
                             "2026-00-20T08:05:09Z",
                             "2026-13-20T08:05:09Z",
                             "2026-11-00T08:05:09Z",
                             "2026-11-31T08:05:09Z",
                             "2026-02-29T08:05:09Z",
                             "1900-02-29T08:05:09Z",
                             "2026-11-20T24:00:00Z",
                             "2026-11-20T08:60:09Z",
                             "2026-11-20T08:05:60Z",
                             "2026/11/20T08:05:09Z",
                             "2o26-11-20T08:05:09Z",
                             "2026-11-2OT08:05:09Z",
                             "+002026-11-20T08:05:09Z",
                             "-000000-11-20T08:05:09Z",
                             "+009999-11-20T08:05:09Z",
                             "012026-11-20T08:05:09Z",
                             "0012026-11-20T08:05:09Z",
                             "*012026-11-20T08:05:09Z",
                             "+0012026-11-20T08:05:09Z",
                             "-2026-11-20T08:05:09Z",
                             "-026-11-20T08:05:09Z",
                             "+12-026-11-20T08:05:09Z"}) {
        EXPECT_EQ(iso8601::parse(text), std::nullopt) << text;
    }
}

TEST(ISO8601, readsLeapDaysOfLeapYearsOnly)
{
    EXPECT_TRUE(iso8601::parse("2000-02-29T00:00:00Z"));
    EXPECT_TRUE(iso8601::parse("2024-02-29T00:00:00Z"));
    EXPECT_TRUE(iso8601::parse("-000004-02-29T00:00:00Z"));
    EXPECT_FALSE(iso8601::parse("2100-02-29T00:00:00Z"));
}

TEST(ISO8601, agreesWithTheCLibraryOnEveryDayOfEightCenturies)
{
    for (std::int64_t day = -150'000; day < 150'000; ++day) {
        const std::time_t moment = day * 86'400 + (day & 0xFFFF);
        std::tm parts{};
        ASSERT_NE(::gmtime_r(&moment, &parts), nullptr);
        std::array<char, 64> expected{};
        std::strftime(expected.data(), expected.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
        ASSERT_EQ(iso8601::text({static_cast<double>(moment)}), expected.data());
    }
}

RC_GTEST_PROP(ISO8601, readsBackEveryWholeSecond, ())
{
    const auto seconds =
        *rc::gen::oneOf(rc::gen::inRange<std::int64_t>(-62'200'000'000, 253'500'000'000),
                        rc::gen::inRange<std::int64_t>(-31'600'000'000'000, 31'490'000'000'000));
    const Date date{static_cast<double>(seconds)};
    const std::string text = iso8601::text(date);
    RC_ASSERT(text.size() <= iso8601MaxLength);
    RC_ASSERT(iso8601::parse(text) == date);
}

RC_GTEST_PROP(ISO8601, readsOnlyWhatItWrites, ())
{
    std::string text = "2026-02-28T08:05:09Z";
    text[*rc::gen::inRange<std::size_t>(0, text.size())] =
        *rc::gen::elementOf(std::string("0123456789-+TZ: "));
    const std::optional<Date> date = iso8601::parse(text);
    RC_ASSERT((!date || iso8601::text(*date) == text));
}

TEST(Date, countsFrom2001ToItsOwnZero)
{
    EXPECT_EQ(Date::fromSecondsSince2001(0), at("2001-01-01T00:00:00Z"));
    EXPECT_EQ(at("2001-01-01T00:00:01Z").secondsSince2001(), 1);
}

TEST(Date, distantPastIsBeforeEveryOther)
{
    EXPECT_LT(Date::distantPast(), Date{std::numeric_limits<double>::lowest()});
}

TEST(Date, nowIsWhatTheClockSays)
{
    const auto before = static_cast<double>(std::time(nullptr));
    const double now = Date::now().secondsSince1970;
    EXPECT_GE(now, before);
    // `time` is behind by up to a tick.
    EXPECT_LE(now, static_cast<double>(std::time(nullptr)) + 2);
}

TEST(CalendarDays, countsTheTimeOfDay)
{
    const InTimeZone zone("UTC");
    EXPECT_EQ(calendarDays(at("2026-03-01T23:00:00Z"), at("2026-03-02T22:00:00Z")), 0);
    EXPECT_EQ(calendarDays(at("2026-03-01T23:00:00Z"), at("2026-03-02T23:00:00Z")), 1);
    EXPECT_EQ(calendarDays(at("2026-03-01T00:00:00Z"), at("2026-03-01T00:00:00Z")), 0);
    EXPECT_EQ(calendarDays(at("2025-03-01T00:00:00Z"), at("2026-03-01T00:00:00Z")), 365);
}

TEST(CalendarDays, isNegativeAndTruncatedWhenTheSecondIsEarlier)
{
    const InTimeZone zone("UTC");
    EXPECT_EQ(calendarDays(at("2026-03-02T22:00:00Z"), at("2026-03-01T23:00:00Z")), 0);
    EXPECT_EQ(calendarDays(at("2026-03-03T22:00:00Z"), at("2026-03-01T23:00:00Z")), -1);
    EXPECT_EQ(calendarDays(at("2026-03-03T23:00:00Z"), at("2026-03-01T23:00:00Z")), -2);
}

TEST(CalendarDays, aDayIsADayAlsoWhenClocksChange)
{
    const InTimeZone zone("Europe/Berlin");
    // The night of 29 March 2026 is an hour short: noon to noon is a day of 23 hours.
    EXPECT_EQ(calendarDays(at("2026-03-28T11:00:00Z"), at("2026-03-29T10:00:00Z")), 1);
    // That of 25 October is an hour long: 24 hours are not yet a day.
    EXPECT_EQ(calendarDays(at("2026-10-24T10:00:00Z"), at("2026-10-25T10:00:00Z")), 0);
    EXPECT_EQ(calendarDays(at("2026-10-24T10:00:00Z"), at("2026-10-25T11:00:00Z")), 1);
}

TEST(CalendarDays, answersForDatesBeyondEveryCalendar)
{
    const InTimeZone zone("UTC");
    EXPECT_GT(calendarDays(Date::distantPast(), at("2026-03-01T00:00:00Z")), 300'000'000);
    EXPECT_LT(calendarDays({infinity}, {-infinity}), -700'000'000);
    EXPECT_EQ(calendarDays({infinity}, {infinity}), 0);
}

TEST(DayMonthYear, namesMonthsAsBritishEnglishDoes)
{
    const InTimeZone zone("UTC");
    EXPECT_EQ(dayMonthYear(at("2026-11-15T12:00:00Z")), "15 Nov 2026");
    EXPECT_EQ(dayMonthYear(at("2026-01-02T00:00:00Z")), "2 Jan 2026");
    EXPECT_EQ(dayMonthYear(at("2026-09-30T00:00:00Z")), "30 Sept 2026");
}

TEST(DayMonthYear, isTheDayOfTheUsersTimeZone)
{
    const InTimeZone zone("Pacific/Auckland");
    EXPECT_EQ(dayMonthYear(at("2026-11-15T12:00:00Z")), "16 Nov 2026");
}

}  // namespace

}  // namespace gruk
