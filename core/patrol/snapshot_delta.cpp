#include "core/patrol/snapshot_delta.h"

#include <array>

#include "platform/foundation/text_order.h"

namespace gruk {

namespace {

constexpr std::array<std::string_view, 4> changeNames = {"new", "grown", "shrunk", "removed"};

}  // namespace

std::string_view rawString(SnapshotDelta::Change change)
{
    return changeNames.at(static_cast<std::size_t>(change));
}

bool standsBefore(const SnapshotDelta& a, const SnapshotDelta& b)
{
    const Bytes netA = a.netBytes();
    const Bytes netB = b.netBytes();
    if ((netA > 0) != (netB > 0)) {
        return netA > 0;
    }
    const Bytes magnitudeA = checkedMagnitude(netA);
    const Bytes magnitudeB = checkedMagnitude(netB);
    if (magnitudeA != magnitudeB) {
        return magnitudeA > magnitudeB;
    }
    return localizedStandardCompare(a.relativePath, b.relativePath) < 0;
}

const char* SnapshotDeltaError::what() const noexcept
{
    switch (which_) {
    case Case::rootMismatch:
        return "The patrol kept before this one is of another folder, so the two cannot be "
               "compared. Move \"snapshots.json\" out of Gruk's folder to start a new history.";
    case Case::incompleteSnapshot:
        return "The patrol kept before this one is marked as unfinished, so nothing can be "
               "compared with it. Move \"snapshots.json\" out of Gruk's folder to start a new "
               "history.";
    }
    return "The two patrols cannot be compared.";
}

}  // namespace gruk
