#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// How many steps the mark of ongoing work takes to turn round once.
inline constexpr int workMarkSteps = 16;

/// Paints that mark, turned by `step`, as a ring whose line runs along the ellipse in `ring`.
void paintWorkMark(QPainter& painter, const QRectF& ring, int step, double lineWidth,
                   const Theme& theme);

/// The small turning mark of ongoing work. Turns only while it is seen.
class WorkMark : public QWidget {
    Q_OBJECT

public:
    explicit WorkMark(Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    Theme& theme_;
    QBasicTimer timer_;
    int step_ = 0;
};

}  // namespace gruk
