#include "platform/settings/settings_json.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace gruk {

namespace {

using namespace std::string_literals;

/// How many of the typed readers take a value.
int readersOf(const std::string& json)
{
    return (booleanFromJSON(json) ? 1 : 0) + (textFromJSON(json) ? 1 : 0)
           + (dataFromJSON(json) ? 1 : 0) + (textDictionaryFromJSON(json) ? 1 : 0);
}

}  // namespace

TEST(SettingsJSON, eachTypeHasItsForm)
{
    EXPECT_EQ(booleanJSON(true), "true");
    EXPECT_EQ(booleanJSON(false), "false");
    EXPECT_EQ(textJSON("a \"b\"\n/ö"), R"("a \"b\"\n/ö")");
    EXPECT_EQ(textJSON("\xff"), R"("\u0000ff")");
    EXPECT_EQ(dataJSON("\0\xff"s), R"({"$data":"AP8="})");
    EXPECT_EQ(textDictionaryJSON({{"b", "2"}, {"a", "1"}}), R"({"a":"1","b":"2"})");
    EXPECT_EQ(textDictionaryJSON({{"$data", "AP8="}}), R"({"$$data":"AP8="})");
}

TEST(SettingsJSON, aValueIsOfOneTypeAtMost)
{
    for (const char* json : {"true", "\"true\"", "{}", R"({"a":"b"})", R"({"$data":""})",
                             R"({"$$data":""})", R"({"$data":"AP8="})", "\"\""}) {
        EXPECT_EQ(readersOf(json), 1) << json;
    }
    for (const char* json :
         {"1", "1.5", "null", "[]", R"(["a"])", R"({"a":1})", R"({"a":"b","c":null})",
          R"({"a":{"b":"c"}})", R"({"$data":"AP8"})", R"({"$data":1})", R"({"$data":"","a":"b"})",
          R"({"$date":"x"})", R"({"$":"x"})", R"("\u0000")", R"({"\u0000":"a"})",
          R"({"a":"\u0000FF"})", "", "tru", "{"}) {
        EXPECT_EQ(readersOf(json), 0) << json;
    }
}

TEST(SettingsJSON, aDictionaryWithTheVeryKeysOfTheFormComesBack)
{
    const TextDictionary dictionary = {{"$data", "AP8="}, {"$$data", ""},    {"$", "$"},
                                       {"$$", "x"},       {"", "\xff\xfe$"}, {"\xff$", "y"}};
    EXPECT_EQ(textDictionaryFromJSON(textDictionaryJSON(dictionary)), dictionary);
    const TextDictionary alone = {{"$data", "AP8="}};
    const std::string json = textDictionaryJSON(alone);
    EXPECT_EQ(textDictionaryFromJSON(json), alone);
    EXPECT_EQ(dataFromJSON(json), std::nullopt);
}

TEST(SettingsJSON, randomValuesComeBackAsWhatTheyWere)
{
    std::mt19937 random(4);
    const auto bytes = [&](int lowest) {
        std::string result;
        for (auto left = random() % 12; left > 0; --left) {
            result += static_cast<char>(lowest + static_cast<int>(random() % 255));
        }
        return result;
    };
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = bytes(1);
        ASSERT_EQ(textFromJSON(textJSON(text)), text);
        const std::string data = bytes(0);
        ASSERT_EQ(dataFromJSON(dataJSON(data)), data);
        const TextDictionary dictionary = {{bytes(1), bytes(1)}, {"$" + bytes(1), bytes(1)}};
        ASSERT_EQ(textDictionaryFromJSON(textDictionaryJSON(dictionary)), dictionary);
        ASSERT_EQ(readersOf(textDictionaryJSON(dictionary)), 1);
    }
}

TEST(SettingsJSON, valuesAreTakenAsTheyStand)
{
    const auto values =
        settingsFromJSON(" \r\n\t{ \"a\" : 9007199254740993 ,\"b\":[ 1, \"]\\\"}\", {\"x\":[]} "
                         "]\n,\"c,}\":{ \"k\\\\\" "
                         ": \"v\"},\"d\":-0.1234567890123456789e-30 , \"\\u0000ff\" : null}\n ");
    ASSERT_TRUE(values);
    EXPECT_EQ(*values, (SettingsValues{{"a", "9007199254740993"},
                                       {"b", "[ 1, \"]\\\"}\", {\"x\":[]} ]"},
                                       {"c,}", "{ \"k\\\\\" : \"v\"}"},
                                       {"d", "-0.1234567890123456789e-30"},
                                       {"\0ff"s, "null"}}));
    EXPECT_EQ(settingsFromJSON(settingsJSON(*values)), values);
}

TEST(SettingsJSON, oneSettingStandsInALine)
{
    EXPECT_EQ(settingsJSON({}), "{\n}\n");
    EXPECT_EQ(settingsJSON({{"b", "true"}, {"a", "\"x\""}}),
              "{\n    \"a\": \"x\",\n    \"b\": true\n}\n");
    EXPECT_EQ(settingsFromJSON("{}"), SettingsValues());
    EXPECT_EQ(settingsFromJSON("{\n}\n"), SettingsValues());
}

TEST(SettingsJSON, ofAKeyThatStandsTwiceTheLastCounts)
{
    EXPECT_EQ(settingsFromJSON(R"({"a":1,"a":2})"), (SettingsValues{{"a", "2"}}));
}

TEST(SettingsJSON, whatIsNotOneObjectIsRefused)
{
    const std::string deep(40, '[');
    const std::vector<std::string> refused = {
        "",
        " ",
        "null",
        "[]",
        "\"text\"",
        "1",
        "{",
        "}",
        R"({"a")",
        R"({"a":)",
        R"({"a":1)",
        R"({"a":1,})",
        R"({"a":1}})",
        R"({"a":1} x)",
        R"({a:1})",
        R"({'a':1})",
        R"({"a":01})",
        R"({"a":"\x"})",
        R"({"a":"\ud800"})",
        "{\"a\":\"\xff\"}",
        "{\"a\":\"\n\"}",
        "{\"a\":1}\0"s,
        "\xef\xbb\xbf{}",
        "{\"a\":" + deep + std::string(40, ']') + "}",
        std::string(100'000, '['),
        std::string(4'096, '\0'),
    };
    for (const std::string& text : refused) {
        EXPECT_EQ(settingsFromJSON(text), std::nullopt)
            << testing::PrintToString(text.substr(0, 40));
    }
    const std::string whole = R"({"a":{"b":["c",1e5,true]},"d":"e\"}"})";
    ASSERT_TRUE(settingsFromJSON(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(settingsFromJSON(whole.substr(0, length)), std::nullopt) << length;
    }
}

}  // namespace gruk
