#include "app/screens/dropped_folders.h"

#include <algorithm>

#include "app/model/app_model.h"
#include "app/model/model_copy.h"
#include "app/theme/text.h"

namespace gruk {

std::vector<FileURL> droppedFolders(std::string_view uriList)
{
    std::vector<FileURL> folders;
    while (!uriList.empty()) {
        const std::size_t end = uriList.find_first_of("\r\n");
        const std::string_view line = uriList.substr(0, end);
        uriList.remove_prefix(end == std::string_view::npos ? uriList.size() : end + 1);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (const auto url = FileURL::fromFileURLText(line)) {
            folders.push_back(FileURL::directory(url->path()));
        }
    }
    return folders;
}

QString dropSentence(const std::vector<FileURL>& places)
{
    const auto folders = std::ranges::count_if(places, AppModel::couldBeRealm);
    if (folders > 1) {
        return QStringLiteral("Drop them here to grant %1 realms.").arg(groupedNumber(folders));
    }
    const auto folder = std::ranges::find_if(places, AppModel::couldBeRealm);
    return folder == places.end()
               ? displayString(ModelCopy::notAFolder(places.front().lastPathComponent()))
               : QStringLiteral("Drop “%1” here to grant it as a realm.")
                     .arg(displayName(folder->lastPathComponent()));
}

}  // namespace gruk
