#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include "app/theme/theme.h"

class QButtonGroup;

namespace gruk {

/// A few choices side by side, one of them chosen: a card that slides to it. The arrow keys move
/// between them.
class SegmentedControl : public QWidget {
    Q_OBJECT

public:
    /// `accessibleName` says what is chosen here; the first label is the choice at first.
    SegmentedControl(Theme& theme, const QStringList& labels, const QString& accessibleName,
                     QWidget* parent = nullptr);

    [[nodiscard]] int current() const;
    void setCurrent(int index);

    /// The movement of the card; its value is where it lies.
    [[nodiscard]] QVariantAnimation& slide() { return slide_; }

Q_SIGNALS:
    void currentChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Sends the card to the segment that is chosen.
    void startSliding();
    [[nodiscard]] QRectF place() const;

    Theme& theme_;
    QButtonGroup* group_;
    QVariantAnimation slide_;
};

}  // namespace gruk
