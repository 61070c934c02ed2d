#pragma once

#include <optional>

#include "app/theme/overlay.h"

namespace gruk {

/// A card in the middle of its window.
class Sheet : public Overlay {
    Q_OBJECT

public:
    /// `accessibleName` is what it is called; over the window of `owner`.
    Sheet(Theme& theme, const QString& accessibleName, QWidget* owner);

    /// A size of its own for the card, where the window has room for it.
    void setCardSize(const QSize& size);

protected:
    void placeCard() override;

private:
    std::optional<QSize> size_;
};

}  // namespace gruk
