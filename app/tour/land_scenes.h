#pragma once

#include <QCoro/QCoroTask>

#include "app/tour/stage.h"
#include "app/tour/tour.h"

namespace gruk::tour {

/// The map of all realms, from none to fifty of them, and the editor of a shield. The realms that
/// were granted before are granted again at the end.
[[nodiscard]] QCoro::Task<> showLand(Tour& tour, Stage& stage);

}  // namespace gruk::tour
