#pragma once

#include <optional>

#include "app/model/app_model.h"
#include "app/screens/status_banner.h"

namespace gruk {

/// What can be taken back now: the Trash before the Desktop before an organise. None when nothing
/// can. With no realm open to take an organise back in, the offer opens the one that was organised.
/// `model` must live as long as the offer.
[[nodiscard]] std::optional<BannerAction> undoOffer(AppModel& model);

/// Whether the screen tells of what `undoOffer` would take back, or that it could not be: what
/// nobody sees any more must not move files at the press of two keys.
[[nodiscard]] bool tellsWhatCanBeUndone(const AppModel& model);

}  // namespace gruk
