#include "app/screens/browse_sort.h"

namespace gruk {

bool isSortable(int column)
{
    return column == ScanNodeModel::nameColumn || column == ScanNodeModel::sizeColumn;
}

std::optional<SortOrder> sessionOrder(std::span<const TableSort> sorts)
{
    if (sorts.empty() || !isSortable(sorts.front().key)) {
        return std::nullopt;
    }
    if (sorts.front().key == ScanNodeModel::nameColumn) {
        return SortOrder::name;
    }
    return sorts.front().direction == Qt::AscendingOrder ? SortOrder::sizeAscending
                                                         : SortOrder::sizeDescending;
}

std::optional<TableSort> tableSort(SortOrder order)
{
    switch (order) {
    case SortOrder::sizeDescending:
        return TableSort{ScanNodeModel::sizeColumn, Qt::DescendingOrder};
    case SortOrder::sizeAscending:
        return TableSort{ScanNodeModel::sizeColumn, Qt::AscendingOrder};
    case SortOrder::name:
        return TableSort{ScanNodeModel::nameColumn, Qt::AscendingOrder};
    case SortOrder::oldForgotten:
        break;
    }
    return std::nullopt;
}

TableSort sortAfterPress(ScanNodeModel::Column pressed, const std::optional<TableSort>& current)
{
    if (pressed == ScanNodeModel::nameColumn) {
        return {pressed, Qt::AscendingOrder};
    }
    const bool turns = current == TableSort{pressed, Qt::DescendingOrder};
    return {pressed, turns ? Qt::AscendingOrder : Qt::DescendingOrder};
}

}  // namespace gruk
