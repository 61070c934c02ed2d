#pragma once

#include <string>

#include "platform/foundation/checked_arithmetic.h"

/// The one text of a byte count that all copy uses.
namespace gruk::ByteFormat {

/// Decimal units KB, MB and GB (1000-based), the largest that gives at least 1, and KB below that.
/// KB has no digit after the point, MB at most one, GB at most two, without trailing zeros, with
/// "." and no grouping, rounded half away from zero; a value that rounds up to 1000 takes the next
/// unit. Negative counts carry "-". 0 is "0 KB"; 1 byte is "0 KB" too.
[[nodiscard]] std::string string(Bytes bytes);

/// With its sign: "+" or the minus sign U+2212 and the text of the magnitude; exactly zero is
/// "0 KB" without a sign.
[[nodiscard]] std::string signedString(Bytes bytes);

}  // namespace gruk::ByteFormat
