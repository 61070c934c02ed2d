#include "core/automation/patrol_cadence.h"

#include "platform/foundation/require.h"

namespace gruk {

namespace {

constexpr double secondsADay = 86'400;
constexpr double secondsAWeek = 7 * secondsADay;

}  // namespace

std::string_view rawString(PatrolCadence cadence)
{
    switch (cadence) {
    case PatrolCadence::off:
        return "off";
    case PatrolCadence::daily:
        return "daily";
    case PatrolCadence::weekly:
        return "weekly";
    case PatrolCadence::standGuard:
        return "standGuard";
    }
    stopProgram("no such cadence", __FILE__, __LINE__);
}

std::optional<PatrolCadence> patrolCadence(std::string_view raw)
{
    for (const PatrolCadence cadence : allPatrolCadences) {
        if (rawString(cadence) == raw) {
            return cadence;
        }
    }
    return std::nullopt;
}

std::optional<double> interval(PatrolCadence cadence)
{
    switch (cadence) {
    case PatrolCadence::daily:
        return secondsADay;
    case PatrolCadence::weekly:
        return secondsAWeek;
    case PatrolCadence::off:
    case PatrolCadence::standGuard:
        break;
    }
    return std::nullopt;
}

}  // namespace gruk
