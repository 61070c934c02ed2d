#include "app/theme/house_style.h"

#include <algorithm>

#include <QApplication>
#include <QFrame>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionMenuItem>
#include <QStyleOptionSlider>
#include <QToolTip>

#include "app/theme/menu_painter.h"

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

int wordsWidth(const QStyleOptionMenuItem& item)
{
    return QFontMetrics(item.font).horizontalAdvance(item.text);
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
    QApplication::setStyle(new HouseStyle(theme));
    QApplication::setFont(theme.font(TextStyle::body));
    const auto dressToolTips = [&theme] { QToolTip::setPalette(theme.windowPalette()); };
    QObject::connect(&theme, &Theme::changed, qApp, dressToolTips);
    dressToolTips();
}

HouseStyle::HouseStyle(const Theme& theme) : QProxyStyle(QStringLiteral("Fusion")), theme_(theme) {}

void HouseStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QScrollBar*>(widget) != nullptr) {
        // Whatever it lies on, paper or card, shows through it.
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
    if (qobject_cast<QMenu*>(widget) != nullptr) {
        // Only so are its corners cut.
        widget->setAttribute(Qt::WA_TranslucentBackground);
    }
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const
{
    if (element == PE_PanelMenu) {
        paintMenuPanel(*painter, option->rect, theme_,
                       widget != nullptr && widget->testAttribute(Qt::WA_TranslucentBackground));
    } else if (element != PE_FrameMenu) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const
{
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && item != nullptr) {
        paintMenuItem(*painter, *item, theme_);
    } else if (element != CE_MenuEmptyArea) {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                   const QSize& contents, const QWidget* widget) const
{
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || item == nullptr) {
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
    // What a picker offers is asked for with the size of the whole list.
    const bool isInMenu = qobject_cast<const QMenu*>(widget) != nullptr;
    return menuItemSize(*item, isInMenu ? contents : QSize(wordsWidth(*item), 0));
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returnData) const
{
    if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returnData);
        hint == SH_Menu_Mask && mask != nullptr && option != nullptr) {
        // Without a compositor what is see-through comes out black: so that is cut away.
        mask->region = menuRegion(option->rect);
        return 1;
    }
    return hint == SH_ComboBox_PopupFrameStyle
               ? static_cast<int>(QFrame::NoFrame)
               : QProxyStyle::styleHint(hint, option, widget, returnData);
}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const
{
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
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
    switch (metric) {
    case PM_ScrollBarExtent:
        return barExtent;
    case PM_MenuPanelWidth:
        return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return menuMargin;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

}  // namespace gruk
