#pragma once

#include <QString>

#include "core/patrol/file_kind.h"

namespace gruk {

/// What a kind of item is called.
[[nodiscard]] QString nameOf(FileKind kind);

/// The same within a sentence, before "files".
[[nodiscard]] QString nameInSentence(FileKind kind);

}  // namespace gruk
