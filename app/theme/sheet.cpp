#include "app/theme/sheet.h"

#include "app/theme/card.h"

namespace gruk {

Sheet::Sheet(Theme& theme, const QString& accessibleName, QWidget* owner)
    : Overlay(theme, accessibleName, owner)
{
}

void Sheet::setCardSize(const QSize& size)
{
    size_ = size;
    placeCard();
}

void Sheet::placeCard()
{
    const QMargins edge(Measure::large, Measure::large, Measure::large, Measure::large);
    const QSize room = rect().marginsRemoved(edge).size();
    QRect place(QPoint(), size_.value_or(cardSize()).boundedTo(room));
    place.moveCenter(rect().center());
    card().setGeometry(place);
}

}  // namespace gruk
