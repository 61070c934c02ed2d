#include "app/theme/segmented_control.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

#include "app/theme/card_painter.h"

namespace gruk {

namespace {

constexpr double outlineWidth = 1.2;

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
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChecked()) {
            const double inset = Measure::focusGap;
            const QRectF body = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
            painter.fillPath(cutPath(body, buttonCorners), theme_.colour(Role::paperCard));
            painter.strokePath(cutPath(body, buttonCorners),
                               QPen(theme_.colour(Role::ink, Strength::outline), outlineWidth));
        }
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
            Q_EMIT currentChanged(index);
        }
    });
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
    const double half = outlineWidth / 2;
    const QPainterPath shape =
        cutPath(QRectF(rect()).adjusted(half, half, -half, -half), buttonCorners);
    painter.fillPath(shape, theme_.colour(Role::paperInset));
    painter.strokePath(shape, QPen(theme_.colour(Role::ink, Strength::outline), outlineWidth));
}

}  // namespace gruk
