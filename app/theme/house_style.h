#pragma once

#include <QProxyStyle>

#include "app/theme/theme.h"

namespace gruk {

/// Dresses what the toolkit draws itself (menus, tooltips, scroll bars, dialogs), the same on every
/// desktop. `theme` must live as long as the application shows anything.
void installHouseStyle(const Theme& theme);

/// The toolkit's plainest style with a scroll bar that is one quiet bar, and with menus (and what a
/// picker offers) that are a card of the theme in force, whatever palette their window has.
/// Borrows the theme.
class HouseStyle : public QProxyStyle {
    Q_OBJECT

public:
    explicit HouseStyle(const Theme& theme);

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                         const QSize& contents,
                                         const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returnData) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl part, const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;

private:
    const Theme& theme_;
};

}  // namespace gruk
