#pragma once

#include <cstdint>

#include "platform/foundation/file_url.h"

namespace gruk::tour {

/// Writes a store that holds a few patrols of `realm`, a little changed at the last one, and takes
/// at least so many bytes: the form of a realm with very many files. Returns how many it takes. By
/// the store's own writer; what stood at `store` goes.
std::uintmax_t makeLargeStore(const FileURL& store, const FileURL& realm, std::uintmax_t bytes);

}  // namespace gruk::tour
