#include "app/screens/territory_map_accessible.h"

#include <vector>

#include <QAccessibleWidget>
#include <QPointer>

#include "app/screens/territory_map_view.h"

namespace gruk {

namespace {

/// One territory, by its place on the map. What it is called and where it lies is asked of the view
/// each time, so that it stays true when the map is divided anew.
class AccessibleTerritory final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleTerritory(TerritoryMapView& view, std::size_t territory)
        : view_(&view), territory_(territory)
    {
    }

    [[nodiscard]] bool isValid() const override
    {
        return view_ != nullptr && territory_ < view_->map().territories.size();
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override
    {
        return isValid() ? parent()->window() : nullptr;
    }
    [[nodiscard]] QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(view_);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        return isValid() && text == QAccessible::Name ? view_->nameOf(territory_) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override
    {
        if (!isValid()) {
            return {};
        }
        const QRect bounds = view_->boundsOf(territory_);
        return {view_->mapToGlobal(bounds.topLeft()), bounds.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.focusable = true;
        state.focused = view_->focused() == territory_;
        state.invisible = !view_->isVisible();
        state.offscreen = view_->visibleRegion().intersected(view_->boundsOf(territory_)).isEmpty();
        return state;
    }

    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        if (isValid() && name == pressAction()) {
            view_->select(territory_);
        }
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<TerritoryMapView> view_;
    std::size_t territory_;
};

class AccessibleTerritoryMap final : public QAccessibleWidget {
public:
    explicit AccessibleTerritoryMap(TerritoryMapView& view)
        : QAccessibleWidget(&view, QAccessible::List), view_(view)
    {
    }
    ~AccessibleTerritoryMap() override
    {
        for (const QAccessible::Id id : children_) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }
    AccessibleTerritoryMap(const AccessibleTerritoryMap&) = delete;
    AccessibleTerritoryMap& operator=(const AccessibleTerritoryMap&) = delete;

    [[nodiscard]] int childCount() const override
    {
        return static_cast<int>(view_.map().territories.size());
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        while (children_.size() <= static_cast<std::size_t>(index)) {
            children_.push_back(QAccessible::registerAccessibleInterface(
                new AccessibleTerritory(view_, children_.size())));
        }
        return QAccessible::accessibleInterface(children_[static_cast<std::size_t>(index)]);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        for (int index = 0; index < childCount(); ++index) {
            if (this->child(index) == child) {
                return index;
            }
        }
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto territory = view_.territoryAtPoint(view_.mapFromGlobal(QPoint(x, y)));
        return territory ? child(static_cast<int>(*territory)) : nullptr;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override
    {
        const auto territory = view_.focused();
        return territory ? child(static_cast<int>(*territory)) : nullptr;
    }

private:
    TerritoryMapView& view_;
    /// Made when they are asked for.
    mutable std::vector<QAccessible::Id> children_;
};

QAccessibleInterface* accessibleMap(const QString&, QObject* object)
{
    auto* view = qobject_cast<TerritoryMapView*>(object);
    return view == nullptr ? nullptr : new AccessibleTerritoryMap(*view);
}

}  // namespace

void installTerritoryMapAccessible()
{
    // The toolkit keeps one of each.
    QAccessible::installFactory(accessibleMap);
}

}  // namespace gruk
