#include "platform/settings/settings_json.h"

#include <algorithm>
#include <boost/json.hpp>
#include <utility>

#include "platform/foundation/base64.h"
#include "platform/foundation/json_path.h"

namespace gruk {

namespace {

namespace json = boost::json;

constexpr std::string_view whiteSpace = " \t\r\n";

/// Begins each key in an object that is no key of a dictionary. A dictionary's own key that begins
/// with it stands with one more.
constexpr char keyMark = '$';
constexpr std::string_view dataKey = "$data";

std::optional<json::value> parsedJSON(std::string_view text)
{
    boost::system::error_code error;
    json::value value = json::parse(text, error);
    return error ? std::nullopt : std::optional(std::move(value));
}

/// The end of the JSON string that `text` begins with.
std::size_t stringEnd(std::string_view text)
{
    std::size_t at = 1;
    while (text[at] != '"') {
        at += text[at] == '\\' ? 2 : 1;
    }
    return at + 1;
}

/// The end of the object or list that `text` begins with.
std::size_t containerEnd(std::string_view text)
{
    std::size_t depth = 0;
    std::size_t at = 0;
    do {
        const char c = text[at];
        if (c == '"') {
            at += stringEnd(text.substr(at));
            continue;
        }
        depth += c == '{' || c == '[' ? 1 : 0;
        depth -= c == '}' || c == ']' ? 1 : 0;
        ++at;
    } while (depth > 0);
    return at;
}

/// Goes through the tokens of text that is known to be JSON.
class Tokens {
public:
    explicit Tokens(std::string_view text) : rest_(text) {}

    /// Skips blanks and these characters.
    void skip(std::string_view characters)
    {
        while (whiteSpace.find(rest_.front()) != std::string_view::npos
               || characters.find(rest_.front()) != std::string_view::npos) {
            rest_.remove_prefix(1);
        }
    }

    [[nodiscard]] char front() const { return rest_.front(); }

    /// The value that comes next, as it stands.
    std::string_view takeValue()
    {
        const std::string_view value = rest_.substr(0, valueEnd());
        rest_.remove_prefix(value.size());
        return value;
    }

private:
    [[nodiscard]] std::size_t valueEnd() const
    {
        switch (rest_.front()) {
        case '"':
            return stringEnd(rest_);
        case '{':
        case '[':
            return containerEnd(rest_);
        default:
            return rest_.find_first_of(",}] \t\r\n");
        }
    }

    std::string_view rest_;
};

std::string inQuotes(std::string_view text)
{
    return json::serialize(json::value(text));
}

/// The text that a JSON value stands for; none for another type, or what no bytes are written as.
std::optional<std::string> textOf(const json::value& value)
{
    const json::string* const string = value.if_string();
    return string == nullptr ? std::nullopt : pathFromJSONText(std::string_view(*string));
}

std::string escapedKey(std::string_view key)
{
    return (key.starts_with(keyMark) ? std::string(1, keyMark) : "") + jsonPathText(key);
}

/// The key that a dictionary has as `text`; none when it is not one of a dictionary.
std::optional<std::string> unescapedKey(std::string_view text)
{
    if (!text.starts_with(keyMark)) {
        return pathFromJSONText(text);
    }
    return text.substr(1).starts_with(keyMark) ? pathFromJSONText(text.substr(1)) : std::nullopt;
}

}  // namespace

std::optional<SettingsValues> settingsFromJSON(std::string_view json)
{
    const std::optional<json::value> root = parsedJSON(json);
    if (!root || !root->is_object()) {
        return std::nullopt;
    }
    SettingsValues values;
    Tokens tokens(json);
    tokens.skip("");
    tokens.skip("{");
    while (tokens.front() != '}') {
        const std::optional<json::value> key = parsedJSON(tokens.takeValue());
        tokens.skip(":");
        const std::string_view value = tokens.takeValue();
        values.insert_or_assign(std::string(std::string_view(key->get_string())),
                                std::string(value));
        tokens.skip(",");
    }
    return values;
}

std::string settingsJSON(const SettingsValues& values)
{
    std::string text = "{";
    const char* separator = "\n    ";
    for (const auto& [key, value] : values) {
        text.append(separator).append(inQuotes(key)).append(": ").append(value);
        separator = ",\n    ";
    }
    return text.append("\n}\n");
}

std::string booleanJSON(bool value)
{
    return value ? "true" : "false";
}

std::string textJSON(std::string_view text)
{
    return inQuotes(jsonPathText(text));
}

std::string dataJSON(std::string_view bytes)
{
    return json::serialize(json::object{{dataKey, base64Encoded(bytes)}});
}

std::string textDictionaryJSON(const TextDictionary& dictionary)
{
    json::object object;
    for (const auto& [key, text] : dictionary) {
        object.emplace(escapedKey(key), jsonPathText(text));
    }
    return json::serialize(object);
}

std::optional<bool> booleanFromJSON(std::string_view json)
{
    const std::optional<json::value> value = parsedJSON(json);
    const bool* const boolean = value ? value->if_bool() : nullptr;
    return boolean == nullptr ? std::nullopt : std::optional(*boolean);
}

std::optional<std::string> textFromJSON(std::string_view json)
{
    const std::optional<json::value> value = parsedJSON(json);
    return value ? textOf(*value) : std::nullopt;
}

std::optional<std::string> dataFromJSON(std::string_view json)
{
    const std::optional<json::value> value = parsedJSON(json);
    const json::object* const object = value ? value->if_object() : nullptr;
    if (object == nullptr || object->size() != 1 || object->begin()->key() != dataKey) {
        return std::nullopt;
    }
    const json::string* const text = object->begin()->value().if_string();
    return text == nullptr ? std::nullopt : base64Decoded(std::string_view(*text));
}

std::optional<TextDictionary> textDictionaryFromJSON(std::string_view json)
{
    const std::optional<json::value> value = parsedJSON(json);
    const json::object* const object = value ? value->if_object() : nullptr;
    if (object == nullptr) {
        return std::nullopt;
    }
    TextDictionary dictionary;
    for (const auto& member : *object) {
        std::optional<std::string> key = unescapedKey(member.key());
        std::optional<std::string> text = textOf(member.value());
        if (!key || !text) {
            return std::nullopt;
        }
        dictionary.emplace(*std::move(key), *std::move(text));
    }
    return dictionary;
}

}  // namespace gruk
