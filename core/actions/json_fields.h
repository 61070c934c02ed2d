#pragma once

#include <boost/json/fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/date.h"

/// Typed reading of the small JSON files of the program, and the one way they are written. Only
/// for sources of the core, since it speaks of the JSON library.

namespace gruk {

/// The whole of `bytes` as one JSON value; none when it is not.
[[nodiscard]] std::optional<boost::json::value> jsonValue(std::string_view bytes);

// The field `key` of an object; none when it is missing or of another type.
[[nodiscard]] std::optional<std::string_view> jsonTextField(const boost::json::object& object,
                                                            std::string_view key);
[[nodiscard]] std::optional<bool> jsonBooleanField(const boost::json::object& object,
                                                   std::string_view key);
/// A finite number of seconds since 2001.
[[nodiscard]] std::optional<Date> jsonDateField(const boost::json::object& object,
                                                std::string_view key);

/// The value as compact JSON with every "/" escaped, as the program's files have it.
[[nodiscard]] std::string compactJSON(const boost::json::value& value);

/// `date` at a microsecond since 2001: as many digits as a decimal text gives back to the bit.
[[nodiscard]] Date atMicrosecond(Date date);

}  // namespace gruk
