#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "platform/foundation/function_ref.h"

namespace gruk {

/// A buffer with text in it.
struct TextPiece {
    std::unique_ptr<char[]> bytes;
    std::size_t capacity = 0;
    std::size_t used = 0;

    [[nodiscard]] std::string_view text() const { return {bytes.get(), used}; }
};

/// Collects text into large pieces and hands each on when it is full. One thread.
class TextCollector {
public:
    /// Takes a full piece and gives an empty one for it.
    using Exchange = FunctionRef<TextPiece(TextPiece)>;

    explicit TextCollector(Exchange exchange) : exchange_(exchange) {}

    /// Room for `size` bytes in one go; the caller writes there and tells with `used` up to where.
    char* room(std::size_t size)
    {
        if (piece_.used + size > piece_.capacity) {
            makeRoom(size);
        }
        return piece_.bytes.get() + piece_.used;
    }
    void used(const char* end) { piece_.used = static_cast<std::size_t>(end - piece_.bytes.get()); }

    void text(std::string_view text)
    {
        char* at = room(text.size());
        std::memcpy(at, text.data(), text.size());
        piece_.used += text.size();
    }

    /// Hands on what is left.
    void flush();

private:
    void makeRoom(std::size_t size);

    Exchange exchange_;
    TextPiece piece_;
};

/// Hands pieces from one thread to another: one fills them while the other empties them. A few are
/// under way at a time; whoever is ahead waits.
class PieceHandover {
public:
    // For the thread that fills.

    /// Gives a full piece away and returns an empty one. Throws `Abandoned` when the other side
    /// has given up.
    TextPiece exchange(TextPiece full);
    /// No more will come.
    void finish();

    // For the thread that empties.

    /// Calls `take` for each piece as it comes, until the other side has finished. What `take`
    /// throws passes through; then call `abandon`.
    void drain(FunctionRef<void(std::string_view)> take);
    /// Nothing more is wanted: the other side ends at its next piece.
    void abandon();

    /// Ends the filling thread; never leaves it.
    struct Abandoned {};

private:
    static constexpr std::size_t mostUnderWay = 3;

    std::mutex lock_;
    std::condition_variable changed_;
    // Guarded by `lock_`.
    std::vector<TextPiece> full_;
    std::vector<TextPiece> empty_;
    bool isFinished_ = false;
    bool isAbandoned_ = false;
};

}  // namespace gruk
