#pragma once

#include <vector>

class QWidget;

namespace gruk {

/// Has Tab go from each of `stops` to the next, whenever and in whatever order they were made. The
/// first one keeps its place; one that is null is left out. All take the focus by Tab, and lie in
/// one window.
void chainTabStops(const std::vector<QWidget*>& stops);

/// What Tab reaches last before it comes to where `area` stands in its window; null when nothing
/// is before it.
[[nodiscard]] QWidget* tabStopBefore(const QWidget& area);

}  // namespace gruk
