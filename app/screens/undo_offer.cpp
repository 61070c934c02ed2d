#include "app/screens/undo_offer.h"

namespace gruk {

std::optional<BannerAction> undoOffer(AppModel& model)
{
    const QString putBack = QStringLiteral("Put everything back");
    if (model.lastTrashOperation()) {
        return BannerAction{QStringLiteral("Undo"), [&model] { model.undoLastTrash(); }};
    }
    if (model.lastStashOperation()) {
        return BannerAction{putBack, [&model] { model.undoLastStash(); }};
    }
    if (model.lastOrganiseOperation()) {
        return BannerAction{putBack, [&model] { model.undoLastOrganise(); }};
    }
    return std::nullopt;
}

}  // namespace gruk
