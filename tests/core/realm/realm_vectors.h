#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gruk::test {

/// The tables of vectors, each written by the script of its name in tests/data.
inline constexpr std::string_view identityTable = "realm_identity_vectors.txt";
inline constexpr std::string_view mapTable = "map_vectors.txt";

/// One line of a table: its fields behind the first word, and its number for messages.
struct VectorLine {
    int number = 0;
    std::vector<std::string> fields;
};

/// The lines whose first word is `kind`. Throws when there are none.
[[nodiscard]] std::vector<VectorLine> vectorLines(std::string_view kind,
                                                  std::string_view table = identityTable);

/// The fields of a table: hexadecimal digits, a hexadecimal float ("nan" and "inf" too), the bytes
/// of a path. Each throws on anything else.
[[nodiscard]] std::uint64_t vectorInteger(const std::string& field);
[[nodiscard]] double vectorDouble(const std::string& field);
[[nodiscard]] std::string vectorPath(const std::string& field);

}  // namespace gruk::test
