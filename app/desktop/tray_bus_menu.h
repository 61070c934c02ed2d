#pragma once

#include <vector>

#include <QDBusAbstractAdaptor>

#include "app/desktop/tray_bus_types.h"
#include "app/desktop/tray_entry.h"

namespace gruk {

/// The object on the bus on which the menu stands. Tells, in the process itself, what was chosen.
class TrayBusMenuPlace : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void chosen(int id);
};

/// A menu of one level for whoever draws it elsewhere: the interface com.canonical.dbusmenu. What
/// is not asked for by its id, and what is disabled, can't be chosen. Main thread only.
class TrayBusMenu : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    explicit TrayBusMenu(TrayBusMenuPlace& place);

    /// Tells the bus no more than what is different.
    void setEntries(std::vector<TrayEntry> entries);

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names are those of the interface
    // Types stand here in full: the bus knows them by these very words.
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   gruk::TrayMenuLayout& layout) const;
    QList<gruk::TrayMenuItem> GetGroupProperties(const QList<int>& ids,
                                                 const QStringList& propertyNames) const;
    QDBusVariant GetProperty(int id, const QString& name) const;
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const QList<gruk::TrayMenuEvent>& events);
    bool AboutToShow(int) const { return false; }
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) const;

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<gruk::TrayMenuItem>& updatedProps,
                                const QList<gruk::TrayMenuLoss>& removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);
    // NOLINTEND(readability-identifier-naming)

private:
    [[nodiscard]] const TrayEntry* entry(int id) const;
    [[nodiscard]] bool isKnown(int id) const;
    [[nodiscard]] bool hasSameShape(const std::vector<TrayEntry>& entries) const;

    TrayBusMenuPlace& place_;
    std::vector<TrayEntry> entries_;
    uint revision_ = 1;
};

}  // namespace gruk
