#pragma once

#include <map>
#include <optional>
#include <utility>

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QVariant>

#include "app/theme/palette.h"

class QDBusPendingCallWatcher;

namespace gruk {

/// What the desktop's portal says about the look of programs: light or dark, and whether things may
/// move. Asks without waiting, again when the portal comes, and hears of every change. A desktop
/// without a portal, or with one that does not answer in time, leaves all of it open. Main thread
/// only.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    /// How long the portal may take to answer, which may have to be started first.
    static constexpr int usualPatience = 10'000;

    /// Asks over `bus`, which may be one that is not connected. `patience` in milliseconds.
    explicit DesktopAppearance(QDBusConnection bus, int patience = usualPatience);

    /// None where the portal does not say.
    [[nodiscard]] std::optional<ColourScheme> scheme() const;
    /// Whether the desktop asks for no movement.
    [[nodiscard]] bool hasReducedMotion() const;

Q_SIGNALS:
    /// What one of the two says may be another now.
    void changed();

private Q_SLOTS:
    void changeSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask();
    void read(const QDBusPendingCallWatcher& answer);
    [[nodiscard]] QVariant setting(const char* group, const char* key) const;

    QDBusConnection bus_;
    int patience_;
    /// What was heard, by group and key.
    std::map<std::pair<QString, QString>, QVariant> settings_;
};

}  // namespace gruk
