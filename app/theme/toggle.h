#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

#include "app/theme/theme.h"

namespace gruk {

/// A paper switch with an ink knob, and its text beside it. Space and Return turn it.
class Toggle : public QCheckBox {
    Q_OBJECT

public:
    Toggle(Theme& theme, const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& at) const override { return rect().contains(at); }
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void slide();

    Theme& theme_;
    QVariantAnimation slide_;
};

}  // namespace gruk
