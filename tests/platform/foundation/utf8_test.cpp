#include "platform/foundation/utf8.h"

#include <cstdint>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace gruk {

namespace {

const std::string replacement = "\xEF\xBF\xBD";

/// The well-formed sequence at the front, found by decoding the number and encoding it again.
std::size_t naiveLength(std::string_view bytes)
{
    if (bytes.empty()) {
        return 0;
    }
    const auto at = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
    };
    const std::size_t length = at(0) < 0x80             ? 1
                               : (at(0) & 0xE0) == 0xC0 ? 2
                               : (at(0) & 0xF0) == 0xE0 ? 3
                               : (at(0) & 0xF8) == 0xF0 ? 4
                                                        : 0;
    if (length == 0 || length > bytes.size()) {
        return 0;
    }
    std::uint32_t number = length == 1 ? at(0) : at(0) & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80) {
            return 0;
        }
        number = number * 64 + (at(i) & 0x3F);
    }
    const std::size_t needed = number < 0x80 ? 1 : number < 0x800 ? 2 : number < 0x10000 ? 3 : 4;
    const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
    return needed == length && !isSurrogate && number <= 0x10FFFF ? length : 0;
}

TEST(UTF8, agreesWithAPlainDecoderOnEveryPairOfBytes)
{
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            const std::string bytes{static_cast<char>(first), static_cast<char>(second), '\x80',
                                    '\xBF'};
            for (std::size_t length = 0; length <= bytes.size(); ++length) {
                const std::string_view part(bytes.data(), length);
                ASSERT_EQ(utf8SequenceLength(part), naiveLength(part)) << first << ' ' << second;
            }
        }
    }
}

TEST(UTF8, knowsTheEndsOfItsRanges)
{
    EXPECT_TRUE(isValidUTF8("\xED\x9F\xBF"));       // U+D7FF
    EXPECT_FALSE(isValidUTF8("\xED\xA0\x80"));      // a surrogate
    EXPECT_TRUE(isValidUTF8("\xEE\x80\x80"));       // U+E000
    EXPECT_TRUE(isValidUTF8("\xF4\x8F\xBF\xBF"));   // U+10FFFF
    EXPECT_FALSE(isValidUTF8("\xF4\x90\x80\x80"));  // beyond
    EXPECT_FALSE(isValidUTF8("\xC0\xAF"));          // an overlong "/"
    EXPECT_FALSE(isValidUTF8("\xE0\x80\xAF"));
    EXPECT_FALSE(isValidUTF8("\xF0\x80\x80\xAF"));
    EXPECT_TRUE(isValidUTF8(std::string_view("\0", 1)));
    EXPECT_TRUE(isValidUTF8(""));
}

TEST(UTF8, findsTheOneBadByteInALongText)
{
    for (std::size_t at = 0; at < 40; ++at) {
        std::string bytes(40, 'a');
        EXPECT_TRUE(isValidUTF8(bytes));
        bytes[at] = '\xFF';
        EXPECT_FALSE(isValidUTF8(bytes)) << at;
    }
}

TEST(UTF8, showsEachStrayByteAsAReplacement)
{
    EXPECT_EQ(displayText("caf\xE9.txt"), "caf" + replacement + ".txt");
    EXPECT_EQ(displayText("\xE2\x82"), replacement + replacement);  // the Euro sign cut off
    EXPECT_EQ(displayText("\xC3\xA9\xFF\xC3\xA9"), "\xC3\xA9" + replacement + "\xC3\xA9");
    EXPECT_EQ(displayText("plain"), "plain");
    EXPECT_EQ(displayText(""), "");
}

RC_GTEST_PROP(UTF8, showsWhatAPlainDecoderShows, ())
{
    const auto piece = rc::gen::elementOf(std::vector<std::string>{
        "a", "/", "\x7F", "\x80", "\xBF", "\xC2", "\xC3\xA9", "\xE0", "\xA0", "\xED",
        "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xF4", "\x8F", "\xFF", "eight letters "});
    std::string bytes;
    for (const std::string& part : *rc::gen::container<std::vector<std::string>>(piece)) {
        bytes += part;
    }
    std::string expected;
    bool isWhole = true;
    for (std::string_view rest = bytes; !rest.empty();) {
        const std::size_t length = naiveLength(rest);
        expected += length == 0 ? replacement : std::string(rest.substr(0, length));
        isWhole = isWhole && length > 0;
        rest.remove_prefix(std::max<std::size_t>(1, length));
    }
    RC_ASSERT(displayText(bytes) == expected);
    RC_ASSERT(isValidUTF8(bytes) == isWhole);
    RC_ASSERT(isValidUTF8(displayText(bytes)));
}

}  // namespace

}  // namespace gruk
