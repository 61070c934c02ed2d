#include "app/screens/hoard_confirmation.h"

#include "app/model/app_model.h"
#include "app/theme/text.h"

namespace gruk {

std::optional<Confirmation> hoardConfirmation(const AppModel& model)
{
    const std::optional<FileURL> desktop = model.grantedDesktopURL();
    if (!desktop) {
        return std::nullopt;
    }
    const QString message =
        QStringLiteral("The Gruk will move all %1 items into one folder:\n🗂 %2\n\nNothing is "
                       "deleted, nothing is sorted, nothing leaves your Desktop folder.\nOne click "
                       "puts everything back exactly where it was.")
            .arg(groupedNumber(static_cast<qint64>(model.stashableCount(*desktop))),
                 displayName(model.proposedHoardName(*desktop)));
    return Confirmation{QStringLiteral("Desktop Hoard"), message, QStringLiteral("Stash it all"),
                        QStringLiteral("Cancel"), Button::Kind::primary};
}

}  // namespace gruk
