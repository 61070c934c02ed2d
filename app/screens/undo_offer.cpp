#include "app/screens/undo_offer.h"

#include "app/model/model_copy.h"

namespace gruk {

namespace {

void undoOrganise(AppModel& model)
{
    const std::optional<FileURL> organised = model.lastOrganiseOperation()->hoardFolder;
    const std::optional<FileURL>& open = model.activeRootURL();
    // The model takes it back only in a realm that is open.
    if (organised && (!open || !model.canOpen(*open))) {
        model.selectRealm(*organised);
    }
    model.undoLastOrganise();
}

}  // namespace

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
        return BannerAction{putBack, [&model] { undoOrganise(model); }};
    }
    return std::nullopt;
}

bool tellsWhatCanBeUndone(const AppModel& model)
{
    return model.lastActionMessage() || model.errorMessage() == ModelCopy::someCouldNotBePutBack
           || model.errorMessage() == ModelCopy::someCouldNotBeRestored;
}

}  // namespace gruk
