#include "app/screens/territory_room.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/foundation/require.h"

namespace gruk {

namespace {

constexpr std::uint16_t nobody = 0;
/// In the painted land of two, as far as borders that were smoothed apart overlap.
constexpr std::uint16_t disputed = std::numeric_limits<std::uint16_t>::max();

/// The first pixel whose middle is not to the left of `x`, nor over it.
int middleFrom(double x)
{
    return static_cast<int>(std::ceil(x - 0.5));
}

/// Calls `piece(from, to)` for each straight piece of a territory's borders, in pixels.
template <typename Piece>
void forEachPiece(const Territory& territory, double cell, const Piece& piece)
{
    for (const GridLoop& loop : territory.borders) {
        for (std::size_t index = 0; index < loop.size(); ++index) {
            const GridPoint& from = loop[index];
            const GridPoint& to = loop[(index + 1) % loop.size()];
            piece(GridPoint{from.x * cell, from.y * cell}, GridPoint{to.x * cell, to.y * cell});
        }
    }
}

}  // namespace

TerritoryRoom::TerritoryRoom(const TerritoryMap& map, double side)
    : length_(static_cast<int>(std::ceil(std::max(side, 0.0)))), cell_(side / mapResolution),
      owners_(placeOf(0, length_), nobody), depths_(owners_.size())
{
    GRUK_REQUIRE(map.territories.size() < disputed, "more lands than a map has cells");
    for (std::size_t index = 0; index < map.territories.size(); ++index) {
        const GridPoint& anchor = map.territories[index].anchor;
        anchors_.emplace_back(anchor.x * cell_, anchor.y * cell_);
        fill(map.territories[index], index);
    }
    if (length_ == 0) {
        return;
    }
    for (const Territory& territory : map.territories) {
        takeBorders(territory);
    }
    measureDepths();
}

void TerritoryRoom::fill(const Territory& territory, std::size_t index)
{
    // Where each row of middles of pixels crosses the border: by the even-odd rule, as the land is
    // painted.
    std::vector<std::vector<double>> crossings(static_cast<std::size_t>(length_));
    forEachPiece(territory, cell_, [&](const GridPoint& a, const GridPoint& b) {
        const auto& [from, to] = a.y <= b.y ? std::pair(a, b) : std::pair(b, a);
        const int end = std::min(middleFrom(to.y), length_);
        for (int y = std::max(middleFrom(from.y), 0); y < end; ++y) {
            crossings[static_cast<std::size_t>(y)].push_back(
                from.x + (to.x - from.x) * (y + 0.5 - from.y) / (to.y - from.y));
        }
    });
    QRect bounds;
    for (int y = 0; y < length_; ++y) {
        std::vector<double>& row = crossings[static_cast<std::size_t>(y)];
        std::ranges::sort(row);
        for (std::size_t number = 0; number + 1 < row.size(); number += 2) {
            const int left = std::max(middleFrom(row[number]), 0);
            const int end = std::min(middleFrom(row[number + 1]), length_);
            for (int x = left; x < end; ++x) {
                Owner& owner = owners_[placeOf(x, y)];
                owner = owner == nobody ? static_cast<Owner>(index + 1) : disputed;
            }
            if (left < end) {
                bounds |= QRect(left, y, end - left, 1);
            }
        }
    }
    bounds_.push_back(bounds);
}

void TerritoryRoom::takeBorders(const Territory& territory)
{
    const auto pixel = [&](double coordinate) {
        return std::clamp(static_cast<int>(std::floor(coordinate)), 0, length_ - 1);
    };
    // A piece is hardly longer than a pixel: what it is around is what it runs through.
    forEachPiece(territory, cell_, [&](const GridPoint& from, const GridPoint& to) {
        const auto [left, right] = std::minmax(from.x, to.x);
        const auto [top, bottom] = std::minmax(from.y, to.y);
        for (int y = pixel(top); y <= pixel(bottom); ++y) {
            for (int x = pixel(left); x <= pixel(right); ++x) {
                owners_[placeOf(x, y)] = nobody;
            }
        }
    });
}

void TerritoryRoom::measureDepths()
{
    for (int y = length_ - 1; y >= 0; --y) {
        for (int x = 0; x < length_; ++x) {
            const std::size_t here = placeOf(x, y);
            const bool goesOn = y + 1 < length_ && owners_[here] == owners_[placeOf(x, y + 1)];
            const int below = goesOn ? depths_[placeOf(x, y + 1)] : 0;
            depths_[here] = static_cast<std::uint16_t>(below + 1);
        }
    }
}

std::vector<FreeStretch> TerritoryRoom::free(std::size_t territory, double top, double bottom) const
{
    const QRect& bounds = bounds_.at(territory);
    const int first = static_cast<int>(std::floor(top));
    const int height = static_cast<int>(std::ceil(bottom)) - first;
    std::vector<FreeStretch> stretches;
    if (first < bounds.top() || first + height > bounds.bottom() + 1) {
        return stretches;
    }
    bool goesOn = false;
    for (int x = bounds.left(); x <= bounds.right(); ++x) {
        const std::size_t here = placeOf(x, first);
        const bool isFree = owners_[here] == territory + 1 && depths_[here] >= height;
        if (isFree && goesOn) {
            stretches.back().right = x + 1;
        } else if (isFree) {
            stretches.push_back({static_cast<double>(x), x + 1.0});
        }
        goesOn = isFree;
    }
    return stretches;
}

}  // namespace gruk
