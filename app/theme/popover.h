#pragma once

#include <QPointer>

#include "app/theme/overlay.h"

namespace gruk {

/// A card beside the control that it belongs to: under it where there is room, else over it. A
/// press beside the card rejects it, as does the end of its control.
class Popover : public Overlay {
    Q_OBJECT

public:
    Popover(Theme& theme, const QString& accessibleName, QWidget& anchor);

protected:
    void placeCard() override;
    void pressedOutside() override { reject(); }

private:
    QPointer<QWidget> anchor_;
};

/// Where a card of `size` goes in `window` beside `anchor`: under it, else over it, else as low as
/// the window allows; never past the window's sides.
[[nodiscard]] QRect placeBeside(const QRect& anchor, const QSize& size, const QRect& window);

}  // namespace gruk
