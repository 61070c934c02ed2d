#pragma once

#include <QAbstractButton>

#include "app/theme/theme.h"

namespace gruk {

/// The tick of a row that can be selected. What is ticked its owner decides: a press only asks.
class SelectionBox : public QAbstractButton {
    Q_OBJECT

public:
    explicit SelectionBox(Theme& theme, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void toggleRequested(Qt::KeyboardModifiers modifiers);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void nextCheckState() override;

private:
    Theme& theme_;
};

}  // namespace gruk
