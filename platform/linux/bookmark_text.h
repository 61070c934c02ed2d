#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/file_url.h"
#include "platform/linux/directory_identity.h"

namespace gruk {

/// What a bookmark holds.
struct Bookmark {
    FileURL place;
    DirectoryIdentity identity;
};

/// The bytes of a bookmark: lines of text, described in docs/formats.md.
[[nodiscard]] std::string bookmarkText(const Bookmark& bookmark);

/// Reads what `bookmarkText` writes; none for anything else.
[[nodiscard]] std::optional<Bookmark> parseBookmark(std::string_view text);

}  // namespace gruk
