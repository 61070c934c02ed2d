#pragma once

#include <QComboBox>

#include "app/theme/theme.h"

namespace gruk {

/// A few named choices behind one control, one of them chosen. The wheel turns it only while it has
/// the focus, so that scrolling a page changes nothing.
class Picker : public QComboBox {
    Q_OBJECT

public:
    /// `accessibleName` says what is chosen here; the first label is the choice at first.
    Picker(Theme& theme, const QStringList& labels, const QString& accessibleName,
           QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void recolour();

    Theme& theme_;
};

}  // namespace gruk
