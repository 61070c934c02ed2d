#include "app/screens/findings_geometry.h"

#include <algorithm>

namespace gruk {

void FindingsGeometry::reset(std::size_t count)
{
    count_ = count;
    extras_.clear();
}

void FindingsGeometry::setExtra(std::size_t row, int extra)
{
    if (extra == 0) {
        extras_.erase(row);
    } else {
        extras_[row] = extra;
    }
}

int FindingsGeometry::extra(std::size_t row) const
{
    const auto found = extras_.find(row);
    return found == extras_.end() ? 0 : found->second;
}

int FindingsGeometry::top(std::size_t row) const
{
    int y = static_cast<int>(row) * rowHeight_;
    for (const auto& [open, extra] : extras_) {
        if (open >= row) {
            break;
        }
        y += extra;
    }
    return y;
}

std::size_t FindingsGeometry::rowAt(int y) const
{
    std::size_t low = 0;
    std::size_t high = count_;
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        if (top(middle) <= y) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return low;
}

}  // namespace gruk
