#include "core/realm/marching_squares_contour.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "platform/foundation/require.h"

namespace gruk::MarchingSquaresContour {

namespace {

/// A corner of cells as one number, column by column.
using Corner = std::uint32_t;
/// An owner by the order of appearance; 0 is nobody.
using Owner = std::uint32_t;

struct Edge {
    Corner from;
    Corner to;
};

/// The owners of the cells as numbers, with a rim of nobody around, so that each cell has four
/// neighbours.
class OwnerTable {
public:
    OwnerTable(const OwnerGrid& grid, std::size_t size) : pitch_(size + 2), owners_(pitch_ * pitch_)
    {
        std::unordered_map<std::string_view, Owner> numbers{{"", 0}};
        std::string_view former;
        Owner number = 0;
        for (std::size_t x = 0; x < size; ++x) {
            GRUK_REQUIRE(grid[x].size() == size, "a column of the map is not as long as the map");
            for (std::size_t y = 0; y < size; ++y) {
                // Neighbours mostly have one owner.
                if (grid[x][y] != former) {
                    former = grid[x][y];
                    const auto next = static_cast<Owner>(numbers.size());
                    number = numbers.try_emplace(former, next).first->second;
                    if (number == next) {
                        names_.push_back(former);
                    }
                }
                owners_[(x + 1) * pitch_ + y + 1] = number;
            }
        }
    }

    /// Where the cell stands, and how far its neighbours in a row are from there; those in a
    /// column are next to it.
    [[nodiscard]] std::size_t at(std::size_t x, std::size_t y) const
    {
        return (x + 1) * pitch_ + y + 1;
    }
    [[nodiscard]] std::size_t pitch() const { return pitch_; }
    [[nodiscard]] Owner operator[](std::size_t at) const { return owners_[at]; }
    /// The texts of the owners from number 1 on.
    [[nodiscard]] const std::vector<std::string_view>& names() const { return names_; }

private:
    std::size_t pitch_;
    std::vector<Owner> owners_;
    std::vector<std::string_view> names_;
};

/// The edges of each owner, from number 1 on, in the order in which the cells are visited.
std::vector<std::vector<Edge>> collectEdges(const OwnerTable& owners, std::size_t size)
{
    std::vector<std::vector<Edge>> edges(owners.names().size());
    const std::size_t corners = size + 1;
    for (std::size_t x = 0; x < size; ++x) {
        for (std::size_t y = 0; y < size; ++y) {
            const std::size_t at = owners.at(x, y);
            const Owner owner = owners[at];
            if (owner == 0) {
                continue;
            }
            const auto topLeft = static_cast<Corner>(x * corners + y);
            const auto topRight = static_cast<Corner>(topLeft + corners);
            const Corner bottomRight = topRight + 1;
            const Corner bottomLeft = topLeft + 1;
            std::vector<Edge>& own = edges[owner - 1];
            if (owners[at - 1] != owner) {
                own.push_back({topLeft, topRight});
            }
            if (owners[at + owners.pitch()] != owner) {
                own.push_back({topRight, bottomRight});
            }
            if (owners[at + 1] != owner) {
                own.push_back({bottomRight, bottomLeft});
            }
            if (owners[at - owners.pitch()] != owner) {
                own.push_back({bottomLeft, topLeft});
            }
        }
    }
    return edges;
}

/// Where one owner's edges lead from each corner: two at most, the older one first. One table for
/// all owners, empty between them, since every edge that is put in is taken out.
class EdgeTable {
public:
    explicit EdgeTable(std::size_t corners) : ends_(corners * corners, {none, none}) {}

    void add(Edge edge)
    {
        auto& [first, second] = ends_[edge.from];
        GRUK_REQUIRE(second == none, "three edges of one owner leave a corner");
        (first == none ? first : second) = edge.to;
    }
    /// Whether `edge` is still there and the older one at its corner.
    [[nodiscard]] bool isNext(Edge edge) const { return ends_[edge.from][0] == edge.to; }
    /// Takes out the older edge. As many edges of an owner lead to a corner as from it, so there
    /// is one wherever a border leads.
    Corner take(Corner corner)
    {
        auto& [first, second] = ends_[corner];
        GRUK_REQUIRE(first != none, "a border of the map does not close");
        const Corner end = first;
        first = second;
        second = none;
        return end;
    }

private:
    static constexpr Corner none = 0xffff'ffff;
    std::vector<std::array<Corner, 2>> ends_;
};

std::vector<GridLoop> chain(const std::vector<Edge>& edges, std::size_t corners, EdgeTable& table)
{
    for (const Edge& edge : edges) {
        table.add(edge);
    }
    std::vector<GridLoop> loops;
    for (const Edge& edge : edges) {
        if (!table.isNext(edge)) {
            continue;
        }
        GridLoop& loop = loops.emplace_back();
        Corner current = edge.from;
        do {
            loop.push_back(
                {static_cast<double>(current / corners), static_cast<double>(current % corners)});
            current = table.take(current);
        } while (current != edge.from);
    }
    return loops;
}

}  // namespace

std::map<std::string, std::vector<GridLoop>> contours(const OwnerGrid& grid, int size)
{
    if (size < 1 || grid.size() != static_cast<std::size_t>(size)) {
        return {};
    }
    const OwnerTable owners(grid, grid.size());
    const std::vector<std::vector<Edge>> edges = collectEdges(owners, grid.size());
    const std::size_t corners = grid.size() + 1;
    EdgeTable table(corners);
    std::map<std::string, std::vector<GridLoop>> loops;
    for (std::size_t owner = 0; owner < edges.size(); ++owner) {
        loops.emplace(owners.names()[owner], chain(edges[owner], corners, table));
    }
    return loops;
}

}  // namespace gruk::MarchingSquaresContour
