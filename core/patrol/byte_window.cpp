#include "core/patrol/byte_window.h"

#include <algorithm>

namespace gruk {

void ByteWindow::fill(std::size_t wanted)
{
    const std::size_t held = size();
    if (wanted + readSize > capacity_) {
        const std::size_t capacity = std::max(wanted + readSize, 2 * capacity_);
        auto larger = std::make_unique_for_overwrite<char[]>(capacity + padding);
        if (held > 0) {
            std::memcpy(larger.get(), at(), held);
        }
        buffer_ = std::move(larger);
        capacity_ = capacity;
    } else if (held > 0) {
        std::memmove(buffer_.get(), at(), held);
    }
    offset_ += begin_;
    begin_ = 0;
    end_ = held;
    while (!ended_ && end_ < wanted) {
        const std::size_t count =
            file_.read(buffer_.get() + end_, std::min(capacity_ - end_, readSize));
        end_ += count;
        ended_ = count == 0;
    }
    std::memset(buffer_.get() + end_, 0, padding);
}

void ByteWindow::seek(std::uint64_t offset)
{
    file_.seek(offset);
    offset_ = offset;
    begin_ = 0;
    end_ = 0;
    ended_ = false;
}

}  // namespace gruk
