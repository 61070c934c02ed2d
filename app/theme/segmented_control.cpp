#include "app/theme/segmented_control.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

#include "app/theme/accessible.h"
#include "app/theme/card_painter.h"

namespace gruk {

namespace {

class Segment : public QRadioButton {
public:
    Segment(Theme& theme, const QString& text) : QRadioButton(text), theme_(theme)
    {
        setFont(theme_.font(TextStyle::bodyStrong));
        setCursor(Qt::PointingHandCursor);
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {fontMetrics().horizontalAdvance(text()) + 2 * Measure::medium,
                Measure::buttonHeight};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& at) const override { return rect().contains(at); }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(theme_.colour(Role::ink, isChecked() ? Strength::full : Strength::quiet));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    }

private:
    Theme& theme_;
};

}  // namespace

SegmentedControl::SegmentedControl(Theme& theme, const QStringList& labels,
                                   const QString& accessibleName, QWidget* parent)
    : QWidget(parent), theme_(theme), group_(new QButtonGroup(this))
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (int index = 0; index < labels.size(); ++index) {
        auto* segment = new Segment(theme, labels[index]);
        segment->setAccessibleDescription(accessibleName);
        group_->addButton(segment, index);
        row->addWidget(segment);
    }
    setCurrent(0);

    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    connect(group_, &QButtonGroup::idToggled, this, [this](int index, bool checked) {
        if (checked) {
            startSliding();
            Q_EMIT currentChanged(index);
        }
    });
    slide_.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&slide_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

QRectF SegmentedControl::place() const
{
    const double inset = Measure::focusGap;
    return QRectF(group_->checkedButton()->geometry()).adjusted(inset, inset, -inset, -inset);
}

void SegmentedControl::startSliding()
{
    const bool isMoving = slide_.state() == QAbstractAnimation::Running;
    const QRectF from =
        isMoving || slide_.endValue().isValid() ? slide_.currentValue().toRectF() : place();
    slide_.stop();
    slide_.setStartValue(from);
    slide_.setEndValue(place());
    slide_.setDuration(isVisible() ? theme_.duration(Measure::slideMilliseconds) : 0);
    slide_.start();
}

void SegmentedControl::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    slide_.stop();
    slide_.setStartValue(place());
    slide_.setEndValue(place());
}

int SegmentedControl::current() const
{
    return group_->checkedId();
}

void SegmentedControl::setCurrent(int index)
{
    group_->button(index)->setChecked(true);
}

void SegmentedControl::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double half = Measure::outline / 2;
    const QPainterPath shape =
        cutPath(QRectF(rect()).adjusted(half, half, -half, -half), buttonCorners);
    painter.fillPath(shape, theme_.colour(Role::paperInset));
    painter.strokePath(shape, QPen(theme_.colour(Role::ink, Strength::outline), Measure::outline));
    const bool isSliding = slide_.state() == QAbstractAnimation::Running;
    const QPainterPath card =
        cutPath(isSliding ? slide_.currentValue().toRectF() : place(), buttonCorners);
    painter.fillPath(card, theme_.colour(Role::paperCard));
    painter.strokePath(card, QPen(theme_.colour(Role::ink, Strength::outline), Measure::outline));
}

}  // namespace gruk
