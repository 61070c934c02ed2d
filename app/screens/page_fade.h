#pragma once

#include "app/theme/theme.h"

class QWidget;

namespace gruk {

/// Leaves a picture of `page` lying over its place, which vanishes over the time that a change of
/// page takes. Without motion there is none. The page may be replaced at once.
void fadeOut(Theme& theme, QWidget& page);

}  // namespace gruk
