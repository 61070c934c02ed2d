#pragma once

#include <optional>

#include "app/model/app_model.h"
#include "app/screens/status_banner.h"

namespace gruk {

/// What can be taken back now: the Trash before the Desktop before an organise. None when nothing
/// can. `model` must live as long as the offer.
[[nodiscard]] std::optional<BannerAction> undoOffer(AppModel& model);

}  // namespace gruk
