#pragma once

#include <vector>

#include <QDBusConnection>
#include <QIcon>
#include <QObject>
#include <QPoint>

#include "app/desktop/activation.h"
#include "app/desktop/tray_entry.h"

namespace gruk {

class TrayBusMenu;
class TrayBusMenuPlace;
class TrayBusIcon;

/// How an item looks in a tray.
struct TrayLook {
    QString title;
    /// What to know about it now, in one line.
    QString status;
    /// The name under which the desktop's own icon theme has it; empty when that has none.
    QString iconName;
    /// Drawn, for whoever does not find it by its name.
    QIcon icon;
};

/// An item in a tray that is found over the session bus: the status-notifier protocol. Trays come
/// and go, also after this; it is in whichever there is. Never waits for one. Main thread only.
class TrayBus : public QObject {
    Q_OBJECT

public:
    /// `applicationID` is the application's reverse-DNS name. `connection` is this object's alone,
    /// which ends it.
    TrayBus(QDBusConnection connection, const QString& applicationID);
    ~TrayBus() override;

    void setLook(const TrayLook& look);
    void setEntries(std::vector<TrayEntry> entries);

    /// Whether it has been found out if there is a tray now.
    [[nodiscard]] bool isAnswered() const { return isAnswered_; }
    /// Whether it is in a tray that somebody shows.
    [[nodiscard]] bool isShown() const { return isRegistered_ && hasHost_; }

Q_SIGNALS:
    /// One of the two above.
    void stateChanged();
    /// It was clicked, at about this place of the screen.
    void activated(const QPoint& at, const gruk::ActivationTokens& tokens);
    /// Its menu is wanted by a tray that can't show one.
    void menuRequested(const QPoint& at);
    void chosen(int id, const gruk::ActivationTokens& tokens);

private Q_SLOTS:
    void askForHost();

private:
    void publish();
    void watchForTrays();
    /// A watcher of trays may be there now, and it knows nothing of this item yet.
    void meetWatcher();
    void forgetWatcher();
    void finishQuestion();
    [[nodiscard]] ActivationTokens takeTokens();

    QDBusConnection connection_;
    QString name_;
    TrayBusIcon* icon_;
    TrayBusMenuPlace* menuPlace_;
    TrayBusMenu* menu_;
    /// Answers to an earlier watcher do not count.
    int watcher_ = 0;
    int openQuestions_ = 0;
    bool isAnswered_ = false;
    bool isRegistered_ = false;
    bool hasHost_ = false;
};

}  // namespace gruk
