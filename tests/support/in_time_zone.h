#pragma once

#include <unicode/timezone.h>

namespace gruk::test {

/// Puts the calendar into a time zone for the time of a test.
class InTimeZone {
public:
    explicit InTimeZone(const char* zone) : former_(icu::TimeZone::createDefault())
    {
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(zone));
    }
    ~InTimeZone() { icu::TimeZone::adoptDefault(former_); }
    InTimeZone(const InTimeZone&) = delete;
    InTimeZone& operator=(const InTimeZone&) = delete;

private:
    icu::TimeZone* former_;
};

}  // namespace gruk::test
