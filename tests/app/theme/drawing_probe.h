#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "app/theme/drawing.h"

namespace gruk::test {

/// A colour by what it is for, and how strongly it covers.
struct Colour {
    Role role = Role::ink;
    double opacity = 1;

    friend bool operator==(const Colour&, const Colour&) = default;
};

/// Asks a drawing what stands at a point, without painting it.
class Probe {
public:
    explicit Probe(Drawing drawing) : drawing_(std::move(drawing))
    {
        for (const DrawingStep& step : drawing_) {
            areas_.push_back(step.stroke ? lineOf(step) : step.path);
        }
    }

    /// What is seen at a point, the uppermost first, down to the first that hides the rest.
    [[nodiscard]] std::vector<Colour> coloursAt(const QPointF& point) const
    {
        std::vector<Colour> seen;
        for (std::size_t index = drawing_.size(); index-- > 0;) {
            const DrawingStep& step = drawing_[index];
            const bool isClipped = !step.clip.isEmpty() && !step.clip.contains(point);
            if (!isClipped && areas_[index].contains(point)) {
                seen.push_back({step.role, step.opacity});
                if (step.opacity == 1) {
                    break;
                }
            }
        }
        return seen;
    }

private:
    [[nodiscard]] static QPainterPath lineOf(const DrawingStep& step)
    {
        QPainterPathStroker stroker;
        stroker.setWidth(step.stroke->width);
        stroker.setCapStyle(step.stroke->cap);
        stroker.setJoinStyle(step.stroke->join);
        stroker.setMiterLimit(step.stroke->miterLimit);
        // The default follows a curve to a quarter of a pixel only.
        stroker.setCurveThreshold(0.005);
        return stroker.createStroke(step.path);
    }

    Drawing drawing_;
    std::vector<QPainterPath> areas_;
};

[[nodiscard]] inline bool isSame(const Drawing& a, const Drawing& b)
{
    return std::ranges::equal(a, b, [](const DrawingStep& one, const DrawingStep& other) {
        return one.path == other.path && one.role == other.role && one.opacity == other.opacity
               && one.clip == other.clip && one.stroke.has_value() == other.stroke.has_value();
    });
}

}  // namespace gruk::test
