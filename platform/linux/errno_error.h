#pragma once

#include <string>

#include "platform/foundation/errors.h"

/// The one place where an error number of the system becomes an error of the pipeline.

namespace gruk {

/// The error that `number` (positive, as `errno` has it) means for `operation` on `path`.
[[nodiscard]] FileError errnoError(int number, std::string operation, std::string path);

/// Throws it.
[[noreturn]] void throwErrno(int number, std::string operation, std::string path);

}  // namespace gruk
