#pragma once

#include <QAbstractButton>

#include "app/theme/icons.h"
#include "app/theme/tactile_press.h"
#include "app/theme/theme.h"

namespace gruk {

/// A button that is one icon. What it does stands in its tooltip and in its name for
/// assistive technology. Return and Space press it.
class IconButton : public QAbstractButton {
    Q_OBJECT

public:
    /// As it stands in a row, or larger over a page.
    enum class Place { row, header };

    IconButton(Theme& theme, Icon icon, const QString& purpose, Place place = Place::row,
               QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Theme& theme_;
    Icon icon_;
    Place place_;
    GrukTactileButtonStyle* press_;
};

}  // namespace gruk
