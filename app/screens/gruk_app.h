#pragma once

#include <chrono>
#include <memory>

#include <QObject>
#include <QRect>

#include "app/desktop/activation.h"
#include "app/desktop/tray_bus.h"
#include "app/model/app_model.h"
#include "app/screens/menu_bar_entries.h"
#include "app/theme/theme.h"

class QSessionManager;

namespace gruk {

class GrukMenuBarView;
class SettingsView;
class SweepView;
class TrayItem;

/// What runs over the model while the program does: the main window, the settings window, and the
/// tray item with its panel. Closing windows ends nothing; only Quit does. Main thread only.
class GrukApp : public QObject {
    Q_OBJECT

public:
    enum class Start {
        /// The user started the program.
        inTheOpen,
        /// The session did: no window where a tray shows the item, and one where none does.
        inTheBackground,
    };

    /// How long a session may take to bring its tray.
    static constexpr std::chrono::milliseconds usualTrayPatience{10'000};

    /// Borrows both, which must live longer. From then on the process goes on without a window.
    GrukApp(AppModel& model, Theme& theme,
            std::chrono::milliseconds trayPatience = usualTrayPatience);
    ~GrukApp() override;

    void start(Start start, const ActivationTokens& tokens);

    /// Shows the main window and brings it forward; makes it at the first time.
    void openMainWindow(const ActivationTokens& tokens = {});
    void openSettings(const ActivationTokens& tokens = {});
    /// Does what an entry of the panel or the menu says.
    void perform(MenuBarItem item, const ActivationTokens& tokens = {});

    /// Each null until it is first shown.
    [[nodiscard]] SweepView* mainWindow() const { return mainWindow_.get(); }
    [[nodiscard]] SettingsView* settings() const { return settings_.get(); }
    [[nodiscard]] GrukMenuBarView* panel() const { return panel_.get(); }

Q_SIGNALS:
    void mainWindowMade(gruk::SweepView& window);
    void quitRequested();

private:
    /// A session that is saved brings the window back at the next login, and no program that had
    /// none: whether that starts at login, the preferences tell.
    void answerSessionManager(QSessionManager& session) const;
    void makeTrayItem();
    void drawTrayItem();
    void fillTrayItem();
    void togglePanel(const QRect& anchor, const ActivationTokens& tokens);
    void tidyDesktop(const ActivationTokens& tokens);

    AppModel& model_;
    Theme& theme_;
    const std::chrono::milliseconds trayPatience_;
    std::unique_ptr<SweepView> mainWindow_;
    std::unique_ptr<SettingsView> settings_;
    std::unique_ptr<GrukMenuBarView> panel_;
    TrayLook look_;
    /// Null in the first moment.
    std::unique_ptr<TrayItem> tray_;
};

}  // namespace gruk
