#pragma once

#include "app/model/app_model.h"
#include "app/screens/confirmation_dialog.h"
#include "app/theme/card.h"
#include "app/theme/label.h"

namespace gruk {

/// Whether anything may go to the Trash, and the button that changes it. To allow it is asked for;
/// to go back is not.
class ReviewOnlyPanel : public Card {
    Q_OBJECT

public:
    ReviewOnlyPanel(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();

    AppModel& model_;
    IconLabel* symbol_;
    Label* state_;
    Button* button_;
};

/// Asks over the window of `anyWidget` whether Trash actions are to be allowed; yes allows them.
/// For every button "Enable Trash actions…".
ConfirmationDialog* askToEnableTrashActions(AppModel& model, Theme& theme, QWidget* anyWidget);

}  // namespace gruk
