#pragma once

class QKeyEvent;
class QScrollBar;

namespace gruk {

/// Scrolls by Page Up, Page Down, Home and End. False for every other key.
[[nodiscard]] bool scrolledByKey(QScrollBar& bar, const QKeyEvent& event);

}  // namespace gruk
