#include "app/theme/scroll_keys.h"

#include <QKeyEvent>
#include <QScrollBar>

namespace gruk {

bool scrolledByKey(QScrollBar& bar, const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_PageDown:
        bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        return true;
    case Qt::Key_PageUp:
        bar.triggerAction(QAbstractSlider::SliderPageStepSub);
        return true;
    case Qt::Key_Home:
        bar.triggerAction(QAbstractSlider::SliderToMinimum);
        return true;
    case Qt::Key_End:
        bar.triggerAction(QAbstractSlider::SliderToMaximum);
        return true;
    default:
        return false;
    }
}

}  // namespace gruk
