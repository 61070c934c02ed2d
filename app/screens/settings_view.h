#pragma once

#include "app/model/app_model.h"
#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/paper_backdrop.h"

namespace gruk {

class MemoryCard;

/// The settings: a window of its own, which closes by Escape. Every choice holds at once.
class SettingsView : public PaperBackdrop {
    Q_OBJECT

public:
    SettingsView(AppModel& model, Theme& theme, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeGeneral();
    [[nodiscard]] QWidget* makeStartCard();
    [[nodiscard]] QWidget* makeAppearanceCard();
    [[nodiscard]] QWidget* makeAutomations();
    void showWalkthroughAgain();
    /// Says so while the walkthrough has been asked for and not come yet.
    void showWhenWalkthroughComes();

    AppModel& model_;
    Theme& theme_;
    MemoryCard* memory_ = nullptr;
    Button* again_ = nullptr;
    Label* walkthroughNote_ = nullptr;
};

}  // namespace gruk
