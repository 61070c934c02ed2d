#pragma once

#include <string_view>

#include <QStringList>

#include "platform/foundation/checked_arithmetic.h"

class QFont;

namespace gruk {

/// Text of the model for the screen: UTF-8, and U+FFFD for every byte that is not.
[[nodiscard]] QString displayString(std::string_view bytes);

/// The same for a name or path, which may hold a line break or another control character: those
/// show as the pictures of themselves, so that a name never takes two lines.
[[nodiscard]] QString displayName(std::string_view bytes);

/// `text` for a tooltip, which would take some texts for markup, and a name without a blank for a
/// reason to be wider than the screen: it may be broken (U+200B) where it is long.
[[nodiscard]] QString toolTipText(const QString& text);

/// The lines of `text` in `font` where each may be `width` wide, at least one: broken between
/// words, and within one that is too long for a line. Of more than `mostLines` the last is what is
/// left, elided in its middle; 0 for as many as it takes.
[[nodiscard]] QStringList wrappedLines(const QString& text, const QFont& font, int width,
                                       int mostLines = 0);

/// How tall all of them are together.
[[nodiscard]] int wrappedHeight(const QString& text, const QFont& font, int width);

/// A byte count as the whole program writes it.
[[nodiscard]] QString bytesText(Bytes bytes);

/// A count as the whole program writes it, in every locale.
[[nodiscard]] QString groupedNumber(qint64 count);

}  // namespace gruk
