#pragma once

#include <QPixmap>
#include <QWidget>

#include "app/theme/theme.h"

namespace gruk {

/// Fills its frame with paper and its grain.
class PaperBackdrop : public QWidget {
    Q_OBJECT

public:
    explicit PaperBackdrop(Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    QPixmap tile_;
};

/// One tile of paper with its grain, on one of the three shades, `ratio` pixels for each logical
/// one.
[[nodiscard]] QPixmap paperTile(const Theme& theme, Role shade, double ratio);

}  // namespace gruk
