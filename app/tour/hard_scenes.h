#pragma once

#include <QCoro/QCoroTask>

namespace gruk::tour {

class Stage;
class Tour;

/// Hard times: a realm with nothing, names that break a line or read from the right, fifty realms,
/// and a store that makes no sense. Grants realms of its own and leaves them granted.
[[nodiscard]] QCoro::Task<> showHardTimes(Tour& tour, Stage& stage);

}  // namespace gruk::tour
