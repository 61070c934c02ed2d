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
    [[nodiscard]] QPixmap makeTile(double ratio) const;

    Theme& theme_;
    QPixmap tile_;
};

}  // namespace gruk
