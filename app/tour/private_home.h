#pragma once

#include <filesystem>

namespace gruk::tour {

/// A home of the tour's own: a fresh temporary folder that every place of the user (home, data,
/// configuration, state, cache, run time) lies in from now on. Make it before anything reads one
/// of those. Removed with everything in it at the end.
///
/// Its place reads well in a picture and is the same in each run, unless another tour or another
/// user has it; then it is a place of its own.
class PrivateHome {
public:
    /// Throws `std::filesystem::filesystem_error` when no folder can be made.
    PrivateHome();
    ~PrivateHome();
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    /// The home folder.
    [[nodiscard]] std::filesystem::path home() const;

private:
    std::filesystem::path path_;
    /// Locked while the home is in use; -1 for one that nobody else can come upon.
    int lock_ = -1;
};

}  // namespace gruk::tour
