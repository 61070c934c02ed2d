#include "app/theme/house_style.h"

#include <algorithm>

#include <QApplication>
#include <QPainter>
#include <QStyleOptionSlider>
#include <QToolTip>

namespace gruk {

namespace {

constexpr int barExtent = 12;
constexpr int barInset = 3;
constexpr int shortestHandle = 32;
constexpr double restingStrength = 0.22;
constexpr double touchedStrength = 0.42;

QRect handleRect(const QStyleOptionSlider& bar)
{
    const bool isUpright = bar.orientation == Qt::Vertical;
    const int length = isUpright ? bar.rect.height() : bar.rect.width();
    const auto range = static_cast<qint64>(bar.maximum) - bar.minimum;
    qint64 handle = length;
    if (range > 0) {
        handle = std::max<qint64>(std::min(shortestHandle, length),
                                  qint64{length} * bar.pageStep / (range + bar.pageStep));
    }
    const int size = static_cast<int>(handle);
    const int at = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                   length - size, bar.upsideDown);
    return isUpright ? QRect(bar.rect.x(), bar.rect.y() + at, bar.rect.width(), size)
                     : QRect(bar.rect.x() + at, bar.rect.y(), size, bar.rect.height());
}

/// The groove before or behind the handle.
QRect pageRect(const QStyleOptionSlider& bar, bool isBefore)
{
    const QRect handle = handleRect(bar);
    QRect rest = bar.rect;
    if (bar.orientation == Qt::Vertical) {
        isBefore ? rest.setBottom(handle.top() - 1) : rest.setTop(handle.bottom() + 1);
    } else {
        isBefore ? rest.setRight(handle.left() - 1) : rest.setLeft(handle.right() + 1);
    }
    return rest;
}

}  // namespace

void installHouseStyle(const Theme& theme)
{
    QApplication::setStyle(new HouseStyle);
    QApplication::setFont(theme.font(TextStyle::body));
    const auto dressToolTips = [&theme] { QToolTip::setPalette(theme.windowPalette()); };
    QObject::connect(&theme, &Theme::changed, qApp, dressToolTips);
    dressToolTips();
}

HouseStyle::HouseStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const
{
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    painter->fillRect(bar->rect, bar->palette.window());
    if (bar->maximum <= bar->minimum) {
        return;
    }
    const bool isTouched =
        bar->state.testFlag(State_MouseOver) || bar->activeSubControls.testFlag(SC_ScrollBarSlider);
    QColor ink = bar->palette.color(QPalette::WindowText);
    ink.setAlphaF(static_cast<float>(isTouched ? touchedStrength : restingStrength));
    const QRectF handle =
        QRectF(handleRect(*bar)).adjusted(barInset, barInset, -barInset, -barInset);
    const double radius = std::min(handle.width(), handle.height()) / 2;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ink);
    painter->drawRoundedRect(handle, radius, radius);
    painter->restore();
}

QRect HouseStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                 SubControl part, const QWidget* widget) const
{
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        return QProxyStyle::subControlRect(control, option, part, widget);
    }
    switch (part) {
    case SC_ScrollBarSlider:
        return handleRect(*bar);
    case SC_ScrollBarSubPage:
        return pageRect(*bar, true);
    case SC_ScrollBarAddPage:
        return pageRect(*bar, false);
    case SC_ScrollBarGroove:
        return bar->rect;
    default:
        return {};
    }
}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const
{
    return metric == PM_ScrollBarExtent ? barExtent
                                        : QProxyStyle::pixelMetric(metric, option, widget);
}

}  // namespace gruk
