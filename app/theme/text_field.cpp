#include "app/theme/text_field.h"

#include <QAction>
#include <QPainter>
#include <QPixmap>

#include "app/theme/card_painter.h"

namespace gruk {

namespace {

constexpr double refusedWidth = 2;
constexpr int shortestText = 96;
constexpr int usualText = 200;

QIcon iconOf(Icon icon, const QColor& colour, qreal ratio)
{
    QPixmap picture(QSize(Measure::smallIconSize, Measure::smallIconSize) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawIcon(painter, {}, icon, colour, Measure::smallIconSize);
    return picture;
}

}  // namespace

TextField::TextField(Theme& theme, const QString& placeholder, const QString& accessibleName,
                     QWidget* parent)
    : QLineEdit(parent), theme_(theme)
{
    setFont(theme_.font(TextStyle::body));
    setPlaceholderText(placeholder);
    setAccessibleName(accessibleName);
    setFrame(false);
    setTextMargins(Measure::small, 0, Measure::small, 0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    recolour();
    connect(&theme_, &Theme::changed, this, &TextField::recolour);
}

void TextField::setSymbol(Icon icon)
{
    symbol_ = icon;
    setTextMargins(2 * Measure::small + Measure::smallIconSize - Measure::hair, 0, Measure::small,
                   0);
    update();
}

void TextField::setClearable()
{
    clear_ = addAction(QIcon(), QLineEdit::TrailingPosition);
    clear_->setText(QStringLiteral("Clear"));
    clear_->setVisible(!text().isEmpty());
    connect(clear_, &QAction::triggered, this, [this] {
        clear();
        setFocus();
    });
    connect(this, &QLineEdit::textChanged, clear_,
            [this](const QString& text) { clear_->setVisible(!text.isEmpty()); });
    recolour();
}

void TextField::setRefused(bool isRefused)
{
    isRefused_ = isRefused;
    update();
}

void TextField::recolour()
{
    QPalette colours = theme_.windowPalette();
    colours.setColor(QPalette::Base, Qt::transparent);
    setPalette(colours);
    if (clear_ != nullptr) {
        clear_->setIcon(
            iconOf(Icon::close, theme_.colour(Role::ink, Strength::quiet), devicePixelRatioF()));
    }
}

QSize TextField::sizeHint() const
{
    return {usualText + 2 * Measure::medium, Measure::buttonHeight};
}

QSize TextField::minimumSizeHint() const
{
    return {shortestText + 2 * Measure::medium, Measure::buttonHeight};
}

void TextField::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(isEnabled() ? Strength::full : Strength::disabled);
        const double half = Measure::outline / 2;
        const QRectF body = QRectF(rect()).adjusted(half, half, -half, -half);
        const QPainterPath shape = cutPath(body, buttonCorners);
        painter.fillPath(shape, theme_.colour(Role::paper));
        // Where one writes shows for the pointer too.
        const QColor outline = isRefused_   ? theme_.colour(Role::red)
                               : hasFocus() ? theme_.colour(Role::blue)
                                            : theme_.colour(Role::ink, Strength::outline);
        painter.strokePath(shape, QPen(outline, isRefused_ ? refusedWidth : Measure::outline));
        if (symbol_) {
            drawIcon(painter, QPointF(Measure::small, (height() - Measure::smallIconSize) / 2.0),
                     *symbol_, theme_.colour(Role::ink, Strength::quiet), Measure::smallIconSize);
        }
    }
    QLineEdit::paintEvent(event);
}

}  // namespace gruk
