#include "app/tour/private_home.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

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

}  // namespace

PrivateHome::PrivateHome()
{
    std::string pattern = (fs::canonical(fs::temp_directory_path()) / "gruk-tour-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw fs::filesystem_error("cannot make a temporary folder", pattern,
                                   std::error_code(errno, std::generic_category()));
    }
    path_ = pattern;
    const std::pair<const char*, const char*> places[] = {
        {"HOME", "home"},
        {"XDG_DATA_HOME", "home/.local/share"},
        {"XDG_CONFIG_HOME", "home/.config"},
        {"XDG_STATE_HOME", "home/.local/state"},
        {"XDG_CACHE_HOME", "home/.cache"},
        {"XDG_RUNTIME_DIR", "run"},
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
}

}  // namespace gruk::tour
