#include "app/model/realm_renaming.h"

#include <utility>

#include "platform/foundation/base64.h"

namespace gruk {

namespace {

std::optional<std::string> part(const TextDictionary& setting, const char* key)
{
    const auto found = setting.find(key);
    return found == setting.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

TextDictionary renamingSetting(const RealmRenaming& renaming)
{
    TextDictionary setting = {{"from", renaming.from},
                              {"to", renaming.to},
                              {"bookmark", base64Encoded(renaming.bookmark)}};
    if (renaming.cadenceOf) {
        setting["cadenceOf"] = renaming.cadenceOf->text();
    }
    return setting;
}

std::optional<RealmRenaming> renamingFrom(const UUID& grant, const TextDictionary& setting)
{
    const auto from = part(setting, "from");
    const auto to = part(setting, "to");
    const auto encoded = part(setting, "bookmark");
    auto bookmark = encoded ? base64Decoded(*encoded) : std::nullopt;
    if (!from || !to || !bookmark) {
        return std::nullopt;
    }
    const auto other = part(setting, "cadenceOf");
    return RealmRenaming{grant, *from, *to, *std::move(bookmark),
                         other ? UUID::parse(*other) : std::nullopt};
}

}  // namespace gruk
