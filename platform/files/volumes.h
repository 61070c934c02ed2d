#pragma once

#include "platform/foundation/file_url.h"

namespace gruk {

/// The top of the volume that holds the item at `url` (of the link itself, for a link): where it is
/// mounted. An item that is such a top is its own. "/" where that cannot be found out. Any thread;
/// a mount whose server is gone blocks.
[[nodiscard]] FileURL mountPoint(const FileURL& url);

}  // namespace gruk
