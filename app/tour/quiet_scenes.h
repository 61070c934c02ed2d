#pragma once

#include <QCoro/QCoroTask>

#include "app/tour/stage.h"
#include "app/tour/tour.h"

namespace gruk::tour {

/// Takes the pictures of the welcome page, the walkthrough and the settings.
QCoro::Task<> showQuiet(Tour& tour, Stage& stage);

}  // namespace gruk::tour
