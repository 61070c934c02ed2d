#pragma once

#include <vector>

#include "app/model/app_model.h"
#include "app/screens/filing_rules_form.h"
#include "app/theme/button.h"
#include "app/theme/card.h"
#include "app/theme/label.h"
#include "app/theme/picker.h"
#include "core/actions/realm_rules.h"

class QVBoxLayout;

namespace gruk {

class FilingRuleRow;

/// When one realm is patrolled without being asked, and where its loose files belong.
class RealmAutomationCard : public Card {
    Q_OBJECT

public:
    RealmAutomationCard(AppModel& model, Theme& theme, Grant grant, QWidget* parent = nullptr);

    /// Goes on with another grant of the same realm.
    void setGrant(const Grant& grant);

    /// What Tab goes through, as it stands on the screen.
    [[nodiscard]] std::vector<QWidget*> tabStops() const;

private:
    [[nodiscard]] QLayout* makeCadence();
    [[nodiscard]] QWidget* makeRules();
    [[nodiscard]] QWidget* makeRemovalNote();
    void showCadence();
    void showRules();
    void showRemoval(bool isFull);
    void addRule(FileKind kind, const QString& name, bool applyAfterPatrol);
    void removeRule(const UUID& id);
    /// Puts the rule back that was removed last, where it stood.
    void undoRemoval();
    /// Puts the focus on the button that takes the rule at that place away, or that is last.
    void focusRule(std::size_t place);

    AppModel& model_;
    struct RemovedRule {
        RealmRule rule;
        std::size_t place = 0;
    };

    Grant grant_;
    FileURL realm_;
    /// The last one at the end.
    std::vector<RemovedRule> removed_;
    Picker* cadence_;
    QWidget* guardNote_;
    DisclosureButton* disclosure_;
    QVBoxLayout* rows_;
    std::vector<FilingRuleRow*> shown_;
    Label* removalNote_;
    Button* undo_;
    QWidget* removal_;
    FilingRulesForm* form_;
    QWidget* rules_;
};

}  // namespace gruk
