#pragma once

#include <optional>

#include "app/screens/confirmation_dialog.h"

namespace gruk {

class AppModel;

/// What is asked before the Desktop is tidied; yes means `tidyDesktop()`. None without access to
/// the Desktop: then that is to be asked for. Counts the items on the Desktop at each call.
[[nodiscard]] std::optional<Confirmation> hoardConfirmation(const AppModel& model);

}  // namespace gruk
