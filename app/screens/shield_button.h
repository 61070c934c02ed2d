#pragma once

#include <QAbstractButton>

#include "app/model/app_model.h"
#include "app/theme/tactile_press.h"
#include "app/theme/theme.h"

namespace gruk {

/// The active realm's shield as a button, which opens its editor. Shows every change of the shield
/// at once.
class ShieldButton : public QAbstractButton {
    Q_OBJECT

public:
    ShieldButton(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showModel();

    AppModel& model_;
    Theme& theme_;
    GrukTactileButtonStyle* press_;
};

}  // namespace gruk
