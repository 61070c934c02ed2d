#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/foundation/common_prefix.h"
#include "platform/foundation/text_order.h"

namespace gruk {

/// Paths as they come one after another, each held against the one before. In the text order, a
/// path that follows each of its neighbours stands nowhere twice. One thread.
class PathSequence {
public:
    /// How a path differs from the former one.
    struct Difference {
        /// So many bytes are the same in both.
        std::size_t shared;
        /// Where the component with the first difference begins.
        std::size_t start;
    };

    [[nodiscard]] Difference difference(std::string_view path) const
    {
        const std::size_t shared = commonPrefix(former(), path);
        const std::size_t slash =
            shared == 0 ? std::string_view::npos : path.rfind('/', shared - 1);
        return {shared, slash == std::string_view::npos ? 0 : slash + 1};
    }

    /// Whether the former path stands before `path`, from which it differs so; true at first.
    [[nodiscard]] bool precedes(std::string_view path, const Difference& at) const
    {
        const std::string_view before = former();
        if (at.shared == before.size() || at.shared == path.size()) {
            return at.shared == before.size() && at.shared < path.size()
                   && (path[at.shared] == '/' || localizedStandardCompare(before, path) < 0);
        }
        const std::size_t from = decisiveStart(path, at);
        const auto rest = [from](std::string_view text) {
            return text.substr(from, text.find('/', from) - from);
        };
        return localizedStandardCompareNames(rest(before), rest(path)) < 0;
    }

    /// Makes `path` the former one.
    void take(std::string_view path, const Difference& at)
    {
        if (former_.size() < path.size()) {
            former_.resize(2 * path.size());
        }
        std::memcpy(former_.data() + at.shared, path.data() + at.shared, path.size() - at.shared);
        size_ = path.size();
    }

    [[nodiscard]] std::string_view former() const { return {former_.data(), size_}; }

private:
    /// From where on two components are to be compared. What is the same in both decides nothing,
    /// but digits are one number, and what is not ASCII may belong to what stands before it.
    [[nodiscard]] std::size_t decisiveStart(std::string_view path, const Difference& at) const
    {
        std::size_t from = at.shared;
        while (from > at.start && path[from - 1] >= '0' && path[from - 1] <= '9') {
            --from;
        }
        const auto bytes = static_cast<unsigned char>(path[from] | former_[from]);
        return bytes < 0x80 ? from : at.start;
    }

    std::vector<char> former_;
    std::size_t size_ = 0;
};

}  // namespace gruk
