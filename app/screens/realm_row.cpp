#include "app/screens/realm_row.h"

#include <cmath>

#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "app/screens/shield_view.h"
#include "app/theme/accessible.h"
#include "app/theme/button.h"
#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"
#include "app/theme/shield_painter.h"
#include "app/theme/text.h"
#include "platform/foundation/file_url.h"

namespace gruk {

namespace {

QString realmName(const Grant& grant)
{
    return displayName(FileURL::directory(grant.path).standardized().lastPathComponent());
}

}  // namespace

RealmRow::RealmRow(Theme& theme, const Grant& grant, const RealmIdentity& identity, QWidget* parent)
    : QPushButton(parent), theme_(theme), press_(new GrukTactileButtonStyle(theme, *this)),
      identity_(identity), name_(realmName(grant)), path_(displayName(grant.path))
{
    setAccessibleName(name_);
    giveToolTip(*this, path_);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFixedHeight(Measure::realmRowHeight);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void RealmRow::setIdentity(const RealmIdentity& identity)
{
    if (identity_ != identity) {
        identity_ = identity;
        update();
    }
}

void RealmRow::setActive(bool isActive)
{
    isActive_ = isActive;
    setAccessibleDescription(isActive ? QStringLiteral("Selected, %1").arg(path_) : path_);
    update();
}

QSize RealmRow::sizeHint() const
{
    return {Measure::sidebarWidth - 2 * Measure::medium, Measure::realmRowHeight};
}

QSize RealmRow::minimumSizeHint() const
{
    return {Measure::huge, Measure::realmRowHeight};
}

void RealmRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = cardBody(rect());
    press_->apply(painter, body);
    if (isActive_) {
        paintCard(painter, rect(), theme_);
        const QRectF bar(body.left(), body.top() + Measure::medium, Measure::activeBar,
                         body.height() - 2 * Measure::medium);
        QPainterPath shape;
        shape.addRect(bar);
        painter.fillPath(shape.intersected(cutPath(body, cardCorners)),
                         theme_.colour(Role::accent));
    } else if (underMouse()) {
        painter.fillPath(cutPath(body, cardCorners), theme_.colour(Role::ink, Strength::shadow));
    }

    // On whole pixels, so that it comes out sharp.
    const QRectF shield(body.left() + Measure::medium,
                        std::round(body.center().y() - Measure::realmRowShield / 2.0),
                        Measure::realmRowShield, Measure::realmRowShield);
    paintShield(painter, shield, identity_, theme_);
    paintTexts(painter, QRectF(QPointF(shield.right() + Measure::small, body.top()),
                               body.bottomRight() - QPointF(Measure::medium, 0)));
}

void RealmRow::paintTexts(QPainter& painter, const QRectF& text) const
{
    const QFont nameFont = theme_.font(TextStyle::bodyStrong);
    const QFont pathFont = theme_.font(TextStyle::small);
    const QFontMetrics nameMetrics(nameFont);
    const QFontMetrics pathMetrics(pathFont);
    const int width = static_cast<int>(text.width());
    double top = text.center().y() - (nameMetrics.height() + pathMetrics.height()) / 2.0;
    painter.setFont(nameFont);
    painter.setPen(theme_.colour(Role::ink));
    painter.drawText(QRectF(text.left(), top, width, nameMetrics.height()), Qt::TextSingleLine,
                     nameMetrics.elidedText(name_, Qt::ElideMiddle, width));
    top += nameMetrics.height();
    painter.setFont(pathFont);
    painter.setPen(theme_.colour(Role::ink, Strength::quiet));
    painter.drawText(QRectF(text.left(), top, width, pathMetrics.height()), Qt::TextSingleLine,
                     pathMetrics.elidedText(path_, Qt::ElideMiddle, width));
}

void RealmRow::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QPushButton::keyPressEvent(event);
    }
}

DisconnectedRealmRow::DisconnectedRealmRow(Theme& theme, const Grant& grant,
                                           const RealmIdentity& identity,
                                           const std::optional<FileURL>& nowCalled, QWidget* parent)
    : QWidget(parent), shield_(new RealmShieldView(theme, identity))
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setFixedHeight(Measure::realmRowHeight);
    shield_->setFixedSize(shield_->sizeHint());
    shield_->setOpacity(Strength::disconnected);
    const QString path = displayName(grant.path);
    auto* name = new ElidedLabel(theme, TextStyle::bodyStrong, Qt::ElideMiddle);
    name->setFullText(realmName(grant));
    giveToolTip(*name, path);
    name->setColour(Role::ink, Strength::disconnected);

    auto* line = new QHBoxLayout;
    line->setSpacing(Measure::small);
    line->addWidget(name, 1);
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    column->addStretch();
    column->addLayout(line);
    if (nowCalled) {
        auto* renamed = new ElidedLink(theme, TextStyle::small);
        renamed->setFullText(QStringLiteral("It is now called %1…")
                                 .arg(displayName(nowCalled->lastPathComponent())));
        renamed->setAccessibleDescription(path);
        connect(renamed, &QPushButton::clicked, this, &DisconnectedRealmRow::renamingRequested);
        column->addWidget(renamed);
    } else {
        auto* state = new ElidedLabel(theme, TextStyle::small, Qt::ElideRight);
        state->setFullText(QStringLiteral("⚠︎ Disconnected"));
        state->setColour(Role::ink, Strength::disconnected);
        auto* again = new Button(theme, Button::Kind::link, QStringLiteral("Grant again…"));
        again->setAccessibleDescription(path);
        connect(again, &QPushButton::clicked, this, &DisconnectedRealmRow::regrantRequested);
        // Beside the name, which gives way: what happened has to be read in full.
        line->addWidget(again);
        column->addWidget(state);
    }
    column->addStretch();
    auto* row = new QHBoxLayout(this);
    // As far from the left as in the row of a realm that is there.
    row->setContentsMargins(Measure::medium + 1, Measure::hair, Measure::medium, Measure::hair);
    row->setSpacing(Measure::small);
    row->addWidget(shield_);
    row->addLayout(column, 1);
    setAccessibleName(QStringLiteral("%1, disconnected").arg(realmName(grant)));
}

void DisconnectedRealmRow::setIdentity(const RealmIdentity& identity)
{
    shield_->setIdentity(identity);
}

}  // namespace gruk
