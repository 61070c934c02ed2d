#include "app/screens/territory_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "core/realm/border_wobble.h"
#include "core/realm/chaikin_smoothing.h"
#include "core/realm/marching_squares_contour.h"
#include "core/realm/realm_identity.h"
#include "core/realm/weighted_voronoi_map.h"
#include "platform/foundation/require.h"

namespace gruk {

namespace {

constexpr int smoothings = 3;
constexpr double borderStrength = 0.4;
constexpr DrawingStroke border = {.width = 1.5, .cap = Qt::RoundCap, .join = Qt::RoundJoin};

/// The shoelace formula.
double areaOf(const GridLoop& loop)
{
    double twice = 0;
    for (std::size_t index = 0; index < loop.size(); ++index) {
        const GridPoint& a = loop[index];
        const GridPoint& b = loop[(index + 1) % loop.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return std::abs(twice) / 2;
}

GridPoint middleOf(const GridLoop& loop)
{
    GridPoint sum;
    for (const GridPoint& point : loop) {
        sum.x += point.x;
        sum.y += point.y;
    }
    const auto count = static_cast<double>(loop.size());
    return {sum.x / count, sum.y / count};
}

Territory territoryOf(std::size_t summary, const std::vector<GridLoop>& loops)
{
    Territory territory;
    territory.summary = summary;
    territory.anchor = anchorOf(loops);
    for (const GridLoop& loop : loops) {
        territory.borders.push_back(
            ChaikinSmoothing::smooth(BorderWobble::wobbled(loop), smoothings));
    }
    return territory;
}

/// Smoothing takes the corners off where three lands meet, and would let the sea shine through.
/// What lies under all land has the colour of a border there; at the coast the gaps stay open.
QPainterPath gaps(double side)
{
    const double cell = side / mapResolution;
    QPainterPath path;
    path.addRect(cell / 2, cell / 2, side - cell, side - cell);
    return path;
}

/// How far `to` lies ahead of `from` in a direction, and how far aside.
struct Course {
    double ahead = 0;
    double aside = 0;
};

Course course(const GridPoint& from, const GridPoint& to, MapDirection direction)
{
    const double x = to.x - from.x;
    const double y = to.y - from.y;
    switch (direction) {
    case MapDirection::left:
        return {-x, std::abs(y)};
    case MapDirection::right:
        return {x, std::abs(y)};
    case MapDirection::up:
        return {-y, std::abs(x)};
    case MapDirection::down:
        return {y, std::abs(x)};
    }
    return {};
}

}  // namespace

GridPoint anchorOf(const std::vector<GridLoop>& loops)
{
    GRUK_REQUIRE(!loops.empty(), "land without a border");
    // The first of the largest.
    return middleOf(*std::ranges::max_element(loops, {}, areaOf));
}

TerritoryMap territoryMap(const std::vector<RealmSummary>& summaries)
{
    std::vector<MapSeed> seeds;
    seeds.reserve(summaries.size());
    for (const RealmSummary& summary : summaries) {
        seeds.push_back(WeightedVoronoiMap::seed(summary));
    }
    const std::vector<TerritoryCell> cells = WeightedVoronoiMap::partition(seeds, mapResolution);
    if (cells.empty()) {
        return {};
    }
    const OwnerGrid grid = WeightedVoronoiMap::ownerGrid(cells, mapResolution);
    const auto contours = MarchingSquaresContour::contours(grid, mapResolution);

    TerritoryMap map;
    std::map<std::string_view, std::uint32_t> places;
    for (std::size_t summary = 0; summary < summaries.size(); ++summary) {
        const auto loops = contours.find(summaries[summary].path);
        if (loops != contours.end() && !places.contains(loops->first)) {
            places.emplace(loops->first, static_cast<std::uint32_t>(map.territories.size()));
            map.territories.push_back(territoryOf(summary, loops->second));
        }
    }
    map.owners.reserve(cells.size());
    for (const std::vector<std::string>& column : grid) {
        for (const std::string& owner : column) {
            map.owners.push_back(places.at(owner));
        }
    }
    return map;
}

std::optional<std::size_t> territoryAt(const TerritoryMap& map, const QPointF& point, double side)
{
    const double x = std::floor(point.x() * mapResolution / side);
    const double y = std::floor(point.y() * mapResolution / side);
    // Not the opposite, which a side of nothing would pass.
    if (map.owners.empty() || !(x >= 0 && x < mapResolution && y >= 0 && y < mapResolution)) {
        return std::nullopt;
    }
    return map.owners[static_cast<std::size_t>(x * mapResolution + y)];
}

QPainterPath territoryPath(const Territory& territory, double side)
{
    const double scale = side / mapResolution;
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    for (const GridLoop& loop : territory.borders) {
        path.moveTo(loop.front().x * scale, loop.front().y * scale);
        for (const GridPoint& point : loop) {
            path.lineTo(point.x * scale, point.y * scale);
        }
        path.closeSubpath();
    }
    return path;
}

Drawing territoryDrawing(const TerritoryMap& map, const std::vector<RealmSummary>& summaries,
                         double side)
{
    if (map.territories.empty()) {
        return {};
    }
    Drawing drawing = {{.path = gaps(side), .role = Role::ink, .opacity = borderStrength}};
    Drawing borders;
    for (const Territory& territory : map.territories) {
        GRUK_REQUIRE(territory.summary < summaries.size(), "a map of other realms");
        const RealmIdentity identity = RealmIdentity::derive(summaries[territory.summary].path);
        const QPainterPath path = territoryPath(territory, side);
        drawing.push_back({.path = path, .role = roleOf(identity.primary)});
        borders.push_back(
            {.path = path, .role = Role::ink, .opacity = borderStrength, .stroke = border});
    }
    drawing.insert(drawing.end(), borders.begin(), borders.end());
    return drawing;
}

std::optional<std::size_t> neighbour(const TerritoryMap& map, std::size_t from,
                                     MapDirection direction)
{
    const GridPoint& start = map.territories.at(from).anchor;
    std::optional<std::size_t> nearest;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t index = 0; index < map.territories.size(); ++index) {
        const auto [ahead, aside] = course(start, map.territories[index].anchor, direction);
        const double distance = std::hypot(ahead, aside);
        if (ahead > 0 && aside <= ahead && distance < least) {
            nearest = index;
            least = distance;
        }
    }
    return nearest;
}

}  // namespace gruk
