#include "app/theme/icons.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace gruk {

namespace {

/// What stands inside each drawing, in the order of the cases.
constexpr std::array drawings = {
    // folderAdd
    R"(<path d="M3 18V6.5A1.5 1.5 0 0 1 4.5 5H9l2 2.5h8.5A1.5 1.5 0 0 1 21 9v9a1.5 1.5 0 0 1-1.5 1.5h-15A1.5 1.5 0 0 1 3 18zM12 11v5.5M9.2 13.75h5.6"/>)",
    // hiking
    R"(<circle cx="12.5" cy="4.2" r="1.7"/><path d="M12 8.5l-1.5 5 3 2.8.8 4.7M10.5 13.5L9 17l-2.5 3.8M12 8.5l2.2 3 2.6.6M11.8 8.3L8 10l-.8 3M18 9.5V21"/>)",
    // stop
    R"(<rect x="6.5" y="6.5" width="11" height="11" rx="2"/>)",
    // warning
    R"(<path d="M12 4.2l8.6 14.9a.7.7 0 0 1-.6 1H4a.7.7 0 0 1-.6-1zM12 10v4.4M12 17.2v.1"/>)",
    // check
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M8.2 12.3l2.7 2.7 5-5.6"/>)",
    // eye
    R"(<path d="M2.8 12S6.2 5.8 12 5.8 21.2 12 21.2 12 17.8 18.2 12 18.2 2.8 12 2.8 12z"/><circle cx="12" cy="12" r="2.8"/>)",
    // info
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M12 11v5.4M12 7.7v.1"/>)",
    // map
    R"(<path d="M3.5 6.3l5.6-2 5.8 2 5.6-2v13.4l-5.6 2-5.8-2-5.6 2zM9.1 4.3v13.4M14.9 6.3v13.4"/>)",
    // sparkles
    R"(<path d="M11 4.5l1.7 4.8 4.8 1.7-4.8 1.7L11 17.5l-1.7-4.8L4.5 11l4.8-1.7zM18.2 15.6l.8 2.2 2.2.8-2.2.8-.8 2.2-.8-2.2-2.2-.8 2.2-.8z"/>)",
    // chevronDown
    R"(<path d="M6.5 9.5l5.5 5.5 5.5-5.5"/>)",
    // chevronRight
    R"(<path d="M9.5 6.5l5.5 5.5-5.5 5.5"/>)",
    // filter
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M7.4 9.6h9.2M9 12.6h6M10.8 15.6h2.4"/>)",
    // added
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M12 8v8M8 12h8"/>)",
    // grown
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M12 16.2V8M8.4 11.4L12 7.8l3.6 3.6"/>)",
    // shrunk
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M12 7.8V16M8.4 12.6l3.6 3.6 3.6-3.6"/>)",
    // removed
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M8 12h8"/>)",
    // growth
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M7.3 15l3-3.4 2.3 1.9 4-4.9M13.6 8.4l3-.1.2 3"/>)",
    // duplicate
    R"(<path d="M8.5 7.5V4.8A1.3 1.3 0 0 1 9.8 3.5h5.7l4 4v8.2a1.3 1.3 0 0 1-1.3 1.3h-2.7M4.5 8.8v10.4a1.3 1.3 0 0 0 1.3 1.3h8.4a1.3 1.3 0 0 0 1.3-1.3v-7.7l-4-4H5.8a1.3 1.3 0 0 0-1.3 1.3z"/>)",
    // installer
    R"(<path d="M12 3.3l7.8 4.2v9L12 20.7l-7.8-4.2v-9zM4.4 7.6L12 11.8l7.6-4.2M12 11.8v8.7M8.2 5.4l7.6 4.2"/>)",
    // cache
    R"(<path d="M19.8 10.2A8.2 8.2 0 0 0 5 8.1M4.2 13.8A8.2 8.2 0 0 0 19 15.9M5.2 3.9v4.4h4.4M18.8 20.1v-4.4h-4.4"/>)",
    // lock
    R"(<rect x="5" y="10.5" width="14" height="10" rx="2"/><path d="M8 10.5V7.8a4 4 0 0 1 8 0v2.7M12 14.5v2.4"/>)",
    // shieldCheck
    R"(<path d="M12 3.2l7.5 2.6v5.6c0 4.6-3 7.9-7.5 9.4-4.5-1.5-7.5-4.8-7.5-9.4V5.8zM8.5 11.8l2.5 2.5 4.6-5"/>)",
    // noSubscription
    R"(<circle cx="12" cy="12" r="8.8"/><path d="M15 8.9a2.6 2.6 0 0 0-5 .9c0 2.6 1 3.6-.9 6.6h6.2M8.6 12.6h4.6"/>)",
    // folder
    R"(<path d="M3 18V6.5A1.5 1.5 0 0 1 4.5 5H9l2 2.5h8.5A1.5 1.5 0 0 1 21 9v9a1.5 1.5 0 0 1-1.5 1.5h-15A1.5 1.5 0 0 1 3 18z"/>)",
    // image
    R"(<rect x="3.5" y="4.5" width="17" height="15" rx="2"/><circle cx="8.5" cy="9.3" r="1.6"/><path d="M3.8 17l5-4.6 3.4 3 3.4-3.8 4.8 4.9"/>)",
    // video
    R"(<rect x="3" y="6" width="12.5" height="12" rx="2"/><path d="M15.5 10.8l5.5-3v8.4l-5.5-3"/>)",
    // audio
    R"(<circle cx="7" cy="17.5" r="2.7"/><circle cx="17" cy="15.5" r="2.7"/><path d="M9.7 17.5V6.2l10-2v11.3"/>)",
    // document
    R"(<path d="M6 19.2V4.8a1.3 1.3 0 0 1 1.3-1.3h6.9l4.3 4.3v11.4a1.3 1.3 0 0 1-1.3 1.3H7.3A1.3 1.3 0 0 1 6 19.2zM14 3.7V8h4.3M9 12.3h6M9 15.8h6"/>)",
    // archive
    R"(<rect x="3.5" y="4" width="17" height="4.5" rx="1.2"/><path d="M5 8.5v10A1.5 1.5 0 0 0 6.5 20h11a1.5 1.5 0 0 0 1.5-1.5v-10M9.8 12.2h4.4"/>)",
    // application
    R"(<rect x="3.5" y="3.5" width="7" height="7" rx="1.6"/><rect x="13.5" y="3.5" width="7" height="7" rx="1.6"/><rect x="3.5" y="13.5" width="7" height="7" rx="1.6"/><rect x="13.5" y="13.5" width="7" height="7" rx="1.6"/>)",
    // item
    R"(<path d="M6 19.2V4.8a1.3 1.3 0 0 1 1.3-1.3h6.9l4.3 4.3v11.4a1.3 1.3 0 0 1-1.3 1.3H7.3A1.3 1.3 0 0 1 6 19.2zM14 3.7V8h4.3"/>)",
};
static_assert(drawings.size() == static_cast<std::size_t>(Icon::item) + 1);

QByteArray svg(Icon icon, const QColor& colour)
{
    QByteArray text =
        R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24" fill="none" stroke=")";
    text += colour.name(QColor::HexRgb).toLatin1();
    text += R"(" stroke-opacity=")" + QByteArray::number(colour.alphaF());
    text += R"(" stroke-width="1.75" stroke-linecap="round" stroke-linejoin="round">)";
    text += drawings[static_cast<std::size_t>(icon)];
    text += "</svg>";
    return text;
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
    case FileKind::image:
        return Icon::image;
    case FileKind::video:
        return Icon::video;
    case FileKind::audio:
        return Icon::audio;
    case FileKind::pdf:
    case FileKind::document:
        return Icon::document;
    case FileKind::archive:
        return Icon::archive;
    case FileKind::installer:
        return Icon::installer;
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
    return std::max(1.0, std::ceil(painter.deviceTransform().m11() * quarters) / quarters);
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
        pixmap = QPixmap(QSizeF(size * ratio, size * ratio).toSize());
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QSvgRenderer renderer(svg(icon, colour));
        QPainter drawing(&pixmap);
        renderer.render(&drawing, QRectF(0, 0, size, size));
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(topLeft, pixmap);
}

}  // namespace gruk
