#pragma once

#include <optional>

#include <QDBusConnection>
#include <QDeadlineTimer>

namespace gruk {

/// A bus that works answers a question of its own at once, in milliseconds.
inline constexpr int patienceWithBus = 1'000;

/// A connection to the session bus for the caller alone, who ends it by
/// `QDBusConnection::disconnectFromBus` with its name. None when there is no session bus, or none
/// that answers before `deadline`; nothing is started to get one. Waits; any thread.
[[nodiscard]] std::optional<QDBusConnection> connectToSessionBus(const QDeadlineTimer& deadline);

/// What is left until `deadline` as a time limit for the toolkit, in milliseconds: at least 1, at
/// most `most`.
[[nodiscard]] int millisecondsUntil(const QDeadlineTimer& deadline, int most = patienceWithBus);

}  // namespace gruk
