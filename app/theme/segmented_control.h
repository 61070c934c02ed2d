#pragma once

#include <QWidget>

#include "app/theme/theme.h"

class QButtonGroup;

namespace gruk {

/// A few choices side by side, one of them chosen. The arrow keys move between them.
class SegmentedControl : public QWidget {
    Q_OBJECT

public:
    /// `accessibleName` says what is chosen here; the first label is the choice at first.
    SegmentedControl(Theme& theme, const QStringList& labels, const QString& accessibleName,
                     QWidget* parent = nullptr);

    [[nodiscard]] int current() const;
    void setCurrent(int index);

Q_SIGNALS:
    void currentChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    QButtonGroup* group_;
};

}  // namespace gruk
