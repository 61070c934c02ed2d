#pragma once

#include <cstddef>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

/// The names in a Trash and the text of its info files. Pure; any thread.
///
/// Source: the Trash specification 1.0 of the free desktops.

namespace gruk {

/// What the name of an info file adds to the name of its item.
inline constexpr std::string_view trashInfoSuffix = ".trashinfo";

/// What an info file says.
struct TrashInfo {
    /// Where the item was: bytes of an absolute path, or of one relative to the volume's top.
    std::string path;
    /// "2026-11-21T01:28:28" in local time; another program's may be anything, also nothing.
    std::string deletionDate;

    friend bool operator==(const TrashInfo&, const TrashInfo&) = default;
};

/// "2026-11-21T01:28:28", the moment in local time.
[[nodiscard]] std::string deletionDateText(std::time_t moment);

/// The text of an info file. The path must hold no NUL.
[[nodiscard]] std::string trashInfoText(const TrashInfo& info);

/// Reads an info file of any program's: the first `Path` and the first `DeletionDate` of the
/// group `[Trash Info]`, which must come first; other lines are passed over. None without a path,
/// or with a path whose percent signs do not make sense.
[[nodiscard]] std::optional<TrashInfo> parseTrashInfo(std::string_view text);

/// A name for an item named `name` in the Trash: with `mark` before its extension when `mark` is
/// not empty ("a.2.txt"), and shortened, at a whole character where there are characters, so that
/// it has at most `longest` bytes.
[[nodiscard]] std::string trashName(std::string_view name, std::string_view mark,
                                    std::size_t longest);

/// `path` with every byte but the unreserved ones and "/" as "%XX", and back; none for a text whose
/// percent signs do not make sense, or that is empty.
[[nodiscard]] std::string percentEncodedPath(std::string_view path);
[[nodiscard]] std::optional<std::string> percentDecodedPath(std::string_view text);

}  // namespace gruk
