#include "app/screens/realm_map_backdrop.h"

#include <QPainter>

#include "app/theme/land_painter.h"

namespace gruk {

RealmMapBackdrop::RealmMapBackdrop(Theme& theme, const RealmIdentity& identity, QWidget* parent)
    : QWidget(parent), theme_(theme), identity_(identity)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void RealmMapBackdrop::setIdentity(const RealmIdentity& identity)
{
    identity_ = identity;
    update();
}

void RealmMapBackdrop::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintLand(painter, landCanvas(rect()), identity_, theme_);
}

}  // namespace gruk
