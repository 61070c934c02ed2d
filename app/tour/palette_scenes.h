#pragma once

#include <QCoro/QCoroTask>

namespace gruk::tour {

class Stage;
class Tour;

/// The main pages in every palette and both schemes, and at the sizes of large and sharp screens.
/// A realm must be open and patrolled.
[[nodiscard]] QCoro::Task<> showPalettes(Tour& tour, Stage& stage);

}  // namespace gruk::tour
