#pragma once

#include <optional>

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/theme.h"

namespace gruk {

class RealmAutomationCard;

/// "Automations" of the realm that is open, behind a disclosure; nothing for a folder that is no
/// realm of its own. Follows the grants: the folder may be granted, or granted again, while it is
/// open.
class AutomationsSection : public QWidget {
    Q_OBJECT

public:
    AutomationsSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    /// Of that very folder.
    [[nodiscard]] std::optional<Grant> grant() const;
    void makeCard(const Grant& grant);
    void showGrant();

    AppModel& model_;
    Theme& theme_;
    /// The folder that was open when the page was made.
    const std::optional<FileURL> realm_;
    /// Null until there first is a grant.
    RealmAutomationCard* card_ = nullptr;
};

}  // namespace gruk
