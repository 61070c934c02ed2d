#pragma once

#include <QCoro/QCoroTask>

#include "app/tour/stage.h"
#include "app/tour/tour.h"

namespace gruk::tour {

/// The Browse page: rows, sizes on their way, a deep path, and every kind of nothing. Leaves
/// another realm open than it found.
QCoro::Task<> showBrowse(Tour& tour, Stage& stage);

}  // namespace gruk::tour
