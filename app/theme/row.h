#pragma once

#include <QWidget>

#include "app/theme/theme.h"

namespace gruk {

/// One row of a list: no box, a thin line under it.
class Row : public QWidget {
    Q_OBJECT

public:
    explicit Row(Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

    [[nodiscard]] Theme& theme() const { return theme_; }

private:
    Theme& theme_;
};

}  // namespace gruk
