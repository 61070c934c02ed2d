#include "app/theme/picker.h"

#include <algorithm>

#include <QAbstractItemView>
#include <QPainter>
#include <QWheelEvent>

#include "app/theme/card_painter.h"
#include "app/theme/icons.h"

namespace gruk {

namespace {

}  // namespace

Picker::Picker(Theme& theme, const QStringList& labels, const QString& accessibleName,
               QWidget* parent)
    : QComboBox(parent), theme_(theme)
{
    setFont(theme_.font(TextStyle::body));
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    addItems(labels);
    view()->setAccessibleName(accessibleName);
    view()->setFont(font());
    recolour();
    connect(&theme_, &Theme::changed, this, &Picker::recolour);
}

void Picker::recolour()
{
    // The list is a window of its own, which no palette of this one reaches.
    QPalette colours = theme_.windowPalette();
    colours.setColor(QPalette::Window, theme_.colour(Role::paperCard));
    view()->window()->setPalette(colours);
    view()->setPalette(colours);
    update();
}

QSize Picker::sizeHint() const
{
    int widest = 0;
    for (int index = 0; index < count(); ++index) {
        widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(index)));
    }
    return {widest + 1 + 2 * Measure::medium + Measure::small + Measure::smallIconSize,
            Measure::buttonHeight};
}

void Picker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? Strength::full : Strength::disabled);
    const double half = Measure::outline / 2;
    const QRectF body = QRectF(rect()).adjusted(half, half, -half, -half);
    const QPainterPath shape = cutPath(body, buttonCorners);
    painter.fillPath(shape, theme_.colour(underMouse() ? Role::paperInset : Role::paperCard));
    painter.strokePath(shape, QPen(theme_.colour(Role::ink, Strength::outline), Measure::outline));

    const int right = width() - Measure::medium - Measure::smallIconSize;
    drawIcon(painter, QPointF(right, (height() - Measure::smallIconSize) / 2.0), Icon::chevronDown,
             theme_.colour(Role::ink, Strength::quiet), Measure::smallIconSize);
    const QRect text(Measure::medium, 0, right - Measure::small - Measure::medium, height());
    painter.setPen(theme_.colour(Role::ink));
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(currentText(), Qt::ElideRight, text.width()));
}

void Picker::wheelEvent(QWheelEvent* event)
{
    if (hasFocus()) {
        QComboBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

}  // namespace gruk
