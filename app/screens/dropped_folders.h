#pragma once

#include <string_view>
#include <vector>

#include <QString>

#include "platform/foundation/file_url.h"

namespace gruk {

/// The local places in a dropped "text/uri-list" (RFC 2483: one address a line, "#" for remarks),
/// their bytes as they were, each taken for a folder: granting tells whether it is one.
[[nodiscard]] std::vector<FileURL> droppedFolders(std::string_view uriList);

/// What letting go of these, never none, would do.
[[nodiscard]] QString dropSentence(const std::vector<FileURL>& places);

}  // namespace gruk
