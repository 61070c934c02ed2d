#pragma once

#include <QRadioButton>

#include "app/theme/theme.h"

namespace gruk {

class GrukTactileButtonStyle;

/// One palette to choose: its name, and its colours as they are in the scheme in force.
class PaletteRow : public QRadioButton {
    Q_OBJECT

public:
    PaletteRow(Theme& theme, AppPaletteTheme palette, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& at) const override { return rect().contains(at); }
    void paintEvent(QPaintEvent* event) override;

private:
    void paintSwatch(QPainter& painter) const;

    Theme& theme_;
    AppPaletteTheme palette_;
    GrukTactileButtonStyle* press_;
};

}  // namespace gruk
