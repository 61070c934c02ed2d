#include "app/screens/realm_map_backdrop.h"

#include <QPainter>

#include "app/theme/land_geometry.h"

namespace gruk {

RealmMapBackdrop::RealmMapBackdrop(Theme& theme, const RealmIdentity& identity, QWidget* parent)
    : QWidget(parent), theme_(theme), identity_(identity)
{
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
    paintDrawing(painter, landDrawing(identity_, rect()), theme_);
}

}  // namespace gruk
