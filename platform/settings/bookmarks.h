#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/file_url.h"

/// Bytes that name one directory and outlive the process. A bookmark holds the path together with
/// the identity of the directory and of its file system, so that what lies in a bare mount point
/// is never taken for the disk that was mounted there. docs/formats.md has the form.

namespace gruk {

/// Describes the directory at `url`. Throws `FileError` when it is missing, not a directory, or
/// cannot be read.
[[nodiscard]] std::string makeBookmark(const FileURL& url);

/// Describes anew the directory that `bookmark` led to at `url`, wherever that is. Throws as
/// `makeBookmark` does, and as `resolveBookmark` does when a different one stands there, or one
/// that cannot be told from others of its volume.
[[nodiscard]] std::string renewBookmark(std::string_view bookmark, const FileURL& url);

/// The place where the very same directory is now: its old path, or another name beside its old
/// place. Throws `FileError`: `no_such_file_or_directory` when it is not found there (also when a
/// different directory or disk stands at the path), `invalid_argument` when `bookmark` is not one.
/// Holds nothing open.
[[nodiscard]] FileURL resolveBookmark(std::string_view bookmark);

/// Starts and stops access to a resolved place. On this system the user's own permissions are the
/// access, so `start` answers whether the directory can be opened for listing; neither keeps the
/// disk from being unmounted.
[[nodiscard]] bool startAccessing(const FileURL& url);
void stopAccessing(const FileURL& url) noexcept;

}  // namespace gruk
