#include "app/theme/icons.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

#include "app/theme/resources.h"

namespace gruk {

namespace {

/// The iconNames of the drawings, in the order of the cases.
constexpr std::array<const char*, iconCount> iconNames = {
    "house",         "desktop",
    "downloads",     "applications",
    "screenshot",    "image",
    "video",         "audio",
    "pdf",           "archive",
    "package",       "document",
    "application",   "folder",
    "item",          "link",
    "shield_half",   "shield_check",
    "lock_shield",   "warning_shield",
    "lock",          "no_subscription",
    "warning",       "check",
    "eye",           "eye_warning",
    "info",          "question",
    "map",           "map_fill",
    "scroll",        "flag",
    "sparkles",      "added",
    "grown",         "shrunk",
    "removed",       "growth",
    "duplicate",     "installer",
    "cache",         "folder_add",
    "hiking",        "stop",
    "tray_down",     "trays",
    "filter",        "pencil",
    "trash",         "gear",
    "history",       "refresh",
    "search",        "reveal",
    "undo",          "back",
    "arrow_right",   "close",
    "chevron_down",  "chevron_left",
    "chevron_right",
};

/// A drawing is black, and white where something is left out of the black. Turns it into as much of
/// `colour` as there is black.
void colourIn(QImage& image, const QColor& colour)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(line, line + image.width(), line, [&](QRgb pixel) {
            const int black = qAlpha(pixel) - qRed(pixel);
            const int alpha = black * colour.alpha() / 255;
            return qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), alpha));
        });
    }
}

QPixmap renderedIcon(Icon icon, const QColor& colour, int size, double ratio)
{
    QImage image(QSizeF(size * ratio, size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(
        themeResource(QStringLiteral("icons/%1.svg")
                          .arg(QLatin1String(iconNames[static_cast<std::size_t>(icon)]))));
    QPainter drawing(&image);
    renderer.render(&drawing);
    drawing.end();
    colourIn(image, colour);
    QPixmap pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

}  // namespace

Icon iconFor(SnapshotDelta::Change change)
{
    switch (change) {
    case SnapshotDelta::Change::added:
        return Icon::added;
    case SnapshotDelta::Change::grown:
        return Icon::grown;
    case SnapshotDelta::Change::shrunk:
        return Icon::shrunk;
    case SnapshotDelta::Change::removed:
        return Icon::removed;
    }
    return Icon::item;
}

Icon iconFor(ReviewFinding::Reason reason)
{
    switch (reason) {
    case ReviewFinding::Reason::rapidGrowth:
        return Icon::growth;
    case ReviewFinding::Reason::duplicateDownload:
        return Icon::duplicate;
    case ReviewFinding::Reason::oldInstaller:
        return Icon::installer;
    case ReviewFinding::Reason::regenerableCache:
        return Icon::cache;
    }
    return Icon::item;
}

Icon iconFor(FileKind kind)
{
    switch (kind) {
    case FileKind::screenshot:
        return Icon::screenshot;
    case FileKind::image:
        return Icon::image;
    case FileKind::video:
        return Icon::video;
    case FileKind::audio:
        return Icon::audio;
    case FileKind::pdf:
        return Icon::pdf;
    case FileKind::document:
        return Icon::document;
    case FileKind::archive:
        return Icon::archive;
    case FileKind::installer:
        return Icon::package;
    case FileKind::application:
        return Icon::application;
    case FileKind::folder:
        return Icon::folder;
    case FileKind::other:
        break;
    }
    return Icon::item;
}

double pixelRatio(const QPainter& painter)
{
    constexpr double quarters = 4;
    const QTransform transform = painter.deviceTransform();
    // What is turned is no smaller for that.
    const double scale = std::hypot(transform.m11(), transform.m12());
    return std::max(1.0, std::ceil(scale * quarters) / quarters);
}

void drawIcon(QPainter& painter, const QPointF& topLeft, Icon icon, const QColor& colour, int size)
{
    const double ratio = pixelRatio(painter);
    const QString key = QStringLiteral("gruk-icon-%1-%2-%3-%4")
                            .arg(static_cast<int>(icon))
                            .arg(colour.rgba(), 0, 16)
                            .arg(size)
                            .arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = renderedIcon(icon, colour, size, ratio);
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(topLeft, pixmap);
}

}  // namespace gruk
