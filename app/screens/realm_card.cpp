#include "app/screens/realm_card.h"

#include <cmath>

#include <QKeyEvent>
#include <QPainter>

#include "app/screens/territory_copy.h"
#include "app/theme/button.h"
#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"
#include "app/theme/land_painter.h"
#include "app/theme/shield_painter.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

constexpr int cardHeightPixels = 76;
/// How far a lifted card rises toward the light, and how far its shadow falls then.
constexpr double lift = 1;
constexpr double liftedShadow = Measure::shadowOffset + 2 * lift;
constexpr double liftedOutline = 1.5;
constexpr QSizeF cardLand{52, 56};
constexpr double cardShield = 36;

}  // namespace

RealmCard::RealmCard(Theme& theme, QWidget* parent)
    : QPushButton(parent), theme_(theme), press_(new GrukTactileButtonStyle(theme, *this))
{
    setFixedHeight(cardHeightPixels);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

int RealmCard::cardHeight()
{
    return cardHeightPixels;
}

void RealmCard::showRealm(const RealmSummary& realm, const RealmIdentity& identity)
{
    realm_ = realm;
    identity_ = identity;
    name_ = displayName(realm.displayName);
    detail_ = TerritoryCopy::mappedAndFindings(realm);
    setAccessibleName(name_ + QStringLiteral(", ") + detail_);
    // The place tells apart two realms of one name.
    setAccessibleDescription(displayName(realm.path));
    setToolTip(toolTipText(name_ + QLatin1Char('\n') + displayName(realm.path)));
    update();
}

void RealmCard::setLifted(bool isLifted)
{
    if (isLifted != isLifted_) {
        isLifted_ = isLifted;
        update();
    }
}

QSize RealmCard::sizeHint() const
{
    return {Measure::sidebarWidth, cardHeightPixels};
}

QSize RealmCard::minimumSizeHint() const
{
    return {Measure::realmRowHeight, cardHeightPixels};
}

void RealmCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = cardBody(rect());
    press_->apply(painter, body);
    if (!isDown() && (isLifted_ || underMouse())) {
        painter.translate(-lift, -lift);
        const QPainterPath shape = cutPath(body, cardCorners);
        painter.fillPath(shape.translated(liftedShadow, liftedShadow).subtracted(shape),
                         theme_.colour(Role::ink, Strength::shadow));
    }
    paintCard(painter, rect(), theme_);
    if (isLifted_) {
        const double half = liftedOutline / 2;
        painter.strokePath(cutPath(body.adjusted(half, half, -half, -half), cardCorners),
                           QPen(theme_.colour(Role::ink), liftedOutline));
    }

    // On whole pixels, so that they come out sharp.
    const QRectF land(QPointF(body.left() + Measure::small,
                              std::round(body.center().y() - cardLand.height() / 2)),
                      cardLand);
    paintLand(painter, land, identity_, theme_);
    const QPointF corner = land.center() - QPointF(cardShield / 2, cardShield / 2);
    paintShield(painter, {corner, QSizeF(cardShield, cardShield)}, identity_, theme_);
    paintTexts(painter, QRectF(QPointF(land.right() + Measure::small, body.top()),
                               body.bottomRight() - QPointF(Measure::small, 0)));
}

void RealmCard::paintTexts(QPainter& painter, const QRectF& room) const
{
    const QFont nameFont = theme_.font(TextStyle::lead);
    const QFont detailFont = theme_.font(TextStyle::detail);
    const QFontMetricsF nameMetrics(nameFont);
    const QFontMetricsF detailMetrics(detailFont);
    // Two lines where one is too narrow for all of it.
    const QRectF detailRoom(0, 0, room.width(), room.height() - nameMetrics.height());
    const QRectF detail = detailMetrics.boundingRect(detailRoom, Qt::TextWordWrap, detail_);
    const double top = std::round(room.center().y() - (nameMetrics.height() + detail.height()) / 2);
    painter.setFont(nameFont);
    painter.setPen(theme_.colour(Role::ink));
    painter.drawText(QRectF(room.left(), top, room.width(), nameMetrics.height()),
                     Qt::TextSingleLine,
                     nameMetrics.elidedText(name_, Qt::ElideMiddle, room.width()));
    painter.setFont(detailFont);
    painter.setPen(theme_.colour(Role::ink, Strength::quiet));
    painter.drawText(detailRoom.translated(room.left(), top + nameMetrics.height()),
                     Qt::TextWordWrap, detail_);
}

void RealmCard::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QPushButton::keyPressEvent(event);
    }
}

void RealmCard::enterEvent(QEnterEvent* event)
{
    QPushButton::enterEvent(event);
    Q_EMIT pointedAt(true);
}

void RealmCard::leaveEvent(QEvent* event)
{
    QPushButton::leaveEvent(event);
    Q_EMIT pointedAt(false);
}

void RealmCard::focusInEvent(QFocusEvent* event)
{
    QPushButton::focusInEvent(event);
    Q_EMIT pointedAt(true);
}

void RealmCard::focusOutEvent(QFocusEvent* event)
{
    QPushButton::focusOutEvent(event);
    Q_EMIT pointedAt(false);
}

}  // namespace gruk
