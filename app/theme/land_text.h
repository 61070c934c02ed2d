#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// The two lines of a territory on the map.
enum class LandLine { name, size };

[[nodiscard]] QFont landFont(const Theme& theme, LandLine line);

/// What is drawn of a line, with the outline that keeps it readable on any land, about the point
/// that it is centred on.
[[nodiscard]] QRectF landTextInk(const Theme& theme, LandLine line, const QString& text);

/// Paints a line centred on a point, in the paper of cards with a cheap outline in ink.
void paintLandText(QPainter& painter, const QPointF& centre, const QString& text, LandLine line,
                   const Theme& theme);

}  // namespace gruk
