#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "core/patrol/file_kind.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/date.h"
#include "platform/foundation/require.h"

/// How a snapshot holds its entries. Behind `SnapshotEntries` and its builder; beside them only
/// the loops over a million entries in this folder include it.

namespace gruk {

/// A list that grows in pieces, so that growing never copies nor holds the former copy beside it.
template <typename T>
class Column {
public:
    static constexpr std::size_t shift = 12;
    static constexpr std::size_t pieceSize = std::size_t{1} << shift;

    void push(T value)
    {
        if ((size_ & (pieceSize - 1)) == 0) {
            grow();
        }
        pieces_.back()[size_ & (pieceSize - 1)] = value;
        ++size_;
    }
    [[nodiscard]] T operator[](std::size_t i) const
    {
        return pieces_[i >> shift][i & (pieceSize - 1)];
    }
    [[nodiscard]] T& at(std::size_t i) { return pieces_[i >> shift][i & (pieceSize - 1)]; }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }

private:
    /// Apart, so that what is done for each entry is short enough to be inlined.
    [[gnu::noinline]] void grow()
    {
        pieces_.push_back(std::make_unique_for_overwrite<T[]>(pieceSize));
    }

    std::vector<std::unique_ptr<T[]>> pieces_;
    std::size_t size_ = 0;
};

/// Names, each stored once behind its length, found by an offset of 35 bits.
class NameArena {
public:
    static constexpr std::size_t shift = 16;
    static constexpr std::size_t pieceSize = std::size_t{1} << shift;
    static constexpr std::size_t longestName = 65'535;
    static constexpr std::uint64_t offsetLimit = std::uint64_t{1} << 35;

    /// Keeps a copy of `name`, at most `longestName` bytes, and returns its offset.
    std::uint64_t add(std::string_view name)
    {
        const std::size_t head = name.size() < 255 ? 1 : 3;
        const std::size_t needed = head + name.size();
        if (pieces_.empty() || used_ + needed > pieceSize) {
            // A name that fills more than a piece gets a longer one; offsets still point at its
            // start, and only the start of a name is ever asked for.
            pieces_.push_back(std::make_unique_for_overwrite<char[]>(std::max(pieceSize, needed)));
            used_ = 0;
        }
        char* at = pieces_.back().get() + used_;
        const std::uint64_t offset = ((pieces_.size() - 1) << shift) | used_;
        GRUK_REQUIRE(offset < offsetLimit, "a snapshot holds more than 32 GB of names");
        if (head == 1) {
            *at = static_cast<char>(name.size());
        } else {
            const auto length = static_cast<std::uint16_t>(name.size());
            *at = static_cast<char>(255);
            std::memcpy(at + 1, &length, sizeof length);
        }
        std::memcpy(at + head, name.data(), name.size());
        used_ += needed;
        return offset;
    }

    [[nodiscard]] std::string_view operator[](std::uint64_t offset) const
    {
        const char* at = pieces_[offset >> shift].get() + (offset & (pieceSize - 1));
        const auto first = static_cast<unsigned char>(*at);
        if (first < 255) {
            return {at + 1, first};
        }
        std::uint16_t length = 0;
        std::memcpy(&length, at + 1, sizeof length);
        return {at + 3, length};
    }

private:
    std::vector<std::unique_ptr<char[]>> pieces_;
    std::size_t used_ = 0;
};

/// The columns of a snapshot: 25 bytes an entry and its name.
class SnapshotTable {
public:
    using Index = std::uint32_t;
    static constexpr Index noIndex = 0xffff'ffff;

    [[nodiscard]] std::size_t size() const noexcept { return sizes.size(); }

    Index push(Index parent, std::uint64_t nameOffset, Bytes size, std::optional<Date> modified,
               FileKind kind, bool isDirectory)
    {
        GRUK_REQUIRE(sizes.size() < noIndex, "a snapshot holds more than four billion entries");
        const auto index = static_cast<Index>(sizes.size());
        sizes.push(size);
        dates.push(modified ? modified->secondsSince1970
                            : std::numeric_limits<double>::quiet_NaN());
        parents.push(parent);
        nameOffsets.push(static_cast<std::uint32_t>(nameOffset));
        marks.push(static_cast<std::uint8_t>(static_cast<unsigned>(kind)
                                             | (isDirectory ? directoryMark : 0U)
                                             | static_cast<unsigned>((nameOffset >> 32) << 5)));
        return index;
    }

    [[nodiscard]] std::string_view name(Index i) const
    {
        return names[(std::uint64_t{marks[i]} >> 5 << 32) | nameOffsets[i]];
    }
    [[nodiscard]] FileKind kind(Index i) const { return static_cast<FileKind>(marks[i] & 15U); }
    [[nodiscard]] bool isDirectory(Index i) const { return (marks[i] & directoryMark) != 0; }
    [[nodiscard]] std::optional<Date> modified(Index i) const
    {
        const double seconds = dates[i];
        return std::isnan(seconds) ? std::nullopt : std::optional(Date{seconds});
    }

    Column<Bytes> sizes;
    Column<double> dates;
    Column<Index> parents;
    Column<std::uint32_t> nameOffsets;
    /// Bits 0 to 3 the kind, 4 whether it is a directory, 5 to 7 the top of the name's offset.
    Column<std::uint8_t> marks;
    NameArena names;

private:
    static constexpr unsigned directoryMark = 16;
};

}  // namespace gruk
