#pragma once

#include <QString>

#include "app/theme/label.h"

class QLayout;

namespace gruk {

/// The title of a section of a page.
[[nodiscard]] Label* sectionTitle(Theme& theme, const QString& text);

/// A quiet line of explanation that wraps.
[[nodiscard]] Label* sectionNote(Theme& theme, const QString& text);

/// Takes every widget out of a layout; they end when the event loop is back in charge.
void removeRows(QLayout& layout);

}  // namespace gruk
