#pragma once

#include <optional>
#include <span>

#include <Qt>
#include <QtGlobal>

#include "app/screens/scan_node_model.h"

namespace gruk {

/// One column by which the table is sorted, and in which direction.
struct TableSort {
    ScanNodeModel::Column key = ScanNodeModel::sizeColumn;
    Qt::SortOrder direction = Qt::DescendingOrder;

    friend bool operator==(const TableSort&, const TableSort&) = default;
};

/// Whether the table can be sorted by that column: by the name and by the size it can.
[[nodiscard]] bool isSortable(int column);

/// The session's order for what the header asks for. Only the first counts: names have one order,
/// whichever direction is asked for. None, for no or another column, leaves the order as it is.
[[nodiscard]] std::optional<SortOrder> sessionOrder(std::span<const TableSort> sorts);

/// What the header shows for an order of the session; none for one that is no column's.
[[nodiscard]] std::optional<TableSort> tableSort(SortOrder order);

/// What a press on a sortable column asks for. Sizes begin with the largest and turn round at the
/// next press.
[[nodiscard]] TableSort sortAfterPress(ScanNodeModel::Column pressed,
                                       const std::optional<TableSort>& current);

}  // namespace gruk
