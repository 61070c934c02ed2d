#pragma once

#include <QWidget>

#include "app/theme/theme.h"

namespace gruk {

/// A card that lies on the paper. Lay its content out in it: its margins leave room for padding
/// and shadow.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(Theme& theme, int padding = Measure::cardPadding, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

    [[nodiscard]] Theme& theme() const { return theme_; }

private:
    Theme& theme_;
};

}  // namespace gruk
