#include "app/screens/drop_notice.h"

#include <algorithm>

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>

#include "app/model/app_model.h"
#include "app/screens/dropped_folders.h"
#include "app/theme/accessible.h"
#include "app/theme/card.h"
#include "app/theme/card_painter.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

constexpr double frameLine = 2;

/// A card that hides what lies under it.
class NoticeCard : public Card {
public:
    NoticeCard(Theme& theme, QWidget* parent) : Card(theme, Measure::wide, parent) {}

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(cutPath(cardBody(rect()), cardCorners), theme().colour(Role::paper));
        painter.end();
        Card::paintEvent(event);
    }
};

}  // namespace

DropNotice::DropNotice(Theme& theme, QWidget& window)
    : QWidget(&window), theme_(theme), card_(new NoticeCard(theme, this)),
      symbol_(new IconLabel(theme, Icon::folderAdd, Measure::largeIconSize)),
      words_(paragraph(theme, TextStyle::lead))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::Notification);
    words_->setMinimumWidth(Measure::dialogTextWidth);
    auto* row = new QHBoxLayout(card_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(symbol_, 0, Qt::AlignTop);
    row->addWidget(words_, 1);
    hide();
    window.installEventFilter(this);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void DropNotice::showFor(const std::vector<FileURL>& places)
{
    const auto takesAny = std::ranges::any_of(places, AppModel::couldBeRealm);
    symbol_->setIcon(takesAny ? Icon::folderAdd : Icon::warning);
    const QString text = dropSentence(places);
    words_->setText(text);
    setAccessibleName(text);
    place();
    raise();
    show();
}

void DropNotice::place()
{
    setGeometry(parentWidget()->rect());
    const int room = width() - 2 * Measure::pageMargin;
    const int wide = std::min(card_->sizeHint().width(), room);
    QRect bounds(0, 0, wide, card_->heightForWidth(wide));
    bounds.moveCenter(rect().center());
    card_->setGeometry(bounds);
}

bool DropNotice::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

void DropNotice::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), theme_.colour(Role::paper, Strength::quiet));
    const double inset = Measure::small;
    painter.strokePath(
        cutPath(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cardCorners),
        QPen(theme_.colour(Role::accent), frameLine, Qt::DashLine, Qt::RoundCap, Qt::RoundJoin));
}

}  // namespace gruk
