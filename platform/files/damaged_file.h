#pragma once

#include "platform/foundation/file_url.h"

namespace gruk {

/// Renames a file of the program's own that makes no sense, within its folder, to "{name}.damaged",
/// or "{name}.damaged.2" and so on when that is taken, and tells where it is then. Of a link the
/// link itself is renamed. Throws `FileError`; the file is then where it was.
FileURL setDamagedFileAside(const FileURL& file);

}  // namespace gruk
