#pragma once

#include <optional>

#include <QLineEdit>

#include "app/theme/icons.h"
#include "app/theme/theme.h"

class QAction;

namespace gruk {

/// One line of text to write in.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    TextField(Theme& theme, const QString& placeholder, const QString& accessibleName,
              QWidget* parent = nullptr);

    /// The icon before the text, which says what it is for.
    void setSymbol(Icon icon);
    /// Offers a button that empties it while there is something in it.
    void setClearable();
    /// Outlines it as an error, or no longer.
    void setRefused(bool isRefused);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void recolour();

    Theme& theme_;
    std::optional<Icon> symbol_;
    QAction* clear_ = nullptr;
    bool isRefused_ = false;
};

}  // namespace gruk
