#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gruk {

/// The rules of a review that look at a name or a path alone. Pure; any thread.

/// The name that a file browser's second download was made from: "report (1).pdf" gives
/// "report.pdf", "a (1) (2).txt" gives "a (1).txt". The number stands right before the last
/// extension; none for any other name.
[[nodiscard]] std::optional<std::string> originalOfDuplicateName(std::string_view name);

/// The same for the names that the browsers and file managers of this desktop give to a copy:
/// "report(1).pdf", "report (copy).pdf", "report (another copy).pdf", "report (3rd copy).pdf",
/// "report (copy 2).pdf", "Copy of report.pdf", "report - Copy.pdf". What follows ".tar" belongs to
/// the extension: "a (1).tar.gz" and "a(1).tar.gz" give "a.tar.gz". None for any other name, also
/// for those that the first one knows.
[[nodiscard]] std::optional<std::string> originalOfDesktopCopyName(std::string_view name);

/// Whether a relative path lies in a known cache or build location. A backslash counts as "/".
/// The locations of a home folder match at the top of a realm only; "node_modules" and ".build"
/// match anywhere but at the top.
[[nodiscard]] bool isRegenerableCache(std::string_view relativePath);

}  // namespace gruk
