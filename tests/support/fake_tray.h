#pragma once

#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>

#include "app/desktop/tray_bus_types.h"

namespace gruk::test {

/// A tray on the session bus as a desktop has it: it is told of items, and reads and uses them as a
/// panel does. Everything is asked from outside, over the bus; what waits lets the events of this
/// thread go on.
class FakeTray : public QObject {
    Q_OBJECT

public:
    enum class Host { shown, none };

    /// On the bus that the session has; `host` says whether somebody shows its items.
    explicit FakeTray(Host host = Host::shown);
    ~FakeTray() override;

    /// Whether the bus has taken it.
    [[nodiscard]] bool isRunning() const { return isRunning_; }
    /// The names of the items that it was told of.
    [[nodiscard]] const QStringList& items() const { return items_; }
    /// Waits until it has been told of one; whether it has.
    [[nodiscard]] bool waitForItem();
    void setHost(Host host);

    [[nodiscard]] QVariant property(const QString& name);
    [[nodiscard]] QString menuPath();

    /// What of the menu a panel shows, a line an entry: its label, "-" before one that can't be
    /// chosen, "---" for a divider.
    [[nodiscard]] QStringList menu();
    /// Clicks the entry with that label, as a panel does; false when the menu has none.
    bool click(const QString& label);
    void activate(const QPoint& at);
    /// Calls the item, or its menu, and waits for the answer.
    QVariantList call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments);

    /// How often the item said that the whole menu is another one, and that entries of it are.
    int layoutChanges = 0;
    int entryChanges = 0;

    // For the adaptor, which speaks the interface.
    void add(const QString& item);
    [[nodiscard]] bool hasHost() const { return host_ == Host::shown; }

Q_SIGNALS:
    void hostAppeared();
    void itemAdded();

private Q_SLOTS:
    void noteLayout() { ++layoutChanges; }
    void noteEntries() { ++entryChanges; }

private:
    [[nodiscard]] TrayMenuLayout layout();

    QDBusConnection connection_;
    Host host_;
    bool isRunning_ = false;
    QStringList items_;
};

}  // namespace gruk::test
