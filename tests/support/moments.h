#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace gruk::test {

/// Lets something happen at the n-th of the moments that it is told of.
class Moments {
public:
    void arm(std::size_t moment, std::function<void()> happens)
    {
        left_ = moment;
        happens_ = std::move(happens);
    }

    void pass()
    {
        if (happens_ && left_-- == 0) {
            std::exchange(happens_, nullptr)();
        }
    }

    /// Whether there were so many; from then on nothing happens any more.
    bool isReached() { return std::exchange(happens_, nullptr) == nullptr; }

private:
    std::size_t left_ = 0;
    std::function<void()> happens_;
};

}  // namespace gruk::test
