#pragma once

#include "platform/foundation/file_url.h"

namespace gruk {

/// Where `url` leads when every link on the way is followed. What lies in the user's home stays
/// under the name that home goes by, also where that is a link. `url` as it is when no link is on
/// the way, or it leads nowhere. Any thread; a mount whose server is gone blocks.
[[nodiscard]] FileURL realPlace(const FileURL& url);

}  // namespace gruk
