#include "app/theme/menu_painter.h"

#include <algorithm>

#include <QPainter>
#include <QStyleOptionMenuItem>

#include "app/theme/card_painter.h"
#include "app/theme/icons.h"

namespace gruk {

namespace {

constexpr int itemHeight = 30;
constexpr int dividerHeight = 9;
constexpr Corners itemCorners = {6, 5, 7, 5};

int textInset(const QStyleOptionMenuItem& item)
{
    return item.menuHasCheckableItems ? Measure::small + Measure::smallIconSize + Measure::small
                                      : Measure::medium;
}

bool isDivider(const QStyleOptionMenuItem& item)
{
    return item.menuItemType == QStyleOptionMenuItem::Separator;
}

}  // namespace

void paintMenuPanel(QPainter& painter, const QRect& bounds, const Theme& theme, bool isShaped)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double half = Measure::outline / 2;
    QPainterPath shape;
    if (isShaped) {
        shape = cutPath(QRectF(bounds).adjusted(half, half, -half, -half), buttonCorners);
        // Up to the edge, where nothing may lie under it: without a compositor a pixel that is left
        // see-through comes out black.
        painter.fillPath(cutPath(bounds, buttonCorners), theme.colour(Role::paperCard));
        for (const QRect& rows : menuRegion(bounds)) {
            painter.fillRect(rows, theme.colour(Role::paperCard));
        }
    } else {
        shape.addRect(QRectF(bounds).adjusted(half, half, -half, -half));
        painter.fillRect(bounds, theme.colour(Role::paperCard));
    }
    painter.fillPath(shape, theme.colour(Role::paperCard));
    painter.strokePath(shape, QPen(theme.colour(Role::ink, Strength::outline), Measure::outline));
    painter.restore();
}

QRegion menuRegion(const QRect& bounds)
{
    return QRegion(cutPath(bounds, buttonCorners).toFillPolygon().toPolygon());
}

void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& item, const Theme& theme)
{
    if (isDivider(item)) {
        painter.fillRect(item.rect.left() + Measure::small, item.rect.center().y(),
                         item.rect.width() - 2 * Measure::small, 1,
                         theme.colour(Role::ink, Strength::edge));
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isEnabled = item.state.testFlag(QStyle::State_Enabled);
    if (isEnabled && item.state.testFlag(QStyle::State_Selected)) {
        painter.fillPath(cutPath(item.rect, itemCorners), theme.colour(Role::paperInset));
    }
    painter.setOpacity(isEnabled ? Strength::full : Strength::disabled);
    if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked) {
        const double top = item.rect.center().y() + 1 - Measure::smallIconSize / 2.0;
        drawIcon(painter, QPointF(item.rect.left() + Measure::small, top), Icon::check,
                 theme.colour(Role::accent), Measure::smallIconSize);
    }
    const QStringList parts = item.text.split(QLatin1Char('\t'));
    const QRect text = item.rect.adjusted(textInset(item), 0, -Measure::medium, 0);
    painter.setFont(item.font);
    painter.setPen(theme.colour(Role::ink));
    painter.drawText(text,
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic,
                     parts.constFirst());
    if (parts.size() > 1) {
        painter.setPen(theme.colour(Role::ink, Strength::quiet));
        painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                         parts.constLast());
    }
    painter.restore();
}

QSize menuItemSize(const QStyleOptionMenuItem& item, const QSize& words)
{
    if (isDivider(item)) {
        return {words.width(), dividerHeight};
    }
    const int gap = item.text.contains(QLatin1Char('\t')) ? Measure::wide : 0;
    return {textInset(item) + words.width() + gap + Measure::medium,
            std::max(itemHeight, words.height())};
}

}  // namespace gruk
