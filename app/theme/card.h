#pragma once

#include <QWidget>

#include "app/theme/icons.h"
#include "app/theme/theme.h"

namespace gruk {

class Label;

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

/// A card with one sentence that wraps, an icon, and a bar of its colour at the left.
class StatusBanner : public Card {
    Q_OBJECT

public:
    StatusBanner(Theme& theme, Role colour, Icon icon, QWidget* parent = nullptr);

    /// Shows the banner with this sentence, or hides it for none.
    void setMessage(const QString& message);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Role colour_;
    Label* message_;
};

}  // namespace gruk
