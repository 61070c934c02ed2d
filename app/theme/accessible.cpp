#include "app/theme/accessible.h"

#include <QAccessibleWidget>
#include <QLabel>
#include <QVariant>

#include "app/theme/text.h"

namespace gruk {

namespace {

constexpr const char* roleProperty = "grukAccessibleRole";

class AccessiblePart : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QString text(QAccessible::Text part) const override
    {
        if (part == QAccessible::Description) {
            // Never the tooltip, with its markup.
            return widget()->accessibleDescription();
        }
        const QString given = QAccessibleWidget::text(part);
        const auto* label = qobject_cast<const QLabel*>(widget());
        return part == QAccessible::Name && given.isEmpty() && label != nullptr ? label->text()
                                                                                : given;
    }
};

QAccessibleInterface* makeAccessiblePart(const QString&, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    const QVariant role = object->property(roleProperty);
    return widget == nullptr || !role.isValid()
               ? nullptr
               : new AccessiblePart(widget, static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    // The toolkit keeps one of each.
    QAccessible::installFactory(makeAccessiblePart);
    widget.setProperty(roleProperty, static_cast<int>(role));
}

void giveToolTip(QWidget& widget, const QString& text)
{
    widget.setToolTip(toolTipText(text));
    // Without one of its own a widget is described by its tooltip, markup and all.
    widget.setAccessibleDescription(text);
}

void announce(QWidget& notification)
{
    if (notification.isVisible()) {
        QAccessibleEvent shown(&notification, QAccessible::ObjectShow);
        QAccessible::updateAccessibility(&shown);
    }
}

}  // namespace gruk
