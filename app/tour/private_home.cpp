#include "app/tour/private_home.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

constexpr const char* userFolder = "mira";
constexpr const char* runFolder = "run";

/// Folders that nobody may list would keep themselves from being removed.
void openEveryFolder(const fs::path& root)
{
    std::error_code ignored;
    fs::permissions(root, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::directory_iterator at(root, ignored), end; !ignored && at != end;
         at.increment(ignored)) {
        if (at->is_directory() && !at->is_symlink()) {
            openEveryFolder(at->path());
        }
    }
}

/// Whether `opened` is a folder of this user alone, which still stands at `folder`.
bool isOwn(int opened, const fs::path& folder)
{
    struct stat held = {};
    struct stat found = {};
    return ::fstat(opened, &held) == 0 && ::lstat(folder.c_str(), &found) == 0
           && held.st_ino == found.st_ino && held.st_dev == found.st_dev
           && held.st_uid == ::geteuid() && (held.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// Whether there is nothing in the folder but what a home that did not come to its end has left.
bool holdsNothingElse(const fs::path& folder)
{
    const fs::directory_iterator all(folder);
    return std::all_of(begin(all), end(all), [](const fs::directory_entry& each) {
        return each.path().filename() == userFolder || each.path().filename() == runFolder;
    });
}

/// Opens and locks that folder, made where it is missing; -1 when it is somebody else's, or in use,
/// or holds what is not ours to remove.
int claim(const fs::path& folder)
{
    if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        return -1;
    }
    const int opened = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    // Looked at once it is locked: the one who had it removes it at the end.
    if (opened >= 0
        && (::flock(opened, LOCK_EX | LOCK_NB) != 0 || !isOwn(opened, folder)
            || !holdsNothingElse(folder))) {
        ::close(opened);
        return -1;
    }
    return opened;
}

fs::path makeOneOfMany(const fs::path& folder)
{
    std::string pattern = folder.string() + "-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw fs::filesystem_error("cannot make a temporary folder", pattern,
                                   std::error_code(errno, std::generic_category()));
    }
    return pattern;
}

/// What one that did not come to its end has left.
void removeEverythingIn(const fs::path& folder)
{
    openEveryFolder(folder);
    for (const fs::directory_entry& each : fs::directory_iterator(folder)) {
        fs::remove_all(each.path());
    }
}

}  // namespace

PrivateHome::PrivateHome()
{
    path_ = fs::canonical(fs::temp_directory_path()) / "gruk-tour";
    lock_ = claim(path_);
    if (lock_ >= 0) {
        removeEverythingIn(path_);
    } else {
        path_ = makeOneOfMany(path_);
    }
    const std::pair<const char*, const char*> places[] = {
        {"HOME", userFolder},
        {"XDG_DATA_HOME", "mira/.local/share"},
        {"XDG_CONFIG_HOME", "mira/.config"},
        {"XDG_STATE_HOME", "mira/.local/state"},
        {"XDG_CACHE_HOME", "mira/.cache"},
        {"XDG_RUNTIME_DIR", runFolder},
    };
    for (const auto& [variable, place] : places) {
        const fs::path at = path_ / place;
        fs::create_directories(at);
        fs::permissions(at, fs::perms::owner_all);
        ::setenv(variable, at.c_str(), 1);
    }
}

PrivateHome::~PrivateHome()
{
    std::error_code ignored;
    openEveryFolder(path_);
    fs::remove_all(path_, ignored);
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

fs::path PrivateHome::home() const
{
    return path_ / userFolder;
}

}  // namespace gruk::tour
