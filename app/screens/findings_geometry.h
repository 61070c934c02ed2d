#pragma once

#include <cstddef>
#include <map>

namespace gruk {

/// Where the rows of a long list stand: all of one height but for a few that are open. Pure.
class FindingsGeometry {
public:
    explicit FindingsGeometry(int rowHeight) : rowHeight_(rowHeight) {}

    [[nodiscard]] std::size_t count() const { return count_; }

    /// Closes every row.
    void reset(std::size_t count);

    /// Gives a row this much more height than a closed one; 0 closes it.
    void setExtra(std::size_t row, int extra);
    [[nodiscard]] int extra(std::size_t row) const;

    /// The top of a row; of `count()` the bottom of the list.
    [[nodiscard]] int top(std::size_t row) const;
    [[nodiscard]] int height(std::size_t row) const { return rowHeight_ + extra(row); }
    [[nodiscard]] int totalHeight() const { return top(count_); }

    /// The row at a height from the top: the first above it all, the last below. Needs a row.
    [[nodiscard]] std::size_t rowAt(int y) const;

private:
    int rowHeight_;
    std::size_t count_ = 0;
    std::map<std::size_t, int> extras_;
};

}  // namespace gruk
