#pragma once

#include <QCoro/QCoroTask>

namespace gruk::tour {

class Stage;
class Tour;

/// The review of a realm with findings, which is open and patrolled: ticked, asked about, moved and
/// put back, and what stands behind its other doors.
[[nodiscard]] QCoro::Task<> showReview(Tour& tour, Stage& stage);

}  // namespace gruk::tour
