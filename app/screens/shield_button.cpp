#include "app/screens/shield_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "app/screens/repaint_once.h"
#include "app/screens/shield_copy.h"
#include "app/screens/shield_editor.h"
#include "app/theme/accessible.h"
#include "app/theme/button.h"
#include "app/theme/key_press.h"
#include "app/theme/land_painter.h"
#include "app/theme/shield_painter.h"
#include "app/theme/text.h"

namespace gruk {

ShieldButton::ShieldButton(AppModel& model, Theme& theme, QWidget* parent)
    : QAbstractButton(parent), model_(model), theme_(theme),
      press_(new GrukTactileButtonStyle(theme, *this))
{
    setObjectName(QStringLiteral("shieldButton"));
    const QString invitation = QStringLiteral("Customise this realm's shield");
    setAccessibleName(invitation);
    giveToolTip(*this, invitation);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setFixedSize(sizeHint());
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    connect(this, &QAbstractButton::clicked, this,
            [this] { openShieldEditor(model_, theme_, *this); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::realmIdentityStoreChanged);
    repaint->on(model_, &AppModel::activeRootURLChanged);
    showModel();
}

QSize ShieldButton::sizeHint() const
{
    return {Measure::headerShield, Measure::headerShield};
}

void ShieldButton::showModel()
{
    setEnabled(model_.activeRootURL().has_value());
    setAccessibleDescription(describeShield(model_.activeRealmIdentity()));
    update();
}

void ShieldButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    press_->apply(painter, rect());
    const RealmIdentity identity = model_.activeRealmIdentity();
    // Under the pointer the land of the realm shows that there is something to be had here.
    if (underMouse()) {
        paintLand(painter, landCanvas(rect()), identity, theme_);
    }
    const double inset = Measure::hair;
    paintShield(painter, QRectF(rect()).adjusted(inset, inset, -inset, -inset), identity, theme_);
}

void ShieldButton::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QAbstractButton::keyPressEvent(event);
    }
}

}  // namespace gruk
