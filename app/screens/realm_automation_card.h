#pragma once

#include "app/model/app_model.h"
#include "app/screens/filing_rules_form.h"
#include "app/theme/button.h"
#include "app/theme/card.h"
#include "app/theme/picker.h"

class QVBoxLayout;

namespace gruk {

/// When one realm is patrolled without being asked, and where its loose files belong.
class RealmAutomationCard : public Card {
    Q_OBJECT

public:
    RealmAutomationCard(AppModel& model, Theme& theme, Grant grant, QWidget* parent = nullptr);

private:
    [[nodiscard]] QLayout* makeCadence();
    [[nodiscard]] QWidget* makeRules();
    void showCadence();
    void showRules();
    void removeRule(const UUID& id);

    AppModel& model_;
    Grant grant_;
    FileURL realm_;
    Picker* cadence_;
    QWidget* guardNote_;
    DisclosureButton* disclosure_;
    QVBoxLayout* rows_;
    FilingRulesForm* form_;
    QWidget* rules_;
};

}  // namespace gruk
