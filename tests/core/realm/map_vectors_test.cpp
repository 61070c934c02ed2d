#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <map>

#include "core/realm/border_wobble.h"
#include "core/realm/chaikin_smoothing.h"
#include "core/realm/weighted_voronoi_map.h"
#include "tests/core/realm/realm_vectors.h"

// The map against the table that tests/data/map_vectors.py writes. Also built once for a processor
// that can multiply and add in one rounding: the figures must not change.

namespace gruk {

namespace {

using test::vectorDouble;

std::vector<test::VectorLine> lines(std::string_view kind)
{
    return test::vectorLines(kind, test::mapTable);
}

std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

struct SeedSet {
    std::vector<MapSeed> seeds;
    std::vector<std::string> ids;
    std::vector<MapPosition> positions;
};

std::map<std::string, SeedSet> seedSets()
{
    std::map<std::string, SeedSet> sets;
    for (const test::VectorLine& line : lines("seed")) {
        SeedSet& set = sets[line.fields.at(0)];
        set.ids.push_back(test::vectorPath(line.fields.at(1)));
        set.seeds.push_back({set.ids.back(), vectorDouble(line.fields.at(2))});
        set.positions.push_back({vectorDouble(line.fields.at(3)), vectorDouble(line.fields.at(4))});
    }
    return sets;
}

/// The owners of all cells, from runs of places in `ids`.
std::vector<std::string> owners(const test::VectorLine& line, const std::vector<std::string>& ids)
{
    std::vector<std::string> all;
    for (std::size_t i = 2; i < line.fields.size(); ++i) {
        const std::string& run = line.fields[i];
        const std::size_t star = run.find('*');
        const std::size_t length = star == std::string::npos ? 1 : std::stoul(run.substr(star + 1));
        all.insert(all.end(), length, ids.at(std::stoul(run)));
    }
    return all;
}

GridLoop points(const test::VectorLine& line, std::size_t from, std::size_t to)
{
    GridLoop loop;
    for (std::size_t i = from; i < to; i += 2) {
        loop.push_back({vectorDouble(line.fields.at(i)), vectorDouble(line.fields.at(i + 1))});
    }
    return loop;
}

void expectSameBits(const GridLoop& loop, const GridLoop& expected, int lineNumber)
{
    ASSERT_EQ(loop.size(), expected.size()) << "line " << lineNumber;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        ASSERT_EQ(bits(loop[i].x), bits(expected[i].x)) << "line " << lineNumber;
        ASSERT_EQ(bits(loop[i].y), bits(expected[i].y)) << "line " << lineNumber;
    }
}

/// The offsets of the centre of a cell of a map of 48 by 48 from a place.
MapPosition offset(const test::VectorLine& line, const MapPosition& from)
{
    const double x = (std::stod(line.fields.at(3)) + 0.5) / 48;
    const double y = (std::stod(line.fields.at(4)) + 0.5) / 48;
    return {x - from.x, y - from.y};
}

}  // namespace

TEST(MapVectors, seedsStandWhereTheTableHasThemToTheBit)
{
    const auto sets = seedSets();
    EXPECT_GE(sets.size(), 50U);
    for (const auto& [name, set] : sets) {
        const auto placed = WeightedVoronoiMap::positions(set.ids);
        for (std::size_t i = 0; i < set.ids.size(); ++i) {
            ASSERT_EQ(bits(placed.at(set.ids[i]).x), bits(set.positions[i].x)) << "set " << name;
            ASSERT_EQ(bits(placed.at(set.ids[i]).y), bits(set.positions[i].y)) << "set " << name;
        }
    }
}

TEST(MapVectors, eachCellIsWhoseTheTableSays)
{
    const auto sets = seedSets();
    std::size_t checked = 0;
    for (const test::VectorLine& line : lines("cells")) {
        const SeedSet& set = sets.at(line.fields.at(0));
        const int resolution = std::stoi(line.fields.at(1));
        const auto cells = WeightedVoronoiMap::partition(set.seeds, resolution);
        const auto expected = owners(line, set.ids);
        ASSERT_EQ(cells.size(), expected.size()) << "line " << line.number;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            ASSERT_EQ(cells[i].ownerID, expected[i]) << "line " << line.number << " cell " << i;
            ASSERT_EQ(cells[i].gridY * resolution + cells[i].gridX, static_cast<int>(i));
        }
        checked += resolution == 48 ? 1 : 0;
    }
    EXPECT_GE(checked, 50U);
}

TEST(MapVectors, noMultiplicationIsFusedWithAnAddition)
{
    for (const test::VectorLine& line : lines("fused")) {
        const std::string first = test::vectorPath(line.fields.at(0));
        const std::string second = test::vectorPath(line.fields.at(1));
        const double weight = vectorDouble(line.fields.at(2));
        const auto placed = WeightedVoronoiMap::positions({first, second});
        const MapPosition a = offset(line, placed.at(first));
        const MapPosition b = offset(line, placed.at(second));
        // With one rounding less the second would be nearer, whichever product keeps its own.
        ASSERT_LT(std::sqrt(std::fma(b.x, b.x, b.y * b.y)) / weight,
                  std::sqrt(std::fma(a.x, a.x, a.y * a.y)));
        ASSERT_LT(std::sqrt(std::fma(b.y, b.y, b.x * b.x)) / weight,
                  std::sqrt(std::fma(a.y, a.y, a.x * a.x)));

        const std::size_t cell = std::stoul(line.fields.at(4)) * 48 + std::stoul(line.fields.at(3));
        const MapSeed one{first, 1};
        const MapSeed other{second, weight};
        EXPECT_EQ(WeightedVoronoiMap::partition({one, other}, 48).at(cell).ownerID, first);
        EXPECT_EQ(WeightedVoronoiMap::partition({other, one}, 48).at(cell).ownerID, second);
    }
}

TEST(MapVectors, noCutCornerIsFused)
{
    // 0.75 a + 0.25 b of these is another double when the first product is not rounded.
    const double a = 0x1.269e08180e70dp+5;
    const double b = 0x1.19570c76885a4p+0;
    const double plain = 0x1.be526855efcabp+4;
    ASSERT_NE(std::fma(0.75, a, 0.25 * b), plain);
    EXPECT_EQ(bits(ChaikinSmoothing::smooth({{a, 0}, {b, 0}, {0, 0}}, 1).front().x), bits(plain));
}

TEST(MapVectors, bordersWobbleAsTheTableHasThemToTheBit)
{
    const auto all = lines("wobble");
    EXPECT_GE(all.size(), 300U);
    for (const test::VectorLine& line : all) {
        expectSameBits(BorderWobble::wobbled(points(line, 0, 2)), points(line, 2, 4), line.number);
    }
}

TEST(MapVectors, cornersAreCutAsTheTableHasThemToTheBit)
{
    for (const test::VectorLine& line : lines("smooth")) {
        const int iterations = std::stoi(line.fields.at(0));
        const std::size_t end = 2 + 2 * std::stoul(line.fields.at(1));
        expectSameBits(ChaikinSmoothing::smooth(points(line, 2, end), iterations),
                       points(line, end, line.fields.size()), line.number);
    }
}

}  // namespace gruk
