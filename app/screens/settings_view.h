#pragma once

#include "app/model/app_model.h"
#include "app/theme/paper_backdrop.h"

namespace gruk {

/// The settings: a window of its own, which closes by Escape. Every choice holds at once.
class SettingsView : public PaperBackdrop {
    Q_OBJECT

public:
    SettingsView(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    [[nodiscard]] QWidget* makeGeneral();
    [[nodiscard]] QWidget* makeStartCard();
    [[nodiscard]] QWidget* makeAppearanceCard();
    [[nodiscard]] QWidget* makeAutomations();
    void showWalkthroughAgain();

    AppModel& model_;
    Theme& theme_;
};

}  // namespace gruk
