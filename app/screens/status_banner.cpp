#include "app/screens/status_banner.h"

#include <algorithm>
#include <utility>

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "app/theme/accessible.h"
#include "app/theme/card_painter.h"
#include "app/theme/label.h"
#include "app/theme/tab_order.h"

namespace gruk {

namespace {

/// The icon on the first line of the words.
QWidget* beside(QWidget* icon, QLabel* words)
{
    const int above = std::max(0, (Measure::iconSize - words->fontMetrics().height()) / 2);
    words->setContentsMargins(0, above, 0, above);
    auto* both = new QWidget;
    auto* row = new QHBoxLayout(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(words, 1);
    return both;
}

}  // namespace

StatusBanner::StatusBanner(Theme& theme, Role colour, Icon icon, QWidget* parent)
    : Card(theme, Measure::medium, parent), colour_(colour),
      message_(new Label(theme, TextStyle::body)),
      button_(new Button(theme, Button::Kind::secondary, {}))
{
    setAccessibleRole(*this, QAccessible::Notification);
    auto* symbol = new IconLabel(theme, icon, Measure::iconSize);
    message_->setWordWrap(true);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::small, 0, 0, 0);
    column->setSpacing(Measure::small);
    auto* row = new QHBoxLayout;
    choices_ = new QHBoxLayout;
    // Under the words, not under the icon.
    choices_->setContentsMargins(Measure::iconSize + Measure::medium, 0, 0, 0);
    choices_->setSpacing(Measure::small);
    column->addLayout(row, 1);
    column->addLayout(choices_);
    row->setSpacing(Measure::medium);
    // In the middle of whatever is higher, but never itself as high as the window has room.
    row->addWidget(beside(symbol, message_), 1, Qt::AlignVCenter);
    row->addWidget(button_, 0, Qt::AlignVCenter);
    connect(button_, &QPushButton::clicked, this, [this] {
        // The action changes what the banner shows, and with it the action.
        const BannerAction action = action_;
        action.run();
    });
    hide();
}

void StatusBanner::setMessage(const QString& message, BannerAction action)
{
    const bool isAnother = message_->text() != message;
    message_->setText(message);
    setAccessibleName(message);
    action_ = std::move(action);
    button_->setText(action_.label);
    button_->setAccessibleName(action_.spokenName);
    giveToolTip(*button_, action_.description);
    if (action_.description.isEmpty()) {
        button_->setAccessibleDescription(message);
    }
    button_->updateGeometry();
    button_->setVisible(static_cast<bool>(action_.run));
    const bool wasVisible = isVisible();
    setVisible(!message.isEmpty());
    if (wasVisible && isAnother) {
        announce(*this);
    }
}

void StatusBanner::setChoices(const std::vector<BannerAction>& choices)
{
    std::vector<QString> labels;
    for (const BannerAction& choice : choices) {
        labels.push_back(choice.label);
    }
    if (labels == shownChoices_) {
        // Only then, so that the focus stays on a button that is still right.
        return;
    }
    shownChoices_ = labels;
    while (QLayoutItem* item = choices_->takeAt(0)) {
        if (QWidget* former = item->widget()) {
            former->hide();
            former->deleteLater();
        }
        delete item;
    }
    std::vector<QWidget*> stops = {button_};
    for (const BannerAction& choice : choices) {
        auto* button = new Button(theme(), Button::Kind::secondary, choice.label);
        button->setAccessibleDescription(message_->text());
        connect(button, &QPushButton::clicked, this, [run = choice.run] { run(); });
        choices_->addWidget(button);
        stops.push_back(button);
    }
    if (!choices.empty()) {
        choices_->addStretch(1);
    }
    chainTabStops(stops);
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
