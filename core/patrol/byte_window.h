#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/files/file_reader.h"

namespace gruk {

/// A piece of a file in memory that moves forward. Behind its last byte stand zeros, so that a
/// parser may look a little too far; a NUL never stands in JSON. One thread.
class ByteWindow {
public:
    /// How far past `end` may be looked.
    static constexpr std::size_t padding = 64;

    /// Borrows `file`, and begins where `seek` puts it.
    explicit ByteWindow(FileReader& file) : file_(file) {}

    [[nodiscard]] const char* at() const { return buffer_.get() + begin_; }
    [[nodiscard]] const char* end() const { return buffer_.get() + end_; }
    [[nodiscard]] std::size_t size() const { return end_ - begin_; }
    [[nodiscard]] bool isAtEndOfFile() const { return ended_; }
    /// The place in the file of `at`.
    [[nodiscard]] std::uint64_t offset() const { return offset_ + begin_; }

    /// Moves on to `place`, which lies between `at` and `end`.
    void moveTo(const char* place) { begin_ = static_cast<std::size_t>(place - buffer_.get()); }

    /// Reads on, so that at least `wanted` bytes stand in the window unless the file ends before.
    /// Pointers into the window are void afterwards.
    void fill(std::size_t wanted);

    /// Goes on at that byte of the file, with an empty window.
    void seek(std::uint64_t offset);

    /// Moves over `text` if it stands here. For what is not read a million times.
    bool take(std::string_view text)
    {
        if (size() < text.size()) {
            fill(text.size());
        }
        if (size() < text.size() || std::memcmp(at(), text.data(), text.size()) != 0) {
            return false;
        }
        begin_ += text.size();
        return true;
    }

private:
    /// What is read at once: fits the second-level cache together with what is made of it.
    static constexpr std::size_t readSize = std::size_t{1} << 18;

    FileReader& file_;
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    /// The place in the file of the buffer's first byte.
    std::uint64_t offset_ = 0;
    bool ended_ = false;
};

}  // namespace gruk
