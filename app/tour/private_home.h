#pragma once

#include <filesystem>

namespace gruk::tour {

/// A home of the tour's own: a fresh temporary folder that every place of the user (home, data,
/// configuration, state, cache, run time) lies in from now on. Make it before anything reads one
/// of those. Removed with everything in it at the end.
class PrivateHome {
public:
    /// Throws `std::filesystem::filesystem_error` when no folder can be made.
    PrivateHome();
    ~PrivateHome();
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace gruk::tour
