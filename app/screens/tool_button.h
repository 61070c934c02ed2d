#pragma once

#include "app/theme/button.h"

namespace gruk {

/// A button that shows only its icon; its words are its name and its tooltip.
class ToolButton : public Button {
    Q_OBJECT

public:
    ToolButton(Theme& theme, Icon icon, const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icon icon_;
};

}  // namespace gruk
