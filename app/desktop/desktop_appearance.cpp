#include "app/desktop/desktop_appearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace gruk {

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

constexpr char appearance[] = "org.freedesktop.appearance";
// Where portals older than the common key for motion tell what their own desktop has.
constexpr char gnomeInterface[] = "org.gnome.desktop.interface";
constexpr char kdeLook[] = "org.kde.kdeglobals.KDE";

constexpr uint prefersDark = 1;
constexpr uint prefersReducedMotion = 1;

/// The value itself: some portals wrap it once more than others.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

DesktopAppearance::DesktopAppearance(QDBusConnection bus, int patience)
    : bus_(std::move(bus)), patience_(patience)
{
    if (!bus_.isConnected()) {
        return;
    }
    // The connection looks its slot's types up by name, and finds none that nobody has named yet.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    bus_.connect(portalName, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                 SLOT(changeSetting(QString, QString, QDBusVariant)));
    auto* portal =
        new QDBusServiceWatcher(portalName, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(portal, &QDBusServiceWatcher::serviceRegistered, this, &DesktopAppearance::ask);
    ask();
}

void DesktopAppearance::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        portalName, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    question << QStringList{QLatin1String(appearance), QLatin1String(gnomeInterface),
                            QLatin1String(kdeLook)};
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, patience_), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        read(*answer);
        answer->deleteLater();
    });
}

void DesktopAppearance::read(const QDBusPendingCallWatcher& answer)
{
    const QDBusMessage reply = answer.reply();
    if (reply.type() != QDBusMessage::ReplyMessage
        || reply.signature() != QLatin1String("a{sa{sv}}")) {
        return;
    }
    const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        for (auto each = group->begin(); each != group->end(); ++each) {
            settings_.insert_or_assign({group.key(), each.key()}, unwrapped(*each));
        }
    }
    Q_EMIT changed();
}

void DesktopAppearance::changeSetting(const QString& group, const QString& key,
                                      const QDBusVariant& value)
{
    if (group == QLatin1String(appearance) || group == QLatin1String(gnomeInterface)
        || group == QLatin1String(kdeLook)) {
        settings_.insert_or_assign({group, key}, unwrapped(value.variant()));
        Q_EMIT changed();
    }
}

QVariant DesktopAppearance::setting(const char* group, const char* key) const
{
    const auto found = settings_.find({QLatin1String(group), QLatin1String(key)});
    return found == settings_.end() ? QVariant() : found->second;
}

std::optional<ColourScheme> DesktopAppearance::scheme() const
{
    const QVariant scheme = setting(appearance, "color-scheme");
    if (scheme.typeId() != QMetaType::UInt) {
        return std::nullopt;
    }
    return scheme.toUInt() == prefersDark ? ColourScheme::dark : ColourScheme::light;
}

bool DesktopAppearance::hasReducedMotion() const
{
    const QVariant motion = setting(appearance, "reduced-motion");
    if (motion.typeId() == QMetaType::UInt) {
        return motion.toUInt() == prefersReducedMotion;
    }
    const QVariant animations = setting(gnomeInterface, "enable-animations");
    if (animations.typeId() == QMetaType::Bool) {
        return !animations.toBool();
    }
    bool isNumber = false;
    const double factor = setting(kdeLook, "AnimationDurationFactor").toDouble(&isNumber);
    return isNumber && factor == 0;
}

}  // namespace gruk
