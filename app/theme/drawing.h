#pragma once

#include <optional>
#include <vector>

#include <QPainterPath>

#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// How a line is drawn. Lengths in logical pixels, dashes and gaps in turn.
struct DrawingStroke {
    double width = 1;
    Qt::PenCapStyle cap = Qt::FlatCap;
    Qt::PenJoinStyle join = Qt::MiterJoin;
    double miterLimit = 10;
    std::vector<double> dashes = {};
};

/// One step of a drawing: an area, filled by the rule of its path, or a line along it.
struct DrawingStep {
    QPainterPath path;
    Role role = Role::ink;
    double opacity = Strength::full;
    /// Nothing is drawn outside it; an empty one cuts nothing off.
    QPainterPath clip = {};
    /// A line along the path; none fills it.
    std::optional<DrawingStroke> stroke = {};
};

/// What is drawn, each step over the ones before. Shapes and roles only: the theme in force decides
/// the colours when it is painted.
using Drawing = std::vector<DrawingStep>;

/// Paints every step where it stands, smooth. Leaves `painter` as it was.
void paintDrawing(QPainter& painter, const Drawing& drawing, const Theme& theme);

/// Writes one line from the left of `room` in its middle, by the painter's font alone: letters that
/// come out of another font neither lift nor lower it.
void drawLine(QPainter& painter, const QRect& room, const QString& text);

}  // namespace gruk
