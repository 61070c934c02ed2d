#include "app/screens/repaint_once.h"

#include <utility>

#include <QMetaObject>

namespace gruk {

RepaintOnce::RepaintOnce(std::function<void()> repaint, QObject* parent)
    : QObject(parent), repaint_(std::move(repaint))
{
}

void RepaintOnce::request()
{
    if (isRequested_) {
        return;
    }
    isRequested_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isRequested_ = false;
            repaint_();
        },
        Qt::QueuedConnection);
}

}  // namespace gruk
