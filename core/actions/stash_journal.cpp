#include "core/actions/stash_journal.h"

#include <boost/json.hpp>
#include <utility>

#include "core/actions/json_fields.h"

namespace gruk {

namespace {

namespace json = boost::json;

std::optional<FileURL> placeField(const json::object& object, std::string_view key)
{
    const auto text = jsonTextField(object, key);
    return text ? FileURL::fromFileURLText(*text) : std::nullopt;
}

std::optional<StashedItem> decodedItem(const json::value& value)
{
    const json::object* const object = value.if_object();
    if (object == nullptr) {
        return std::nullopt;
    }
    auto original = placeField(*object, "originalURL");
    auto stashed = placeField(*object, "stashedURL");
    if (!original || !stashed) {
        return std::nullopt;
    }
    return StashedItem{*std::move(original), *std::move(stashed)};
}

std::optional<std::vector<StashedItem>> itemsField(const json::object& object)
{
    const json::value* const value = object.if_contains("items");
    const json::array* const array = value == nullptr ? nullptr : value->if_array();
    if (array == nullptr) {
        return std::nullopt;
    }
    std::vector<StashedItem> items;
    for (const json::value& element : *array) {
        std::optional<StashedItem> item = decodedItem(element);
        if (!item) {
            return std::nullopt;
        }
        items.push_back(*std::move(item));
    }
    return items;
}

}  // namespace

std::string encodedStashJournal(const StashJournalFile& journal)
{
    json::array items;
    for (const StashedItem& item : journal.items) {
        items.push_back(json::object{{"originalURL", item.originalURL.fileURLText()},
                                     {"stashedURL", item.stashedURL.fileURLText()}});
    }
    return compactJSON(json::object{{"hoardFolder", journal.hoardFolder.fileURLText()},
                                    {"items", std::move(items)},
                                    {"createdAt", journal.createdAt.secondsSince2001()}});
}

std::optional<StashJournalFile> decodedStashJournal(std::string_view text)
{
    const std::optional<json::value> root = jsonValue(text);
    const json::object* const object = root ? root->if_object() : nullptr;
    if (object == nullptr) {
        return std::nullopt;
    }
    auto folder = placeField(*object, "hoardFolder");
    auto items = itemsField(*object);
    const auto createdAt = jsonDateField(*object, "createdAt");
    if (!folder || !items || !createdAt) {
        return std::nullopt;
    }
    return StashJournalFile{*std::move(folder), *std::move(items), *createdAt};
}

OwnContent ownStashJournal()
{
    return {longestStashJournal,
            [](std::string_view text) { return decodedStashJournal(text).has_value(); }};
}

}  // namespace gruk
