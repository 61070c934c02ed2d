#include "app/screens/gruk_app.h"

#include <QApplication>
#include <QFontMetrics>
#include <QSessionManager>
#include <QTimer>

#include "app/desktop/tray_item.h"
#include "app/screens/main_window.h"
#include "app/screens/menu_bar_view.h"
#include "app/screens/repaint_once.h"
#include "app/screens/settings_view.h"
#include "app/screens/tray_picture.h"

namespace gruk {

namespace {

/// How wide a line of the tray's menu may be, in logical pixels: a folder can have a long name.
constexpr int widestMenuText = 420;

/// The program's symbol as an icon theme has it, for the tray to colour.
QString symbolicIcon()
{
    return QGuiApplication::desktopFileName() + QStringLiteral("-symbolic");
}

std::vector<TrayEntry> trayEntries(const MenuBarState& state, const QFontMetrics& metrics)
{
    std::vector<TrayEntry> entries;
    for (const MenuBarEntry& entry : menuBarEntries(state)) {
        const bool isDivider = entry.item == MenuBarItem::divider;
        entries.push_back({isDivider ? TrayEntry::Kind::divider : TrayEntry::Kind::action,
                           static_cast<int>(entry.item) + 1,
                           metrics.elidedText(entry.text, Qt::ElideMiddle, widestMenuText),
                           entry.isEnabled});
    }
    return entries;
}

}  // namespace

GrukApp::GrukApp(AppModel& model, Theme& theme, std::chrono::milliseconds trayPatience)
    : model_(model), theme_(theme), trayPatience_(trayPatience)
{
    QApplication::setQuitOnLastWindowClosed(false);
    connect(qApp, &QGuiApplication::saveStateRequest, this, &GrukApp::answerSessionManager);
}

GrukApp::~GrukApp() = default;

void GrukApp::start(Start start, const ActivationTokens& tokens)
{
    if (start == Start::inTheOpen) {
        openMainWindow(tokens);
    }
    // After the window, which is what the user waits for.
    QTimer::singleShot(0, this, &GrukApp::makeTrayItem);
    if (start == Start::inTheBackground) {
        // The session may still be about to bring its tray.
        QTimer::singleShot(trayPatience_, this, [this] {
            if (!tray_->isShown()) {
                openMainWindow();
            }
        });
    }
}

void GrukApp::answerSessionManager(QSessionManager& session) const
{
    const bool hasWindow = mainWindow_ && mainWindow_->isVisible();
    session.setRestartHint(hasWindow ? QSessionManager::RestartIfRunning
                                     : QSessionManager::RestartNever);
}

void GrukApp::makeTrayItem()
{
    tray_ = std::make_unique<TrayItem>(QGuiApplication::desktopFileName());
    connect(tray_.get(), &TrayItem::activated, this, &GrukApp::togglePanel);
    connect(tray_.get(), &TrayItem::chosen, this, [this](int id, const ActivationTokens& tokens) {
        perform(static_cast<MenuBarItem>(id - 1), tokens);
    });
    connect(&theme_, &Theme::changed, this, &GrukApp::drawTrayItem);
    auto* repaint = new RepaintOnce([this] { fillTrayItem(); }, this);
    requestOnMenuBarChange(*repaint, model_);
    drawTrayItem();
    fillTrayItem();
}

void GrukApp::drawTrayItem()
{
    look_.title = QStringLiteral("Gruk");
    look_.iconName = QIcon::hasThemeIcon(symbolicIcon()) ? symbolicIcon() : QString();
    look_.icon = trayPicture(theme_);
    tray_->setLook(look_);
    tray_->menu().setPalette(theme_.windowPalette());
    tray_->menu().setFont(theme_.font(TextStyle::body));
}

void GrukApp::fillTrayItem()
{
    const MenuBarState state = MenuBarState::of(model_);
    look_.status = menuBarStatus(state);
    tray_->setLook(look_);
    tray_->setEntries(trayEntries(state, QFontMetrics(theme_.font(TextStyle::body))));
}

void GrukApp::togglePanel(const QRect& anchor, const ActivationTokens& tokens)
{
    if (!panel_) {
        panel_ = std::make_unique<GrukMenuBarView>(model_, theme_);
        connect(panel_.get(), &GrukMenuBarView::chosen, this,
                [this](MenuBarItem item) { perform(item); });
    }
    panel_->toggleAt(anchor, tokens);
}

void GrukApp::openMainWindow(const ActivationTokens& tokens)
{
    if (!mainWindow_) {
        mainWindow_ = std::make_unique<SweepView>(model_, theme_);
        connect(mainWindow_.get(), &SweepView::settingsRequested, this, [this] { openSettings(); });
        connect(mainWindow_.get(), &SweepView::quitRequested, this, &GrukApp::quitRequested);
        Q_EMIT mainWindowMade(*mainWindow_);
    }
    bringForward(*mainWindow_, tokens);
}

void GrukApp::openSettings(const ActivationTokens& tokens)
{
    if (!settings_) {
        settings_ = std::make_unique<SettingsView>(model_, theme_);
    }
    bringForward(*settings_, tokens);
}

void GrukApp::perform(MenuBarItem item, const ActivationTokens& tokens)
{
    switch (item) {
    case MenuBarItem::patrolAllRealms:
        model_.patrolAllRealms();
        break;
    case MenuBarItem::patrolNow:
        model_.patrolActiveRealm();
        break;
    case MenuBarItem::stopPatrol:
        model_.cancelPatrol();
        break;
    case MenuBarItem::tidyDesktop:
        tidyDesktop(tokens);
        break;
    case MenuBarItem::settings:
        openSettings(tokens);
        break;
    case MenuBarItem::openGruk:
        openMainWindow(tokens);
        break;
    case MenuBarItem::quit:
        Q_EMIT quitRequested();
        break;
    case MenuBarItem::status:
    case MenuBarItem::progress:
    case MenuBarItem::divider:
        break;
    }
}

void GrukApp::tidyDesktop(const ActivationTokens& tokens)
{
    if (model_.grantedDesktopURL()) {
        model_.tidyDesktop();
        return;
    }
    openMainWindow(tokens);
    model_.grantDesktop();
}

}  // namespace gruk
