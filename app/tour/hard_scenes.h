#pragma once

#include <QCoro/QCoroTask>

namespace gruk::tour {

class Stage;
class Tour;

/// Hard times: a realm with nothing, names that break a line or read from the right, fifty realms,
/// and a store that makes no sense. Grants realms of its own and leaves them granted.
[[nodiscard]] QCoro::Task<> showHardTimes(Tour& tour, Stage& stage);

/// A realm that is looked at while another one is patrolled, with Review Only on and off. The realm
/// of `Scans` must have been patrolled. Leaves Review Only on.
[[nodiscard]] QCoro::Task<> showReviewDuringPatrol(Tour& tour);

/// A realm of which some places were closed to the patrol, and others are on another disk. Grants
/// it, and leaves it granted.
[[nodiscard]] QCoro::Task<> showUnseenPlaces(Tour& tour);

/// A store of 500 MB while it is read and after that, and how long the window ever stood still
/// meanwhile, which is an error beyond a second. Takes that much space and a minute or so. Grants a
/// realm of its own and leaves it granted.
[[nodiscard]] QCoro::Task<> showLargeStore(Tour& tour, Stage& stage);

}  // namespace gruk::tour
