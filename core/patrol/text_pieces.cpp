#include "core/patrol/text_pieces.h"

#include <algorithm>
#include <utility>

namespace gruk {

namespace {

/// Large enough for a quick write, small enough for the cache that both threads share.
constexpr std::size_t usualPiece = std::size_t{1} << 18;

}  // namespace

void TextCollector::makeRoom(std::size_t size)
{
    flush();
    if (piece_.capacity < size) {
        piece_.capacity = std::max(size, usualPiece);
        piece_.bytes = std::make_unique_for_overwrite<char[]>(piece_.capacity);
    }
}

void TextCollector::flush()
{
    if (piece_.used > 0) {
        piece_ = exchange_(std::move(piece_));
        piece_.used = 0;
    }
}

TextPiece PieceHandover::exchange(TextPiece full)
{
    std::unique_lock lock(lock_);
    changed_.wait(lock, [this] { return full_.size() < mostUnderWay || isAbandoned_; });
    if (isAbandoned_) {
        throw Abandoned();
    }
    full_.push_back(std::move(full));
    changed_.notify_all();
    TextPiece empty;
    if (!empty_.empty()) {
        empty = std::move(empty_.back());
        empty_.pop_back();
    }
    return empty;
}

void PieceHandover::finish()
{
    const std::lock_guard lock(lock_);
    isFinished_ = true;
    changed_.notify_all();
}

void PieceHandover::drain(FunctionRef<void(std::string_view)> take)
{
    std::unique_lock lock(lock_);
    for (;;) {
        changed_.wait(lock, [this] { return !full_.empty() || isFinished_; });
        if (full_.empty()) {
            return;
        }
        TextPiece piece = std::move(full_.front());
        full_.erase(full_.begin());
        changed_.notify_all();
        lock.unlock();
        take(piece.text());
        lock.lock();
        empty_.push_back(std::move(piece));
    }
}

void PieceHandover::abandon()
{
    const std::lock_guard lock(lock_);
    isAbandoned_ = true;
    changed_.notify_all();
}

}  // namespace gruk
