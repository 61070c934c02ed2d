#include "core/browse/sort_order.h"

#include <algorithm>
#include <functional>

#include "platform/foundation/require.h"

namespace gruk {

namespace {

/// Stable by the number itself: sorting numbers beside each other is several times as fast as
/// sorting positions by what they stand for.
template <typename Value, typename Less>
std::vector<std::uint32_t> arrangedBy(std::span<const SortKey> rows, Value value, Less less)
{
    struct Row {
        decltype(value(rows.front())) key;
        std::uint32_t position;
    };
    std::vector<Row> order;
    order.reserve(rows.size());
    for (std::uint32_t i = 0; i < rows.size(); ++i) {
        order.push_back({value(rows[i]), i});
    }
    std::sort(order.begin(), order.end(), [&](const Row& a, const Row& b) {
        if (less(a.key, b.key) || less(b.key, a.key)) {
            return less(a.key, b.key);
        }
        return a.position < b.position;
    });
    std::vector<std::uint32_t> positions;
    positions.reserve(order.size());
    for (const Row& row : order) {
        positions.push_back(row.position);
    }
    return positions;
}

Bytes sizeOf(const SortKey& row)
{
    return row.size.value_or(0);
}

/// Group and last opening as one thing to compare.
struct Neglect {
    bool isSmall = false;
    bool isUndated = false;
    double lastOpened = 0;
};

Neglect neglectOf(const SortKey& row)
{
    const bool isLarge = row.size && *row.size >= forgottenFloor;
    return {!isLarge, !row.lastOpened, row.lastOpened ? row.lastOpened->secondsSince1970 : 0};
}

bool isMoreNeglected(const Neglect& a, const Neglect& b)
{
    if (a.isSmall != b.isSmall) {
        return b.isSmall;
    }
    if (a.isUndated != b.isUndated) {
        return b.isUndated;
    }
    return a.lastOpened < b.lastOpened;
}

bool isBefore(const SortKey& a, const SortKey& b, SortOrder order)
{
    switch (order) {
    case SortOrder::sizeDescending:
        return sizeOf(a) > sizeOf(b);
    case SortOrder::sizeAscending:
        return sizeOf(a) < sizeOf(b);
    case SortOrder::oldForgotten:
        return isMoreNeglected(neglectOf(a), neglectOf(b));
    case SortOrder::name:
        return a.nameRank < b.nameRank;
    }
    stopProgram("no such order", __FILE__, __LINE__);
}

}  // namespace

std::string_view rawString(SortOrder order)
{
    switch (order) {
    case SortOrder::sizeDescending:
        return "sizeDescending";
    case SortOrder::sizeAscending:
        return "sizeAscending";
    case SortOrder::oldForgotten:
        return "oldForgotten";
    case SortOrder::name:
        return "name";
    }
    stopProgram("no such order", __FILE__, __LINE__);
}

std::optional<SortOrder> sortOrder(std::string_view raw)
{
    for (const SortOrder order : allSortOrders) {
        if (rawString(order) == raw) {
            return order;
        }
    }
    return std::nullopt;
}

std::vector<std::uint32_t> arranged(std::span<const SortKey> rows, SortOrder order)
{
    switch (order) {
    case SortOrder::sizeDescending:
        return arrangedBy(rows, sizeOf, std::greater<>());
    case SortOrder::sizeAscending:
        return arrangedBy(rows, sizeOf, std::less<>());
    case SortOrder::oldForgotten:
        return arrangedBy(rows, neglectOf, isMoreNeglected);
    case SortOrder::name:
        return arrangedBy(
            rows, [](const SortKey& row) { return row.nameRank; }, std::less<>());
    }
    stopProgram("no such order", __FILE__, __LINE__);
}

void rearrange(std::vector<std::uint32_t>& positions, const std::vector<bool>& hasChanged,
               FunctionRef<SortKey(std::uint32_t)> keyOf, SortOrder order)
{
    const auto goesBefore = [&](std::uint32_t a, std::uint32_t b) {
        const SortKey keyOfA = keyOf(a);
        const SortKey keyOfB = keyOf(b);
        if (isBefore(keyOfA, keyOfB, order) || isBefore(keyOfB, keyOfA, order)) {
            return isBefore(keyOfA, keyOfB, order);
        }
        return a < b;
    };
    std::vector<std::uint32_t> changed;
    std::vector<std::uint32_t> others;
    others.reserve(positions.size());
    for (const std::uint32_t position : positions) {
        (hasChanged[position] ? changed : others).push_back(position);
    }
    std::sort(changed.begin(), changed.end(), goesBefore);
    positions.clear();
    auto next = others.begin();
    for (const std::uint32_t position : changed) {
        const auto place = std::lower_bound(next, others.end(), position, goesBefore);
        positions.insert(positions.end(), next, place);
        positions.push_back(position);
        next = place;
    }
    positions.insert(positions.end(), next, others.end());
}

}  // namespace gruk
