#include "app/screens/shortcuts.h"

#include <algorithm>
#include <optional>

#include "platform/files/known_folders.h"
#include "platform/files/real_place.h"

namespace gruk {

std::vector<Shortcut> shortcuts(const AppModel& model)
{
    const std::pair<Shortcut, std::optional<FileURL>> places[] = {
        {{QStringLiteral("home"), QStringLiteral("Home"), FileURL(), Icon::house}, homeDirectory()},
        {{QStringLiteral("desktop"), QStringLiteral("Desktop"), FileURL(), Icon::desktop},
         desktopDirectory()},
        {{QStringLiteral("downloads"), QStringLiteral("Downloads"), FileURL(), Icon::downloads},
         downloadsDirectory()},
        {{QStringLiteral("applications"), QStringLiteral("Applications"), FileURL(),
          Icon::applications},
         applicationsDirectory()},
    };
    std::vector<Shortcut> shown;
    for (const auto& [place, url] : places) {
        if (!url) {
            continue;
        }
        const FileURL real = realPlace(*url);
        const std::string path = real.standardized().path();
        const bool isRealm = std::ranges::any_of(model.grants(), [&](const Grant& grant) {
            return FileURL::directory(grant.path).standardized().path() == path;
        });
        // Two names may lead to one folder: one line is enough.
        const bool isShown = std::ranges::any_of(
            shown, [&](const Shortcut& other) { return other.url.path() == path; });
        if (!isRealm && !isShown && model.canOpen(real)) {
            shown.push_back(place);
            shown.back().url = FileURL::directory(path);
        }
    }
    return shown;
}

}  // namespace gruk
