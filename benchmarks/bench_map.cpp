#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/realm/border_wobble.h"
#include "core/realm/chaikin_smoothing.h"
#include "core/realm/marching_squares_contour.h"
#include "core/realm/seeded_generator.h"
#include "core/realm/weighted_voronoi_map.h"

// bench_map: what the map of 1,000 realms costs, each step as a ratio to a straight loop over all
// cells and seeds in the same round, and the whole map of 100 realms against one frame of a 60 Hz
// display. Progress goes to the error stream, one line of JSON, of medians, to the output.

namespace gruk::benchmarks {

namespace {

constexpr int resolution = 48;
constexpr int rounds = 31;
constexpr double frameSeconds = 1.0 / 60;

using Borders = std::map<std::string, std::vector<GridLoop>>;

/// Realms with paths as users have them, from a few bytes to 16 TB.
std::vector<MapSeed> realms(int count)
{
    SeededGenerator draw(2026);
    std::vector<MapSeed> seeds;
    for (int i = 0; i < count; ++i) {
        RealmSummary realm;
        realm.path = "/home/someone/folders/realm number " + std::to_string(i);
        realm.totalBytes = static_cast<Bytes>(draw.next() >> (20 + draw.bounded(40)));
        seeds.push_back(WeightedVoronoiMap::seed(realm));
    }
    return seeds;
}

/// The loop that everything is measured against: for each cell the nearest of all seeds.
std::vector<std::size_t> plainLoop(const std::vector<MapSeed>& seeds,
                                   const std::vector<MapPosition>& places)
{
    std::vector<std::size_t> owners;
    owners.reserve(std::size_t{resolution} * resolution);
    for (int row = 0; row < resolution; ++row) {
        for (int column = 0; column < resolution; ++column) {
            const double x = (column + 0.5) / resolution;
            const double y = (row + 0.5) / resolution;
            std::size_t owner = 0;
            double least = std::numeric_limits<double>::max();
            for (std::size_t i = 0; i < seeds.size(); ++i) {
                const double dx = x - places[i].x;
                const double dy = y - places[i].y;
                const double distance = std::sqrt(dx * dx + dy * dy) / seeds[i].weight;
                if (distance < least) {
                    owner = i;
                    least = distance;
                }
            }
            owners.push_back(owner);
        }
    }
    return owners;
}

std::vector<MapPosition> placesOf(const std::vector<MapSeed>& seeds)
{
    std::vector<std::string> ids;
    for (const MapSeed& seed : seeds) {
        ids.push_back(seed.id);
    }
    const auto positions = WeightedVoronoiMap::positions(ids);
    std::vector<MapPosition> places;
    for (const std::string& id : ids) {
        places.push_back(positions.at(id));
    }
    return places;
}

Borders changed(const Borders& borders, GridLoop (*change)(const GridLoop&))
{
    Borders result;
    for (const auto& [owner, loops] : borders) {
        std::vector<GridLoop>& own = result[owner];
        for (const GridLoop& loop : loops) {
            own.push_back(change(loop));
        }
    }
    return result;
}

GridLoop smoothed(const GridLoop& loop)
{
    return ChaikinSmoothing::smooth(loop, 3);
}

std::size_t pointsOf(const Borders& borders)
{
    std::size_t points = 0;
    for (const auto& [owner, loops] : borders) {
        for (const GridLoop& loop : loops) {
            points += loop.size();
        }
    }
    return points;
}

/// Seconds of each step in one round.
using Round = std::map<std::string, double>;

/// Runs `step` and keeps its seconds under `name`; returns what it made.
template <typename Step>
auto timed(Round& round, const std::string& name, Step step)
{
    const auto start = std::chrono::steady_clock::now();
    auto result = step();
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    round[name] = spent.count();
    return result;
}

/// The cells that the loop and the map see alike: all but those that a seed stands in.
void requireSame(const std::vector<TerritoryCell>& cells, const std::vector<std::size_t>& owners,
                 const std::vector<MapSeed>& seeds)
{
    std::size_t different = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        different += cells[i].ownerID != seeds[owners[i]].id ? 1 : 0;
    }
    if (cells.size() != owners.size() || different > seeds.size()) {
        throw std::runtime_error("the map is not what a plain loop finds");
    }
}

Round measureSteps(const std::vector<MapSeed>& seeds, const std::vector<MapPosition>& places)
{
    Round round;
    const auto owners = timed(round, "plain", [&] { return plainLoop(seeds, places); });
    const auto cells =
        timed(round, "partition", [&] { return WeightedVoronoiMap::partition(seeds, resolution); });
    requireSame(cells, owners, seeds);
    const OwnerGrid grid = WeightedVoronoiMap::ownerGrid(cells, resolution);
    const Borders borders = timed(
        round, "contours", [&] { return MarchingSquaresContour::contours(grid, resolution); });
    const Borders wobbled =
        timed(round, "wobble", [&] { return changed(borders, BorderWobble::wobbled); });
    const Borders smooth = timed(round, "smooth", [&] { return changed(wobbled, smoothed); });
    round["points"] = static_cast<double>(pointsOf(borders));
    if (pointsOf(smooth) != 8 * pointsOf(borders)) {
        throw std::runtime_error("a border was not smoothed");
    }
    return round;
}

/// From the seeds to the lines that are drawn.
std::size_t drawnPoints(const std::vector<MapSeed>& seeds)
{
    const OwnerGrid grid =
        WeightedVoronoiMap::ownerGrid(WeightedVoronoiMap::partition(seeds, resolution), resolution);
    const Borders borders = MarchingSquaresContour::contours(grid, resolution);
    return pointsOf(changed(changed(borders, BorderWobble::wobbled), smoothed));
}

double median(const std::vector<Round>& measured, const std::function<double(const Round&)>& value)
{
    std::vector<double> values;
    values.reserve(measured.size());
    for (const Round& round : measured) {
        values.push_back(value(round));
    }
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print(const std::vector<Round>& measured)
{
    const auto of = [&](const std::string& name) {
        return median(measured, [&](const Round& round) { return round.at(name); });
    };
    std::printf("{\"realms\":1000,\"points\":%.0f,\"plain_milliseconds\":%.3f", of("points"),
                of("plain") * 1'000);
    for (const std::string step : {"partition", "contours", "wobble", "smooth"}) {
        std::printf(",\"%s_over_plain\":%.4f", step.c_str(),
                    median(measured,
                           [&](const Round& round) { return round.at(step) / round.at("plain"); }));
    }
    std::printf(",\"map_of_100_milliseconds\":%.3f,\"map_of_100_over_frame\":%.4f}\n",
                of("map") * 1'000, of("map") / frameSeconds);
}

int run()
{
    const std::vector<MapSeed> many = realms(1'000);
    const std::vector<MapPosition> places = placesOf(many);
    const std::vector<MapSeed> usual = realms(100);
    std::vector<Round> measured;
    for (int number = 0; number <= rounds; ++number) {
        Round round = measureSteps(many, places);
        if (timed(round, "map", [&] { return drawnPoints(usual); }) == 0) {
            throw std::runtime_error("an empty map");
        }
        std::fprintf(stderr, "\r%s %d of %d", number == 0 ? "warming up," : "round", number,
                     rounds);
        if (number > 0) {
            measured.push_back(round);
        }
    }
    std::fprintf(stderr, "\n");
    print(measured);
    return 0;
}

}  // namespace

}  // namespace gruk::benchmarks

int main()
{
    try {
        return gruk::benchmarks::run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_map: %s\n", error.what());
        return 1;
    }
}
