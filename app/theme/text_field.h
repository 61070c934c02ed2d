#pragma once

#include <QLineEdit>

#include "app/theme/theme.h"

namespace gruk {

/// One line of text to write in.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    TextField(Theme& theme, const QString& placeholder, const QString& accessibleName,
              QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void recolour();

    Theme& theme_;
};

}  // namespace gruk
