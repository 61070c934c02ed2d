#pragma once

#include "app/theme/button.h"

namespace gruk {

/// A line of the sidebar that leads somewhere: an icon, a name, the whole width.
class SidebarLink : public Button {
    Q_OBJECT

public:
    SidebarLink(Theme& theme, Icon icon, const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icon icon_;
};

}  // namespace gruk
