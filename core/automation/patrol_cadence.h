#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace gruk {

/// When a realm is patrolled without being asked.
enum class PatrolCadence {
    /// Never by itself.
    off,
    daily,
    weekly,
    /// When the files of the realm have changed and then gone quiet; never by the clock.
    standGuard
};

/// All of them, in the order in which they are offered.
inline constexpr std::array allPatrolCadences = {PatrolCadence::off, PatrolCadence::daily,
                                                 PatrolCadence::weekly, PatrolCadence::standGuard};

/// The text that a cadence is stored as: "off", "daily", "weekly", "standGuard".
[[nodiscard]] std::string_view rawString(PatrolCadence cadence);

/// Reads what `rawString` writes, letter for letter; none for any other text.
[[nodiscard]] std::optional<PatrolCadence> patrolCadence(std::string_view raw);

/// Seconds between two patrols: a fixed count, not calendar days, so that a change of clock time
/// moves nothing. None for the cadences that do not go by the clock.
[[nodiscard]] std::optional<double> interval(PatrolCadence cadence);

}  // namespace gruk
