#pragma once

#include <vector>

#include <QTabBar>

#include "app/theme/icons.h"
#include "app/theme/theme.h"

namespace gruk {

/// The pages of a window side by side, each an icon over its name; the one that shows lies on a
/// card. The arrow keys move between them.
class TabBar : public QTabBar {
    Q_OBJECT

public:
    explicit TabBar(Theme& theme, const QString& accessibleName, QWidget* parent = nullptr);

    void add(Icon icon, const QString& text);

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    std::vector<Icon> icons_;
};

}  // namespace gruk
