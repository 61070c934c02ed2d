#pragma once

#include <optional>

#include "platform/foundation/file_url.h"

/// The places that the desktop names. Read from the environment and the user's directories file
/// at each call; nothing is created.

namespace gruk {

/// The user's home: `HOME` when it is an absolute path, else the account's entry.
[[nodiscard]] FileURL homeDirectory();

/// `XDG_DATA_HOME` when it is an absolute path, else ".local/share" in the home; none when there
/// is no home to be found.
[[nodiscard]] std::optional<FileURL> applicationSupportDirectory();

/// `XDG_CONFIG_HOME` when it is an absolute path, else ".config" in the home.
[[nodiscard]] FileURL configurationDirectory();

/// `TMPDIR` when it is an absolute path, else the system's.
[[nodiscard]] FileURL temporaryDirectory();

/// What the user's directories file names, else "Desktop" in the home. May be the home itself.
[[nodiscard]] FileURL desktopDirectory();

/// The same for "Downloads"; none when the file turns it off by naming the home.
[[nodiscard]] std::optional<FileURL> downloadsDirectory();

/// Where the programs of the machine are listed; none when there is no such folder.
[[nodiscard]] std::optional<FileURL> applicationsDirectory();

}  // namespace gruk
