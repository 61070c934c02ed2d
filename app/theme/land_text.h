#pragma once

#include <QFont>
#include <QString>

#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// The two lines of a territory on the map.
enum class LandLine { name, size };

[[nodiscard]] QFont landFont(const Theme& theme, LandLine line);

/// The room that a line takes, with the outline that keeps it readable on any land.
[[nodiscard]] QSizeF landTextSize(const Theme& theme, LandLine line, const QString& text);

/// Paints a line centred on a point, in the paper of cards with a cheap outline in ink.
void paintLandText(QPainter& painter, const QPointF& centre, const QString& text, LandLine line,
                   const Theme& theme);

}  // namespace gruk
