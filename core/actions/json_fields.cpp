#include "core/actions/json_fields.h"

#include <boost/json.hpp>
#include <cmath>

namespace gruk {

namespace json = boost::json;

std::optional<json::value> jsonValue(std::string_view bytes)
{
    boost::system::error_code error;
    json::value value = json::parse(bytes, error);
    return error ? std::nullopt : std::optional(std::move(value));
}

std::optional<std::string_view> jsonTextField(const json::object& object, std::string_view key)
{
    const json::value* const value = object.if_contains(key);
    const json::string* const string = value == nullptr ? nullptr : value->if_string();
    return string == nullptr ? std::nullopt : std::optional(std::string_view(*string));
}

std::optional<bool> jsonBooleanField(const json::object& object, std::string_view key)
{
    const json::value* const value = object.if_contains(key);
    const bool* const boolean = value == nullptr ? nullptr : value->if_bool();
    return boolean == nullptr ? std::nullopt : std::optional(*boolean);
}

std::optional<Date> jsonDateField(const json::object& object, std::string_view key)
{
    const json::value* const value = object.if_contains(key);
    if (value == nullptr || !value->is_number()) {
        return std::nullopt;
    }
    const auto seconds = value->to_number<double>();
    return std::isfinite(seconds) ? std::optional(Date::fromSecondsSince2001(seconds))
                                  : std::nullopt;
}

std::string compactJSON(const json::value& value)
{
    // A "/" can only stand inside a text.
    std::string escaped;
    for (const char c : json::serialize(value)) {
        if (c == '/') {
            escaped += '\\';
        }
        escaped += c;
    }
    return escaped;
}

Date atMicrosecond(Date date)
{
    constexpr double perSecond = 1e6;
    return Date::fromSecondsSince2001(std::round(date.secondsSince2001() * perSecond) / perSecond);
}

}  // namespace gruk
