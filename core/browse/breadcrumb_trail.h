#pragma once

#include <optional>
#include <vector>

#include "platform/foundation/file_url.h"

/// The path bar over a folder. Pure; any thread.
namespace gruk::BreadcrumbTrail {

/// The directories from `root` down to `current`, both ends included; one if they are the same.
/// Empty when either is none or `current` does not lie at or below `root`: whole components are
/// compared, of the standardised forms.
[[nodiscard]] std::vector<FileURL> trail(const std::optional<FileURL>& root,
                                         const std::optional<FileURL>& current);

}  // namespace gruk::BreadcrumbTrail
