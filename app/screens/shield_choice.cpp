#include "app/screens/shield_choice.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>

#include "app/theme/accessible.h"
#include "app/theme/card_painter.h"
#include "app/theme/charge_geometry.h"
#include "app/theme/label.h"
#include "app/theme/shield_geometry.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

constexpr int choiceSize = 32;
constexpr double tileInset = 4;
/// How much of its ground a charge takes.
constexpr double chargeInset = 4;
constexpr double frameWidth = 2;
constexpr double tickGround = 14;
constexpr Corners tileCorners = {7, 5, 8, 5};
constexpr int titleWidth = 88;

}  // namespace

ShieldChoice::ShieldChoice(Theme& theme, ShieldField field, int choice, QWidget* parent)
    : QRadioButton(parent), theme_(theme), field_(field), choice_(choice)
{
    const QString name = nameOfChoice(field, choice);
    setAccessibleName(name);
    setAccessibleDescription(titleOf(field));
    setToolTip(toolTipText(name));
    setFont(theme_.font(TextStyle::detail));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ShieldChoice::setDraft(const RealmIdentity& draft)
{
    draft_ = draft;
    update();
}

QSize ShieldChoice::sizeHint() const
{
    if (field_ != ShieldField::species) {
        return {choiceSize, choiceSize};
    }
    return {fontMetrics().horizontalAdvance(accessibleName()) + 2 * Measure::large, choiceSize};
}

void ShieldChoice::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() && !isChecked()) {
        painter.fillPath(cutPath(rect(), tileCorners), theme_.colour(Role::ink, Strength::shadow));
    }
    paintChoice(painter, QRectF(rect()).adjusted(tileInset, tileInset, -tileInset, -tileInset));
    if (isChecked()) {
        paintMark(painter);
    }
}

void ShieldChoice::paintChoice(QPainter& painter, const QRectF& room) const
{
    const RealmIdentity chosen = withChoice(draft_, field_, choice_);
    switch (field_) {
    case ShieldField::shape:
    case ShieldField::division:
        paintDrawing(painter, fieldDrawing(chosen, room), theme_);
        break;
    case ShieldField::charge:
        painter.fillPath(cutPath(room, tileCorners), theme_.colour(roleOf(chosen.primary)));
        paintDrawing(painter,
                     chargeDrawing(chosen.charge, room.adjusted(chargeInset, chargeInset,
                                                                -chargeInset, -chargeInset)),
                     theme_);
        break;
    case ShieldField::primary:
    case ShieldField::secondary:
        painter.fillPath(cutPath(room, tileCorners), theme_.colour(static_cast<Role>(choice_)));
        painter.strokePath(cutPath(room, tileCorners),
                           QPen(theme_.colour(Role::ink, Strength::outline), Measure::outline));
        break;
    case ShieldField::species:
        painter.setPen(theme_.colour(Role::ink, isChecked() ? Strength::full : Strength::quiet));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, accessibleName());
        break;
    }
}

void ShieldChoice::paintMark(QPainter& painter) const
{
    const double half = frameWidth / 2;
    const QRectF frame = QRectF(rect()).adjusted(half, half, -half, -half);
    painter.strokePath(cutPath(frame, tileCorners), QPen(theme_.colour(Role::ink), frameWidth));
    const QRectF ground(rect().right() + 1 - tickGround, rect().bottom() + 1 - tickGround,
                        tickGround, tickGround);
    painter.fillPath(cutPath(ground, {tickGround / 2, 0, tileCorners.bottomRight, 0}),
                     theme_.colour(Role::ink));
    QPainterPath tick(ground.topLeft() + QPointF(0.24, 0.53) * tickGround);
    tick.lineTo(ground.topLeft() + QPointF(0.43, 0.71) * tickGround);
    tick.lineTo(ground.topLeft() + QPointF(0.76, 0.32) * tickGround);
    painter.strokePath(tick, QPen(theme_.colour(Role::paperCard), frameWidth, Qt::SolidLine,
                                  Qt::RoundCap, Qt::RoundJoin));
}

ShieldChoiceRow::ShieldChoiceRow(Theme& theme, ShieldField field, QWidget* parent)
    : QWidget(parent), field_(field), group_(new QButtonGroup(this))
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(titleOf(field));
    auto* title = new Label(theme, TextStyle::eyebrow);
    title->setText(titleOf(field));
    title->setColour(Role::ink, Strength::quiet);
    title->setFixedWidth(titleWidth);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::hair);
    row->addWidget(title);
    for (int choice = 0; choice < choicesOf(field); ++choice) {
        auto* button = new ShieldChoice(theme, field, choice);
        group_->addButton(button, choice);
        row->addWidget(button);
    }
    row->addStretch();
    connect(group_, &QButtonGroup::idToggled, this, [this](int choice, bool isChosen) {
        if (isChosen) {
            Q_EMIT chosen(choice);
        }
    });
}

void ShieldChoiceRow::setDraft(const RealmIdentity& draft)
{
    const QSignalBlocker quiet(group_);
    group_->button(choiceIn(draft, field_))->setChecked(true);
    for (QAbstractButton* button : group_->buttons()) {
        // The toolkit does so itself, but not before the row first had the focus.
        button->setFocusPolicy(button->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
        static_cast<ShieldChoice*>(button)->setDraft(draft);
    }
}

}  // namespace gruk
