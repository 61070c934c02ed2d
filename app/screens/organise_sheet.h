#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/model/app_model.h"
#include "app/theme/label.h"
#include "app/theme/sheet.h"

class QVBoxLayout;

namespace gruk {

class Button;
class OrganiseRow;

/// Shows what an organise would do, before it does exactly that, and lets the user name the folders
/// otherwise: a name is remembered for the realm, and the plan made anew.
class OrganiseSheet : public Sheet {
    Q_OBJECT

public:
    /// `plan` is of `realm`, which is the active one or the Desktop. Over the window of `window`.
    OrganiseSheet(AppModel& model, Theme& theme, OrganisePlan plan, FileURL realm, QWidget* window);

    [[nodiscard]] const OrganisePlan& plan() const { return plan_; }

private:
    void addContent();
    [[nodiscard]] QLayout* makeFooter();
    void showPlan();
    void edit(std::optional<FileKind> kind);
    void save(FileKind kind, const QString& folderName);
    /// As the realm stands now; none when it may not be organised any more.
    [[nodiscard]] std::optional<OrganisePlan> newPlan() const;
    [[nodiscard]] OrganiseRow* row(FileKind kind) const;
    [[nodiscard]] QString noteOf(const OrganisePlan::CategoryMove& move) const;
    void showMode();
    [[nodiscard]] std::vector<QWidget*> tabStops() const;

    AppModel& model_;
    OrganisePlan plan_;
    FileURL realm_;
    std::optional<FileKind> editingKind_;
    /// With the names that were given.
    std::map<FileKind, std::string> justRememberedKinds_;
    Label* summary_;
    QVBoxLayout* rows_ = nullptr;
    std::vector<OrganiseRow*> shown_;
    Button* notNow_ = nullptr;
    Button* organise_ = nullptr;
};

}  // namespace gruk
