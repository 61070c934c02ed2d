#include "app/theme/paper_backdrop.h"

#include <QPaintEvent>
#include <QPainter>

#include "app/theme/icons.h"

namespace gruk {

namespace {

constexpr int grainStep = 31;
constexpr int firstColumn = 7;
constexpr int firstRow = 11;
constexpr double grainDiameter = 1.1;
constexpr double dotStrength = 0.055;
/// Every dot whose column and row add up to a multiple of this stands a little aside.
constexpr int breakEvery = 5;
constexpr double breakOffset = 2;
/// After so many steps the grain repeats.
constexpr int tileSize = grainStep * breakEvery;

}  // namespace

PaperBackdrop::PaperBackdrop(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&theme_, &Theme::changed, this, [this] {
        tile_ = QPixmap();
        update();
    });
}

void PaperBackdrop::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const double ratio = pixelRatio(painter);
    if (tile_.isNull() || tile_.devicePixelRatio() != ratio) {
        tile_ = paperTile(theme_, Role::paper, ratio);
    }
    painter.setClipRegion(event->region());
    painter.drawTiledPixmap(rect(), tile_);
}

QPixmap paperTile(const Theme& theme, Role shade, double ratio)
{
    QPixmap tile(QSizeF(tileSize * ratio, tileSize * ratio).toSize());
    tile.setDevicePixelRatio(ratio);
    tile.fill(theme.colour(shade));
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.colour(Role::ink, dotStrength));
    for (int x = firstColumn; x < tileSize; x += grainStep) {
        for (int y = firstRow; y < tileSize; y += grainStep) {
            const double aside = (x + y) % breakEvery == 0 ? breakOffset : 0;
            painter.drawEllipse(QRectF(x + aside, y, grainDiameter, grainDiameter));
        }
    }
    return tile;
}

}  // namespace gruk
