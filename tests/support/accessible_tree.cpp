#include "tests/support/accessible_tree.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include <QAbstractItemView>
#include <QMetaEnum>
#include <QTextDocument>
#include <QWidget>

namespace gruk::test {

namespace {

class Walk {
public:
    explicit Walk(QWidget& window)
    {
        if (QAccessibleInterface* top = QAccessible::queryAccessibleInterface(&window)) {
            visit(*top, false);
        }
    }

    std::vector<AccessibleThing> things;
    std::set<const QObject*> objects;

private:
    void visit(QAccessibleInterface& at, bool isInRow)
    {
        if (!at.isValid() || at.state().invisible) {
            return;
        }
        const QObject* object = at.object();
        if (object != nullptr) {
            objects.insert(object);
        }
        things.push_back(
            {at.role(), at.text(QAccessible::Name), at.text(QAccessible::Description), at.state(),
             object == nullptr ? QString() : QString::fromLatin1(object->metaObject()->className()),
             isInRow});
        const bool holdsRow = isInRow || at.role() == QAccessible::ListItem;
        for (int index = 0; index < at.childCount(); ++index) {
            if (QAccessibleInterface* child = at.child(index)) {
                visit(*child, holdsRow);
            }
        }
    }
};

/// One that does something when it is pressed.
bool isPressed(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::ButtonDropDown:
    case QAccessible::ButtonMenu:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::Link:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
        return true;
    default:
        return false;
    }
}

/// What is used, or read as a part of something that is used.
bool isControl(const AccessibleThing& thing)
{
    switch (thing.role) {
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::Dial:
    case QAccessible::List:
    case QAccessible::ListItem:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::TreeItem:
    case QAccessible::Cell:
    case QAccessible::ColumnHeader:
    case QAccessible::RowHeader:
    case QAccessible::PageTabList:
    case QAccessible::ProgressBar:
    case QAccessible::Graphic:
    case QAccessible::Dialog:
    case QAccessible::Heading:
        return true;
    default:
        return isPressed(thing.role) || thing.state.focusable;
    }
}

/// Of a table the toolkit tells the cells. What else lies in one is found by the keyboard.
bool hasNameInATable(const QWidget& widget)
{
    const QWidget* around = widget.parentWidget();
    while (around != nullptr && qobject_cast<const QAbstractItemView*>(around) == nullptr) {
        around = around->parentWidget();
    }
    return around != nullptr && !widget.accessibleName().trimmed().isEmpty();
}

/// How a failing test shows it.
QString shown(const AccessibleThing& thing)
{
    const char* role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(thing.role);
    return QStringLiteral("%1 \"%2\" (%3) %4")
        .arg(QLatin1String(role), thing.name, thing.description, thing.widgetClass);
}

template <typename IsWanted>
AccessibleThing firstNamed(QWidget& window, const QString& name, const IsWanted& isWanted)
{
    const std::vector<AccessibleThing> things = accessibleThings(window);
    const auto found = std::ranges::find_if(things, [&](const AccessibleThing& thing) {
        return thing.name == name && isWanted(thing.role);
    });
    if (found == things.end()) {
        throw std::runtime_error("nothing of that role is called " + name.toStdString());
    }
    return *found;
}

}  // namespace

std::vector<AccessibleThing> accessibleThings(QWidget& window)
{
    return Walk(window).things;
}

AccessibleThing thingNamed(QWidget& window, const QString& name)
{
    return firstNamed(window, name, [](QAccessible::Role) { return true; });
}

AccessibleThing thingNamed(QWidget& window, const QString& name, QAccessible::Role role)
{
    return firstNamed(window, name, [&](QAccessible::Role other) { return other == role; });
}

QStringList namelessControls(QWidget& window)
{
    const Walk walk(window);
    QStringList nameless;
    for (const AccessibleThing& thing : walk.things) {
        const bool isNameless = isControl(thing) && thing.name.trimmed().isEmpty();
        // A name that is not read out, and a text for the eye that would be.
        const bool isIdle = thing.role == QAccessible::Client && !thing.name.isEmpty();
        const bool isMarkup = Qt::mightBeRichText(thing.description);
        if (isNameless || isIdle || isMarkup) {
            nameless.append(shown(thing));
        }
    }
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isWanted = widget->window() == window.window() && widget->isVisible()
                              && widget->focusPolicy() != Qt::NoFocus;
        if (isWanted && !walk.objects.contains(widget) && !hasNameInATable(*widget)) {
            nameless.append(QStringLiteral("out of reach: %1 \"%2\"")
                                .arg(QLatin1String(widget->metaObject()->className()),
                                     widget->accessibleName()));
        }
    }
    return nameless;
}

QStringList controlsThatSoundAlike(QWidget& window)
{
    QStringList alike;
    std::set<std::pair<QString, QString>> inRows;
    QString before;
    for (const AccessibleThing& thing : accessibleThings(window)) {
        // Not to be taken for another.
        if (!isPressed(thing.role) || thing.state.disabled) {
            continue;
        }
        const bool isAlike = thing.isInRow ? !inRows.emplace(thing.name, thing.description).second
                                           : thing.name == before;
        if (isAlike) {
            alike.append(shown(thing));
        }
        before = thing.isInRow ? QString() : thing.name;
    }
    return alike;
}

}  // namespace gruk::test
