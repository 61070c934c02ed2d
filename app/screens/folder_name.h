#pragma once

#include <QString>

/// The name of a folder as the user writes it. Pure.
namespace gruk::FolderName {

/// Without the space and line breaks around it.
[[nodiscard]] QString trimmed(const QString& written);

/// Why no folder can be called `name`, which is trimmed, in one sentence; empty when one can.
[[nodiscard]] QString refusal(const QString& name);

}  // namespace gruk::FolderName
