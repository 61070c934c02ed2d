#include "app/screens/dropped_folders.h"

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

}  // namespace gruk
