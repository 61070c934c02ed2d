#pragma once

#include <QRegion>
#include <QSize>

class QPainter;
class QRect;
class QStyleOptionMenuItem;

/// How the style of the house draws a menu.

namespace gruk {

class Theme;

/// Between the edge of a menu and its items.
inline constexpr int menuMargin = 6;

/// The card that a menu is. Its corners are cut where `isShaped` says that nothing shows there.
void paintMenuPanel(QPainter& painter, const QRect& bounds, const Theme& theme, bool isShaped);

/// Where its card is, of the pixels that are at least half in it.
[[nodiscard]] QRegion menuRegion(const QRect& bounds);

/// One item: its tick, its words, and its key at the right; or a line that divides.
void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& item, const Theme& theme);

/// How large an item is whose words take `words`; its key has room of its own.
[[nodiscard]] QSize menuItemSize(const QStyleOptionMenuItem& item, const QSize& words);

}  // namespace gruk
