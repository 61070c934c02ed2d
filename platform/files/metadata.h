#pragma once

#include <optional>
#include <string>

#include "platform/files/item_facts.h"
#include "platform/foundation/file_url.h"

/// Facts about one item by its path. Nothing is opened and no link is followed. Paths of any
/// length. Any thread; a mount whose server is gone blocks, so never the main thread.

namespace gruk {

/// The facts of the item at `url`. Throws `FileError`.
[[nodiscard]] ItemFacts itemFacts(const FileURL& url);

/// The value of the extended attribute `name` of the item itself, also of one that is a link.
/// Attributes are kept under the system's prefix for the user's own (`name` comes without it).
/// None when there is none, it cannot be read, is empty, or changes its length between asking
/// for it and reading it.
[[nodiscard]] std::optional<std::string> extendedAttribute(const FileURL& url,
                                                           const std::string& name);

}  // namespace gruk
