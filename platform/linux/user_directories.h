#pragma once

#include <optional>
#include <string_view>

#include "platform/foundation/file_url.h"

namespace gruk {

/// What the text of the user's directories file names for `key`, such as "XDG_DESKTOP_DIR": a place
/// below `home`, or an absolute one; a later line outdoes an earlier one. None when no line that
/// reads as it should names it. Pure; any thread.
[[nodiscard]] std::optional<FileURL> userDirectoryNamed(std::string_view key, std::string_view text,
                                                        const FileURL& home);

}  // namespace gruk
