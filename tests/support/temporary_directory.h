#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "platform/foundation/file_url.h"

namespace gruk::test {

/// A folder of the test's own, made fresh and removed with everything in it at the end, however
/// deep and whatever the names. Its path has no link in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] FileURL url() const { return FileURL::directory(path_); }
    [[nodiscard]] const std::string& path() const { return path_; }
    /// The absolute path of a relative one in here.
    [[nodiscard]] std::string path(std::string_view relative) const;

    /// Makes a folder and the folders above it; returns its path.
    std::string folder(std::string_view relative) const;
    /// Makes a file of `size` bytes, and the folders above it; returns its path.
    std::string file(std::string_view relative, std::size_t size = 0) const;
    /// Makes a file with this content, and the folders above it.
    std::string fileWith(std::string_view relative, std::string_view content) const;
    /// Makes a symbolic link with that text as its target.
    std::string symbolicLink(std::string_view relative, const std::string& target) const;
    /// Makes `relative` another name of the file `existing`.
    std::string hardLink(std::string_view relative, std::string_view existing) const;
    /// The whole content of a file.
    [[nodiscard]] std::string read(std::string_view relative) const;

private:
    std::string path_;
};

/// Runs `body` in a child process as an ordinary user when the test runs as root, else in a plain
/// child process; returns whether it ended with `true`. For tests of permissions: root is refused
/// nothing.
[[nodiscard]] bool
succeedsAsOrdinaryUser(const std::function<bool(const TemporaryDirectory&)>& body,
                       const TemporaryDirectory& directory);

}  // namespace gruk::test
