#include "app/theme/card.h"

#include <QHBoxLayout>
#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/label.h"

namespace gruk {

Card::Card(Theme& theme, int padding, QWidget* parent) : QWidget(parent), theme_(theme)
{
    const int far = padding + Measure::shadowOffset;
    setContentsMargins(padding, padding, far, far);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Card::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintCard(painter, rect(), theme_);
}

StatusBanner::StatusBanner(Theme& theme, Role colour, Icon icon, QWidget* parent)
    : Card(theme, Measure::medium, parent), colour_(colour),
      message_(new Label(theme, TextStyle::body))
{
    auto* symbol = new IconLabel(theme, icon, Measure::iconSize);
    message_->setWordWrap(true);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Measure::small, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addWidget(message_, 1, Qt::AlignVCenter);
    hide();
}

void StatusBanner::setMessage(const QString& message)
{
    message_->setText(message);
    setVisible(!message.isEmpty());
}

void StatusBanner::paintEvent(QPaintEvent* event)
{
    Card::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = cardBody(rect());
    painter.setClipRect(QRectF(body.left(), body.top(), Measure::bannerBar, body.height()));
    painter.fillPath(cutPath(body, cardCorners), theme().colour(colour_));
}

}  // namespace gruk
