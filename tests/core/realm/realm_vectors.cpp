#include "tests/core/realm/realm_vectors.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace gruk::test {

std::vector<VectorLine> vectorLines(std::string_view kind, std::string_view table)
{
    const std::string path = std::string(GRUK_TEST_DATA "/").append(table);
    std::ifstream file(path);
    std::vector<VectorLine> lines;
    std::string text;
    for (int number = 1; std::getline(file, text); ++number) {
        std::istringstream words(text);
        std::string word;
        words >> word;
        if (word != kind) {
            continue;
        }
        VectorLine line{number, {}};
        while (words >> word) {
            line.fields.push_back(word);
        }
        lines.push_back(line);
    }
    if (lines.empty()) {
        throw std::runtime_error("no lines of that kind in " + path);
    }
    return lines;
}

std::uint64_t vectorInteger(const std::string& field)
{
    std::size_t used = 0;
    const std::uint64_t value = std::stoull(field, &used, 16);
    if (used != field.size()) {
        throw std::runtime_error("not hexadecimal: " + field);
    }
    return value;
}

double vectorDouble(const std::string& field)
{
    // Not std::stod, which throws for numbers too small to be normal.
    char* end = nullptr;
    const double value = std::strtod(field.c_str(), &end);
    if (end != field.c_str() + field.size()) {
        throw std::runtime_error("not a hexadecimal float: " + field);
    }
    return value;
}

std::string vectorPath(const std::string& field)
{
    std::string bytes;
    for (std::size_t i = 0; field != "-" && i + 1 < field.size(); i += 2) {
        bytes += static_cast<char>(vectorInteger(field.substr(i, 2)));
    }
    return bytes;
}

}  // namespace gruk::test
