#pragma once

#include <memory>
#include <vector>

#include <QMenu>
#include <QObject>
#include <QRect>

#include "app/desktop/activation.h"
#include "app/desktop/tray_bus.h"
#include "app/desktop/tray_entry.h"

class QSystemTrayIcon;

namespace gruk {

/// The program's item in the desktop's tray, with a menu: by the status-notifier protocol where
/// the session has a tray that knows it, else in the tray of X11. A tray that comes later is
/// noticed; where there is none, nothing is shown and nothing is lost. Main thread only, within the
/// life of the application object.
class TrayItem : public QObject {
    Q_OBJECT

public:
    /// `applicationID` is the application's reverse-DNS name. Waits for a bus that does not answer
    /// no longer than a moment.
    explicit TrayItem(const QString& applicationID, QObject* parent = nullptr);
    ~TrayItem() override;

    void setLook(const TrayLook& look);
    void setEntries(const std::vector<TrayEntry>& entries);
    /// The menu as this process shows it, where the tray leaves that to it; for its colours.
    [[nodiscard]] QMenu& menu() { return menu_; }

    /// Whether there is a tray that shows it now.
    [[nodiscard]] bool isShown() const;

Q_SIGNALS:
    /// It may be shown now, or no more.
    void isShownChanged();
    /// It was clicked. `anchor` is where it is on the screen; empty where nobody may know.
    void activated(const QRect& anchor, const gruk::ActivationTokens& tokens);
    void chosen(int id, const gruk::ActivationTokens& tokens);

private:
    void connectBus();
    void fillMenu();
    /// Shows the item in the tray of X11 when no other tray shows it.
    void updateX11();

    std::unique_ptr<TrayBus> bus_;
    QMenu menu_;
    QSystemTrayIcon* x11_ = nullptr;
    TrayLook look_;
    std::vector<TrayEntry> entries_;
};

}  // namespace gruk
