#pragma once

#include <QObject>
#include <QRectF>
#include <QVariantAnimation>

#include "app/theme/theme.h"

class QAbstractButton;
class QPainter;
class QWidget;

namespace gruk {

/// How what is pressed looks, between at rest and fully pressed.
struct PressLook {
    double scale = 1;
    /// To the right and down, toward its own shadow, in logical pixels.
    double offset = 0;
    double opacity = 1;

    bool operator==(const PressLook&) const = default;
};

/// `amount` is 0 at rest and 1 fully pressed.
[[nodiscard]] PressLook pressLook(double amount);

/// The way of a critically damped spring to its target: it arrives as fast as it can without
/// swinging past, and takes its speed along when it is sent elsewhere on the way.
struct SpringWay {
    double start = 0;
    /// Per second.
    double startSpeed = 0;
    double target = 0;

    /// Where it is, and how fast, so many seconds after the start.
    [[nodiscard]] double at(double seconds) const;
    [[nodiscard]] double speedAt(double seconds) const;
};

/// The time in which the undamped spring of the press would swing once.
inline constexpr double springResponse = 0.16;
/// After so long nothing of the way is left to be seen.
inline constexpr int springMilliseconds = 300;

/// Gives a widget that paints itself the look of being pressed, while the pointer is down on it. It
/// belongs to the widget. With reduced motion the look changes at once.
class GrukTactilePressModifier : public QObject {
    Q_OBJECT

public:
    GrukTactilePressModifier(Theme& theme, QWidget& widget);

    [[nodiscard]] bool isPressed() const { return isPressed_; }

    /// Scales, moves and pales what `painter` paints from now on as the press asks at this moment,
    /// about the middle of `bounds`.
    void apply(QPainter& painter, const QRectF& bounds) const;
    [[nodiscard]] PressLook look() const { return pressLook(amount()); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// It is to be painted anew, with another look or at rest again.
    void lookChanged();

protected:
    enum class Source { pointer, caller };
    GrukTactilePressModifier(Theme& theme, QWidget& widget, Source source);

    void setPressed(bool isPressed);

private:
    [[nodiscard]] double seconds() const;
    [[nodiscard]] double amount() const;

    Theme& theme_;
    QWidget& widget_;
    bool isPressed_ = false;
    SpringWay way_;
    QVariantAnimation run_;
};

/// The same for a widget that is made of others, none of them opaque: all that they show is pressed
/// as one. At rest it costs nothing, so that each of many rows can have it.
class GrukTactileGroupPress : public GrukTactilePressModifier {
    Q_OBJECT

public:
    GrukTactileGroupPress(Theme& theme, QWidget& widget);

    /// Whether the pointer presses it; in the beginning it does.
    void setPressable(bool isPressable);

private:
    void show();

    QWidget& group_;
};

/// The same for a button, also when the keyboard presses it.
class GrukTactileButtonStyle : public GrukTactilePressModifier {
    Q_OBJECT

public:
    GrukTactileButtonStyle(Theme& theme, QAbstractButton& button);
};

}  // namespace gruk
