#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The command lines of desktop entries, with their own rules of quoting: the Desktop Entry
/// Specification 1.5, "The Exec key". Pure; any thread.

namespace gruk {

/// The value of "Exec" that runs `program` (an absolute path, or a name) without arguments: quoted,
/// and with what would be a field code doubled. None when no such value can be: for a path that is
/// not UTF-8, or with "=" in it.
[[nodiscard]] std::optional<std::string> execValue(std::string_view program);

/// The program that a value of "Exec" runs; none when its quotes do not make sense, it is empty, or
/// it names a program that no value can name.
[[nodiscard]] std::optional<std::string> programOfExec(std::string_view value);

}  // namespace gruk
