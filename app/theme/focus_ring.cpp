#include "app/theme/focus_ring.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPainter>
#include <QProxyStyle>

#include "app/theme/card_painter.h"

namespace gruk {

namespace {

constexpr int margin = Measure::focusGap + Measure::focusRing;

/// Tells the frame how far outside its widget it lies.
class RingStyle : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        return metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin
                   ? margin
                   : QProxyStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override
    {
        switch (hint) {
        case SH_FocusFrame_Mask:
            return 0;
        case SH_FocusFrame_AboveWidget:
            // Else it lies in the widget's parent, which cuts it off where the two are as wide.
            return 1;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returnData);
        }
    }
};

class Ring : public QFocusFrame {
public:
    Ring(Theme& theme, QWidget& window) : QFocusFrame(&window), theme_(theme)
    {
        auto* style = new RingStyle;
        style->setParent(this);
        setStyle(style);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool isHandled = QFocusFrame::eventFilter(watched, event);
        const bool isMoved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
        if (isMoved && isHidden() && widget() != nullptr && widget()->isVisible()
            && parentWidget()->rect().intersects(geometry())) {
            // The toolkit hides a frame that begins out of view, and leaves it so when what it is
            // around comes into view.
            raise();
            show();
        }
        return isHandled;
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipRegion(inView());
        const double half = Measure::focusRing / 2.0;
        const QRectF ring = QRectF(rect()).adjusted(half, half, -half, -half);
        painter.strokePath(cutPath(ring, buttonCorners),
                           QPen(theme_.colour(Role::blue), Measure::focusRing));
    }

private:
    /// All of it but what lies under a card over the page.
    [[nodiscard]] QRegion inView() const
    {
        QRegion region(rect());
        for (const QWidget* each : parentWidget()->findChildren<QWidget*>()) {
            if (each->property(liesOverPage).toBool() && each->isVisible()
                && !each->isAncestorOf(widget())) {
                region -= QRect(mapFromGlobal(each->mapToGlobal(QPoint())), each->size());
            }
        }
        return region;
    }

    Theme& theme_;
};

bool comesFromTheKeyboard(Qt::FocusReason reason, bool keyboardWasLast)
{
    switch (reason) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::MouseFocusReason:
        return false;
    default:
        return keyboardWasLast;
    }
}

}  // namespace

FocusRing::FocusRing(Theme& theme, QWidget& window)
    : QObject(&window), theme_(theme), window_(window)
{
    qApp->installEventFilter(this);
}

void FocusRing::surround(QWidget* widget)
{
    if (!frame_ && widget != nullptr) {
        frame_ = new Ring(theme_, window_);
    }
    if (frame_) {
        frame_->setWidget(widget);
    }
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        keyboardWasLast_ = true;
    } else if (event->type() == QEvent::MouseButtonPress) {
        keyboardWasLast_ = false;
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress) {
        auto* focused = qobject_cast<QWidget*>(watched);
        if (focused != nullptr && focused->window() == &window_ && focused != &window_) {
            const bool byKeyboard =
                event->type() == QEvent::FocusIn
                && comesFromTheKeyboard(static_cast<QFocusEvent*>(event)->reason(),
                                        keyboardWasLast_);
            const bool showsItself = focused->property(showsFocusItself).toBool();
            surround(byKeyboard && !showsItself ? focused : nullptr);
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace gruk
