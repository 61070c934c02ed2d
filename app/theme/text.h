#pragma once

#include <string_view>

#include <QString>

#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// Text of the model for the screen: UTF-8, and U+FFFD for every byte that is not.
[[nodiscard]] QString displayString(std::string_view bytes);

/// The same for a name or path, which may hold a line break or another control character: those
/// show as the pictures of themselves, so that a name never takes two lines.
[[nodiscard]] QString displayName(std::string_view bytes);

/// `text` for a tooltip, which would take some texts for markup.
[[nodiscard]] QString toolTipText(const QString& text);

/// A byte count as the whole program writes it.
[[nodiscard]] QString bytesText(Bytes bytes);

/// A count as the user's locale groups it.
[[nodiscard]] QString groupedNumber(qint64 count);

}  // namespace gruk
