#pragma once

#include <QCoro/QCoroTask>

namespace gruk::tour {

class Stage;
class Tour;

/// What opens and comes for a moment: every menu, the list of a picker, the places of the sidebar,
/// and the banner of a filing rule. A realm must be open and patrolled; the same is open at the
/// end.
[[nodiscard]] QCoro::Task<> showSmallThings(Tour& tour, Stage& stage);

}  // namespace gruk::tour
