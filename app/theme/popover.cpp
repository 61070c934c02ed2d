#include "app/theme/popover.h"

#include <algorithm>

#include "app/theme/card.h"

namespace gruk {

QRect placeBeside(const QRect& anchor, const QSize& size, const QRect& window)
{
    const int gap = Measure::hair;
    const int rightmost = window.right() + 1 - gap - size.width();
    const int lowest = window.bottom() + 1 - gap - size.height();
    const int left = std::clamp(anchor.left(), gap, std::max(gap, rightmost));
    const int under = anchor.bottom() + 1 + gap;
    const int over = anchor.top() - gap - size.height();
    int top = under;
    if (under > lowest) {
        top = over >= gap ? over : std::max(gap, lowest);
    }
    return {QPoint(left, top), size};
}

Popover::Popover(Theme& theme, const QString& accessibleName, QWidget& anchor)
    : Overlay(theme, accessibleName, &anchor), anchor_(&anchor)
{
}

void Popover::placeCard()
{
    if (anchor_ == nullptr) {
        return;
    }
    const QRect anchor(anchor_->mapTo(parentWidget(), QPoint()), anchor_->size());
    const QSize room = rect().size() - QSize(2 * Measure::hair, 2 * Measure::hair);
    card().setGeometry(placeBeside(anchor, cardSize().boundedTo(room), rect()));
}

}  // namespace gruk
