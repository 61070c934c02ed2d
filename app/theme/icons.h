#pragma once

#include <cstdint>

#include <QColor>
#include <QPixmap>

#include "core/patrol/file_kind.h"
#include "core/patrol/review_finding.h"
#include "core/patrol/snapshot_delta.h"

namespace gruk
{

/// The one set of icons, on a 24-pixel grid, stroke 1.75, without colours of their own.
enum class Icon : std::uint8_t {
    folderAdd,
    hiking,
    stop,
    warning,
    check,
    eye,
    info,
    map,
    sparkles,
    chevronDown,
    chevronRight,
    filter,
    added,
    grown,
    shrunk,
    removed,
    growth,
    duplicate,
    installer,
    cache,
    lock,
    shieldCheck,
    noSubscription,
    folder,
    image,
    video,
    audio,
    document,
    archive,
    application,
    item,
};

[[nodiscard]] Icon iconFor(SnapshotDelta::Change change);
[[nodiscard]] Icon iconFor(ReviewFinding::Reason reason);
[[nodiscard]] Icon iconFor(FileKind kind);

/// The icon drawn in one colour, `size` logical pixels square, for a screen of that ratio. Drawn
/// once and kept by the toolkit's cache.
[[nodiscard]] QPixmap iconPixmap(Icon icon, const QColor& colour, int size, double ratio);

} // namespace gruk
