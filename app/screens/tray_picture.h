#pragma once

#include <QIcon>

#include "app/theme/theme.h"

namespace gruk {

/// The program's symbol for a tray, in the ink of the theme and with an edge of its paper, so that
/// it can be told on a panel of any colour.
[[nodiscard]] QIcon trayPicture(const Theme& theme);

}  // namespace gruk
