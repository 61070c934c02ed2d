#pragma once

#include <QProxyStyle>

#include "app/theme/theme.h"

namespace gruk {

/// Dresses what the toolkit draws itself (menus, tooltips, scroll bars, dialogs), the same on every
/// desktop. `theme` must live as long as the application shows anything.
void installHouseStyle(const Theme& theme);

/// The toolkit's plainest style with a scroll bar that is one quiet bar.
class HouseStyle : public QProxyStyle {
    Q_OBJECT

public:
    HouseStyle();

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl part, const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
};

}  // namespace gruk
