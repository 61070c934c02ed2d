#include "app/screens/page_fade.h"

#include <QPainter>
#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace gruk {

namespace {

constexpr int pageDuration = 280;

/// The picture, which the pointer goes through.
class Picture : public QWidget {
public:
    Picture(QPixmap pixmap, QWidget* parent) : QWidget(parent), pixmap_(std::move(pixmap))
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

    void setStrength(double strength)
    {
        strength_ = strength;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setOpacity(strength_);
        painter.drawPixmap(0, 0, pixmap_);
    }

private:
    QPixmap pixmap_;
    double strength_ = 1;
};

}  // namespace

void fadeOut(Theme& theme, QWidget& page)
{
    const int duration = theme.duration(pageDuration);
    QWidget* place = page.parentWidget();
    if (duration == 0 || place == nullptr) {
        return;
    }
    auto* picture = new Picture(page.grab(), place);
    picture->setGeometry(page.geometry());
    picture->show();
    auto* fade = new QVariantAnimation(picture);
    fade->setStartValue(1.0);
    fade->setEndValue(0.0);
    fade->setDuration(duration);
    fade->setEasingCurve(QEasingCurve::InOutQuad);
    QObject::connect(fade, &QVariantAnimation::valueChanged, picture,
                     [picture](const QVariant& value) {
                         picture->raise();
                         picture->setStrength(value.toDouble());
                     });
    QObject::connect(fade, &QVariantAnimation::finished, picture, &QObject::deleteLater);
    fade->start();
}

}  // namespace gruk
