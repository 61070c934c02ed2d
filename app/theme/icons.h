#pragma once

#include <cstdint>

#include <QColor>
#include <QPointF>

#include "core/patrol/file_kind.h"
#include "core/patrol/review_finding.h"
#include "core/patrol/snapshot_delta.h"

class QPainter;

namespace gruk {

/// The one set of icons, on a 24-pixel grid, stroke 1.75, without colours of their own. Solid are
/// those that mark a state or a finding; what names a place or does something is a line.
enum class Icon : std::uint8_t {
    // Places and kinds of items.
    house,
    desktop,
    downloads,
    applications,
    screenshot,
    image,
    video,
    audio,
    pdf,
    archive,
    package,
    document,
    application,
    folder,
    item,
    link,
    // States, findings and changes.
    shieldHalf,
    shieldCheck,
    lockShield,
    warningShield,
    lock,
    noSubscription,
    warning,
    check,
    eye,
    eyeWarning,
    info,
    question,
    map,
    mapFill,
    scroll,
    flag,
    sparkles,
    added,
    grown,
    shrunk,
    removed,
    growth,
    duplicate,
    installer,
    cache,
    // What can be done.
    folderAdd,
    hiking,
    stop,
    trayDown,
    trays,
    filter,
    pencil,
    trash,
    gear,
    history,
    refresh,
    search,
    reveal,
    undo,
    back,
    arrowRight,
    close,
    chevronDown,
    chevronLeft,
    chevronRight,
};
inline constexpr int iconCount = static_cast<int>(Icon::chevronRight) + 1;

[[nodiscard]] Icon iconFor(SnapshotDelta::Change change);
[[nodiscard]] Icon iconFor(ReviewFinding::Reason reason);
/// Another one for each kind.
[[nodiscard]] Icon iconFor(FileKind kind);

/// Draws the icon in one colour, `size` logical pixels square, as sharp as what `painter` draws on.
/// What is left out of a solid icon shows the ground. Rendered once for each colour and size and
/// kept by the toolkit's cache.
void drawIcon(QPainter& painter, const QPointF& topLeft, Icon icon, const QColor& colour, int size);

/// How many pixels of what `painter` draws on make a logical one, in quarters, at least 1. (Asked
/// of the painter and not of a widget, which may be drawn into a picture.)
[[nodiscard]] double pixelRatio(const QPainter& painter);

}  // namespace gruk
