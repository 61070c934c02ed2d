#include "app/screens/palette_row.h"

#include <array>

#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/icons.h"
#include "app/theme/tactile_press.h"

namespace gruk {

namespace {

constexpr int rowHeight = 40;
constexpr int swatchDot = 18;
/// How far one dot lies from the next.
constexpr int dotStep = 22;
constexpr std::array swatch = {Role::paper, Role::fernDark,   Role::fern, Role::blue,
                               Role::plum,  Role::terracotta, Role::red,  Role::yellow};
constexpr int swatchWidth = (static_cast<int>(swatch.size()) - 1) * dotStep + swatchDot;

}  // namespace

PaletteRow::PaletteRow(Theme& theme, AppPaletteTheme palette, QWidget* parent)
    : QRadioButton(label(palette), parent), theme_(theme), palette_(palette),
      press_(new GrukTactileButtonStyle(theme, *this))
{
    setFont(theme_.font(TextStyle::bodyStrong));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize PaletteRow::sizeHint() const
{
    const int name = fontMetrics().horizontalAdvance(text());
    return {name + swatchWidth + Measure::smallIconSize + 4 * Measure::medium, rowHeight};
}

void PaletteRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double half = Measure::outline / 2;
    const QRectF body = QRectF(rect()).adjusted(half, half, -half, -half);
    press_->apply(painter, body);
    if (isChecked() || underMouse()) {
        const QPainterPath shape = cutPath(body, buttonCorners);
        painter.fillPath(shape, theme_.colour(Role::paperInset));
        if (isChecked()) {
            painter.strokePath(shape, QPen(theme_.colour(Role::accent), Measure::outline));
        }
    }
    const double middle = body.center().y();
    if (isChecked()) {
        drawIcon(painter, QPointF(Measure::medium, middle - Measure::smallIconSize / 2.0),
                 Icon::check, theme_.colour(Role::accent), Measure::smallIconSize);
    }
    const int left = 2 * Measure::medium + Measure::smallIconSize;
    painter.setPen(theme_.colour(Role::ink));
    painter.drawText(rect().adjusted(left, 0, -swatchWidth - 2 * Measure::medium, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
    paintSwatch(painter);
}

void PaletteRow::paintSwatch(QPainter& painter) const
{
    painter.setPen(QPen(theme_.colour(Role::ink, Strength::outline), Measure::outline));
    double left = width() - Measure::medium - swatchWidth;
    for (const Role role : swatch) {
        painter.setBrush(QColor::fromRgb(paletteColour(role, palette_, theme_.scheme())));
        painter.drawEllipse(QRectF(left, (height() - swatchDot) / 2.0, swatchDot, swatchDot));
        left += dotStep;
    }
}

}  // namespace gruk
