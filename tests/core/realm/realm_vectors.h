#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gruk::test {

/// One line of the table of vectors that tests/data/realm_identity_vectors.py writes: its fields
/// behind the first word, and its number for messages.
struct VectorLine {
    int number = 0;
    std::vector<std::string> fields;
};

/// The lines whose first word is `kind`. Throws when the table cannot be read.
[[nodiscard]] std::vector<VectorLine> vectorLines(std::string_view kind);

/// The fields of the table: hexadecimal digits, a hexadecimal float, the bytes of a path. Each
/// throws on anything else.
[[nodiscard]] std::uint64_t vectorInteger(const std::string& field);
[[nodiscard]] double vectorDouble(const std::string& field);
[[nodiscard]] std::string vectorPath(const std::string& field);

}  // namespace gruk::test
