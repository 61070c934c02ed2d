#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <QPointF>
#include <QRect>

#include "app/screens/territory_geometry.h"

namespace gruk {

/// A stretch of a line across a land.
struct FreeStretch {
    double left = 0;
    double right = 0;

    friend bool operator==(const FreeStretch&, const FreeStretch&) = default;
};

/// Which pixels of a map lie wholly in one land, as the lands are painted: smoothed, and without
/// what any border runs through. A value of its own, which does not keep the map; any thread.
class TerritoryRoom {
public:
    /// Of a map that is `side` pixels long. About a millisecond for the largest that is shown.
    TerritoryRoom(const TerritoryMap& map, double side);

    /// Where the label of `territory` belongs.
    [[nodiscard]] const QPointF& anchor(std::size_t territory) const
    {
        return anchors_.at(territory);
    }
    /// The pixels that its land lies in.
    [[nodiscard]] const QRect& bounds(std::size_t territory) const { return bounds_.at(territory); }

    /// The stretches of the land of `territory` that are free of any border all the way from `top`
    /// down to `bottom`: whatever stands in one of these rectangles is in that land and in no
    /// other. In pixels, from left to right.
    [[nodiscard]] std::vector<FreeStretch> free(std::size_t territory, double top,
                                                double bottom) const;

private:
    using Owner = std::uint16_t;

    void fill(const Territory& territory, std::size_t index);
    void takeBorders(const Territory& territory);
    void measureDepths();
    [[nodiscard]] std::size_t placeOf(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(length_)
               + static_cast<std::size_t>(x);
    }

    /// How many pixels there are along each side.
    int length_;
    /// The pixels of a cell.
    double cell_;
    std::vector<QPointF> anchors_;
    std::vector<QRect> bounds_;
    /// Row by row, whose land a pixel is: one more than its place, none being nobody's.
    std::vector<Owner> owners_;
    /// Of how many pixels from here downwards that is true.
    std::vector<std::uint16_t> depths_;
};

}  // namespace gruk
