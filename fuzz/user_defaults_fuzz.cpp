#include "fuzz/fuzz_support.h"
#include "platform/settings/settings_json.h"
#include "platform/settings/user_defaults.h"

namespace gruk::fuzz {

namespace {

/// A value is of one type at most, and comes back from what is written of it.
void checkValue(const std::string& json)
{
    const auto boolean = booleanFromJSON(json);
    const auto text = textFromJSON(json);
    const auto data = dataFromJSON(json);
    const auto dictionary = textDictionaryFromJSON(json);
    const int types = (boolean ? 1 : 0) + (text ? 1 : 0) + (data ? 1 : 0) + (dictionary ? 1 : 0);
    GRUK_REQUIRE(types <= 1, "a value of two types");
    GRUK_REQUIRE(!boolean || booleanFromJSON(booleanJSON(*boolean)) == boolean,
                 "a boolean does not come back");
    GRUK_REQUIRE(!text || textFromJSON(textJSON(*text)) == text, "a text does not come back");
    GRUK_REQUIRE(!data || dataFromJSON(dataJSON(*data)) == data, "data do not come back");
    GRUK_REQUIRE(!dictionary
                     || textDictionaryFromJSON(textDictionaryJSON(*dictionary)) == dictionary,
                 "a dictionary does not come back");
}

void check(std::string_view bytes)
{
    static MemoryFile file("settings.json");
    file.fill(bytes);
    // What any file holds is read without a word.
    static_cast<void>(UserDefaults(file.url()).textDictionary("a"));

    const auto values = settingsFromJSON(bytes);
    if (!values) {
        return;
    }
    GRUK_REQUIRE(settingsFromJSON(settingsJSON(*values)) == values, "settings do not come back");
    for (const auto& [key, value] : *values) {
        checkValue(value);
    }
}

}  // namespace

}  // namespace gruk::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gruk::fuzz::check(gruk::fuzz::asText(data, size));
    return 0;
}
