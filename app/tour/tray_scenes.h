#pragma once

#include <QCoro/QCoroTask>

#include "app/tour/stage.h"
#include "app/tour/tour.h"

namespace gruk::tour {

/// The tray item's panel, and what tidies: the Desktop's section, the organise sheet and the card
/// of a realm's automations. Leaves another realm open than it found.
QCoro::Task<> showTray(Tour& tour, Stage& stage);

}  // namespace gruk::tour
