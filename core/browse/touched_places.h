#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/foundation/file_url.h"

namespace gruk {

/// Places where something came, went or changed, and which folders' sizes that reaches. Asking
/// costs the same however many places there are. A plain value.
class TouchedPlaces {
public:
    explicit TouchedPlaces(const std::vector<FileURL>& touched);

    /// Whether the folder at that standardised path is one of the places, lies in one or holds one.
    [[nodiscard]] bool reach(std::string_view path) const;

private:
    std::unordered_set<std::string> places_;
    /// Everything above them.
    std::unordered_set<std::string> above_;
};

}  // namespace gruk
