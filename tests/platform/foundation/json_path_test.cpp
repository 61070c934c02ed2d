#include "platform/foundation/json_path.h"

#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

using namespace std::string_literals;

}  // namespace

TEST(JSONPath, aPathOfWellFormedTextIsItsOwnText)
{
    for (const std::string path : {"", "a", "a/b c", "Übergröße/файл", "\u0001", "🐗", "%00ff"}) {
        EXPECT_EQ(jsonPathText(path), path);
        EXPECT_EQ(pathFromJSONText(path), path);
    }
}

TEST(JSONPath, aByteThatIsNotTextStandsAsANullAndTwoDigits)
{
    EXPECT_EQ(jsonPathText("a\xff/b"), "a\0ff/b"s);
    EXPECT_EQ(jsonPathText("\x80\xc3\xa9"), "\0"s + "80\u00e9");
    // The first bytes of a longer character, with nothing behind them.
    EXPECT_EQ(jsonPathText("\xe2\x82"), "\0e2\0"s + "82");
    EXPECT_EQ(pathFromJSONText("a\0ff/b"s), "a\xff/b");
}

TEST(JSONPath, everySingleByteComesBack)
{
    std::set<std::string> texts;
    for (int byte = 1; byte < 256; ++byte) {
        const std::string path = "x" + std::string(1, static_cast<char>(byte)) + "y";
        const std::string text = jsonPathText(path);
        EXPECT_TRUE(isValidUTF8(text));
        EXPECT_EQ(pathFromJSONText(text), path);
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 255U);
}

TEST(JSONPath, textThatNoPathIsWrittenAsIsRefused)
{
    const std::string refused[] = {
        "\0"s,     // nothing behind the null
        "a\0f"s,   // one digit
        "a\0fg"s,  // no digit
        "a\0FF"s,  // upper case
        "a\0 7"s,  // a blank
        "a\0"s
        "7f",  // a byte that is text
        "a\0"s
        "00",          // a null
        "a\0c3\0a9"s,  // bytes that make up a character
        "a\0\0ff"s,    // a null in the place of digits
        "a\xff",       // not text
        "a\0ff\xff"s,  // not text behind an escape
    };
    for (const std::string& text : refused) {
        EXPECT_EQ(pathFromJSONText(text), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(JSONPath, randomBytesComeBackAndRandomTextsStandForOnePathAtMost)
{
    constexpr char alphabet[] = "\0\0\0cafe89/\xc3\xa9\xe2\x82\xac\xff\xf0\x9f\x90\x97";
    constexpr std::size_t letters = sizeof alphabet - 1;
    std::mt19937 random(3);
    const auto draw = [&](std::size_t bound) { return random() % bound; };
    int accepted = 0;
    for (int i = 0; i < 200'000; ++i) {
        std::string bytes;
        for (std::size_t left = draw(9); left > 0; --left) {
            bytes += alphabet[draw(letters)];
        }
        if (const auto path = pathFromJSONText(bytes)) {
            ++accepted;
            ASSERT_EQ(jsonPathText(*path), bytes);
        }
        std::erase(bytes, '\0');
        ASSERT_EQ(pathFromJSONText(jsonPathText(bytes)), bytes);
    }
    EXPECT_GT(accepted, 1'000);
}

TEST(JSONPathDeathTest, aPathWithANullStopsTheProgram)
{
    EXPECT_DEATH(static_cast<void>(jsonPathText("a\0b"s)), "Gruk: stopped");
}

}  // namespace gruk
