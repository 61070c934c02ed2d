#include "app/screens/undo_offer.h"

#include <vector>

#include "app/model/model_copy.h"
#include "app/theme/text.h"

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

/// The one item by its name, more of them by their number.
template <typename Item>
QString itemsInWords(const std::vector<Item>& items)
{
    if (items.size() == 1) {
        return displayName(items.front().originalURL.lastPathComponent());
    }
    return QStringLiteral("%1 items").arg(groupedNumber(static_cast<qint64>(items.size())));
}

QString organiseDescription(const StashOperation& organise)
{
    const QString items = itemsInWords(organise.moved);
    if (!organise.hoardFolder) {
        return QStringLiteral("Puts %1 back").arg(items);
    }
    const QString realm = displayName(organise.hoardFolder->lastPathComponent());
    return organise.moved.size() == 1
               ? QStringLiteral("Puts %1 back where it was in %2").arg(items, realm)
               : QStringLiteral("Puts %1 back where they were in %2").arg(items, realm);
}

}  // namespace

std::optional<BannerAction> undoOffer(AppModel& model)
{
    const QString putBack = QStringLiteral("Put everything back");
    if (const auto& trash = model.lastTrashOperation()) {
        return BannerAction{
            QStringLiteral("Undo"), [&model] { model.undoLastTrash(); },
            QStringLiteral("Puts %1 back from the Trash").arg(itemsInWords(trash->moved))};
    }
    if (const auto& stash = model.lastStashOperation()) {
        return BannerAction{
            putBack, [&model] { model.undoLastStash(); },
            QStringLiteral("Puts %1 back on the Desktop").arg(itemsInWords(stash->moved))};
    }
    if (const auto& organise = model.lastOrganiseOperation()) {
        return BannerAction{putBack, [&model] { undoOrganise(model); },
                            organiseDescription(*organise)};
    }
    return std::nullopt;
}

bool tellsWhatCanBeUndone(const AppModel& model)
{
    return model.lastActionMessage() || model.errorMessage() == ModelCopy::someCouldNotBePutBack
           || model.errorMessage() == ModelCopy::someCouldNotBeRestored;
}

}  // namespace gruk
