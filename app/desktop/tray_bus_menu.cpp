#include "app/desktop/tray_bus_menu.h"

#include <algorithm>
#include <utility>

#include <QGuiApplication>

namespace gruk {

namespace {

constexpr int root = 0;

/// The interface takes one "_" for the mark of a key.
QString entryLabel(const TrayEntry& entry)
{
    return QString(entry.text).replace(QLatin1Char('_'), QLatin1String("__"));
}

/// Those of `all` that are asked for; no names ask for every one.
QVariantMap chosenFrom(const QVariantMap& all, const QStringList& names)
{
    if (names.isEmpty()) {
        return all;
    }
    QVariantMap result;
    for (const QString& name : names) {
        if (all.contains(name)) {
            result.insert(name, all.value(name));
        }
    }
    return result;
}

QVariantMap propertiesOf(const TrayEntry& entry)
{
    if (entry.kind == TrayEntry::Kind::divider) {
        return {{QStringLiteral("type"), QStringLiteral("separator")},
                {QStringLiteral("visible"), true}};
    }
    return {{QStringLiteral("label"), entryLabel(entry)},
            {QStringLiteral("enabled"), entry.isEnabled},
            {QStringLiteral("visible"), true}};
}

QVariantMap rootProperties()
{
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

}  // namespace

TrayBusMenu::TrayBusMenu(TrayBusMenuPlace& place) : QDBusAbstractAdaptor(&place), place_(place)
{
    registerTrayTypes();
}

void TrayBusMenu::setEntries(std::vector<TrayEntry> entries)
{
    if (entries == entries_) {
        return;
    }
    const bool isSameShape = hasSameShape(entries);
    const std::vector<TrayEntry> former = std::exchange(entries_, std::move(entries));
    if (!isSameShape) {
        ++revision_;
        Q_EMIT LayoutUpdated(revision_, root);
        return;
    }
    QList<TrayMenuItem> updated;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i] != former[i]) {
            updated.append({entries_[i].id, propertiesOf(entries_[i])});
        }
    }
    Q_EMIT ItemsPropertiesUpdated(updated, {});
}

QString TrayBusMenu::textDirection() const
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl")
                                                                 : QStringLiteral("ltr");
}

uint TrayBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                            TrayMenuLayout& layout) const
{
    layout = {parentId, {}, {}};
    if (const TrayEntry* const only = entry(parentId)) {
        layout.properties = chosenFrom(propertiesOf(*only), propertyNames);
    }
    if (parentId != root) {
        return revision_;
    }
    layout.properties = chosenFrom(rootProperties(), propertyNames);
    if (recursionDepth != 0) {
        for (const TrayEntry& each : entries_) {
            const TrayMenuLayout child{each.id, chosenFrom(propertiesOf(each), propertyNames), {}};
            layout.children.append(QDBusVariant(QVariant::fromValue(child)));
        }
    }
    return revision_;
}

QList<TrayMenuItem> TrayBusMenu::GetGroupProperties(const QList<int>& ids,
                                                    const QStringList& propertyNames) const
{
    QList<TrayMenuItem> items;
    for (const TrayEntry& each : entries_) {
        if (ids.isEmpty() || ids.contains(each.id)) {
            items.append({each.id, chosenFrom(propertiesOf(each), propertyNames)});
        }
    }
    if (ids.contains(root)) {
        items.append({root, chosenFrom(rootProperties(), propertyNames)});
    }
    return items;
}

QDBusVariant TrayBusMenu::GetProperty(int id, const QString& name) const
{
    const TrayEntry* const found = entry(id);
    const QVariantMap properties = found != nullptr ? propertiesOf(*found)
                                   : id == root     ? rootProperties()
                                                    : QVariantMap();
    // The bus knows no empty value.
    return QDBusVariant(properties.value(name, QString()));
}

void TrayBusMenu::Event(int id, const QString& eventId, const QDBusVariant&, uint)
{
    const TrayEntry* const found = entry(id);
    const bool canBeChosen =
        found != nullptr && found->isEnabled && found->kind == TrayEntry::Kind::action;
    if (canBeChosen && eventId == QLatin1String("clicked")) {
        // Queued, so that the one who clicked has its answer also when it ends the program.
        QMetaObject::invokeMethod(
            &place_, [this, id] { Q_EMIT place_.chosen(id); }, Qt::QueuedConnection);
    }
}

QList<int> TrayBusMenu::EventGroup(const QList<TrayMenuEvent>& events)
{
    QList<int> unknown;
    for (const TrayMenuEvent& event : events) {
        if (isKnown(event.id)) {
            Event(event.id, event.name, event.data, event.time);
        } else {
            unknown.append(event.id);
        }
    }
    return unknown;
}

QList<int> TrayBusMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) const
{
    std::ranges::copy_if(ids, std::back_inserter(idErrors),
                         [this](int id) { return !isKnown(id); });
    return {};
}

const TrayEntry* TrayBusMenu::entry(int id) const
{
    const auto found = std::ranges::find(entries_, id, &TrayEntry::id);
    return found == entries_.end() ? nullptr : &*found;
}

bool TrayBusMenu::isKnown(int id) const
{
    return id == root || entry(id) != nullptr;
}

bool TrayBusMenu::hasSameShape(const std::vector<TrayEntry>& entries) const
{
    return std::ranges::equal(entries, entries_, [](const TrayEntry& a, const TrayEntry& b) {
        return a.kind == b.kind && a.id == b.id;
    });
}

}  // namespace gruk
