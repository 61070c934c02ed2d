#pragma once

#include <cstdint>

#include <QColor>
#include <QPointF>

#include "core/patrol/file_kind.h"
#include "core/patrol/review_finding.h"
#include "core/patrol/snapshot_delta.h"

class QPainter;

namespace gruk {

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

/// Draws the icon in one colour, `size` logical pixels square, as sharp as what `painter` draws on.
/// Rendered once for each colour and size and kept by the toolkit's cache.
void drawIcon(QPainter& painter, const QPointF& topLeft, Icon icon, const QColor& colour, int size);

/// How many pixels of what `painter` draws on make a logical one, in quarters, at least 1. (Asked
/// of the painter and not of a widget, which may be drawn into a picture.)
[[nodiscard]] double pixelRatio(const QPainter& painter);

}  // namespace gruk
