#include "app/theme/sheet.h"

#include "app/theme/card.h"

namespace gruk {

Sheet::Sheet(Theme& theme, const QString& accessibleName, QWidget* anyWidget)
    : Overlay(theme, accessibleName, anyWidget)
{
}

void Sheet::setCardSize(const QSize& size)
{
    size_ = size;
    placeCard();
}

void Sheet::placeCard()
{
    const QSize size = size_ ? size_->boundedTo(rect().size()) : cardSize();
    QRect place(QPoint(), size);
    place.moveCenter(rect().center());
    card().setGeometry(place);
}

}  // namespace gruk
