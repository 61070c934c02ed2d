#include "platform/files/own_folders.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace gruk {

OwnFolders::OwnFolders(std::vector<FileURL> folders)
{
    for (const FileURL& folder : folders) {
        FileURL place = FileURL::directory(folder.standardized().path());
        if (std::ranges::find(folders_, place) == folders_.end()) {
            folders_.push_back(std::move(place));
        }
    }
}

OwnFolders OwnFolders::resolved(const std::vector<FileURL>& folders)
{
    std::vector<FileURL> places = folders;
    for (const FileURL& folder : folders) {
        std::error_code failure;
        const std::string place =
            std::filesystem::weakly_canonical(folder.standardized().path(), failure).string();
        if (!failure) {
            places.push_back(FileURL::directory(place));
        }
    }
    return OwnFolders(std::move(places));
}

bool OwnFolders::contains(const FileURL& url) const
{
    const FileURL place = url.standardized();
    return std::ranges::any_of(folders_, [&](const FileURL& folder) {
        return pathIsAtOrBelow(place.path(), folder.path());
    });
}

}  // namespace gruk
