#include "app/screens/shield_view.h"

#include <QAccessibleWidget>
#include <QPainter>

#include "app/screens/shield_copy.h"
#include "app/theme/shield_painter.h"

namespace gruk {

namespace {

QAccessibleInterface* accessibleShield(const QString&, QObject* object)
{
    auto* view = qobject_cast<RealmShieldView*>(object);
    return view == nullptr ? nullptr : new QAccessibleWidget(view, QAccessible::Graphic);
}

}  // namespace

RealmShieldView::RealmShieldView(Theme& theme, const RealmIdentity& identity, QWidget* parent)
    : QWidget(parent), theme_(theme)
{
    // The toolkit keeps one of each.
    QAccessible::installFactory(accessibleShield);
    setIdentity(identity);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void RealmShieldView::setIdentity(const RealmIdentity& identity)
{
    identity_ = identity;
    setAccessibleName(describeShield(identity));
    update();
}

void RealmShieldView::setOpacity(double opacity)
{
    opacity_ = opacity;
    update();
}

QSize RealmShieldView::sizeHint() const
{
    return {Measure::realmRowShield, Measure::realmRowShield};
}

void RealmShieldView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setOpacity(opacity_);
    paintShield(painter, rect(), identity_, theme_);
}

}  // namespace gruk
