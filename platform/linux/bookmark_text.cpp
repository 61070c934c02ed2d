#include "platform/linux/bookmark_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <system_error>

#include "platform/foundation/base64.h"

namespace gruk {

namespace {

constexpr std::string_view firstLine = "gruk-bookmark 1";

constexpr std::string_view placeKey = "place";
constexpr std::string_view kindKey = "kind";
constexpr std::string_view mountRootKey = "mount-root";
constexpr std::string_view inodeKey = "inode";
constexpr std::string_view bornKey = "born";
constexpr std::string_view volumeNumberKey = "volume-number";
constexpr std::string_view volumeUUIDKey = "volume-uuid";
constexpr std::string_view volumeSourceKey = "volume-source";
constexpr std::string_view mountPointKey = "mount-point";
constexpr std::array keys{placeKey,        kindKey,       mountRootKey,    inodeKey,     bornKey,
                          volumeNumberKey, volumeUUIDKey, volumeSourceKey, mountPointKey};

using Lines = std::map<std::string_view, std::string_view>;

void append(std::string& text, std::string_view key, std::string_view value)
{
    text.append(key).append(" ").append(value).append("\n");
}

std::string hexText(std::uint64_t number)
{
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return {digits.data(), end};
}

/// The number that `value` is to its end; none for anything else.
template <typename Number>
std::optional<Number> number(std::string_view value, int base)
{
    Number result = 0;
    const char* end = value.data() + value.size();
    const auto read = std::from_chars(value.data(), end, result, base);
    return read.ec == std::errc() && read.ptr == end ? std::optional(result) : std::nullopt;
}

/// The lines by their keys; none when one is not a line of a bookmark or stands there twice.
std::optional<Lines> linesOf(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        const std::size_t blank = line.find(' ');
        if (end == std::string_view::npos || blank == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view key = line.substr(0, blank);
        if (std::find(keys.begin(), keys.end(), key) == keys.end()
            || !lines.emplace(key, line.substr(blank + 1)).second) {
            return std::nullopt;
        }
        text.remove_prefix(end + 1);
    }
    return lines;
}

/// Reads the line `key`, if there is one, with `read`; false when that gives none.
template <typename Value, typename Read>
bool readOptional(const Lines& lines, std::string_view key, std::optional<Value>& field, Read read)
{
    const auto line = lines.find(key);
    if (line == lines.end()) {
        return true;
    }
    field = read(line->second);
    return field.has_value();
}

std::optional<bool> truth(std::string_view value)
{
    return value == "yes" ? std::optional(true)
                          : (value == "no" ? std::optional(false) : std::nullopt);
}

std::optional<std::string> pathOf(std::string_view value)
{
    const std::optional<FileURL> url = FileURL::fromFileURLText(value);
    return url ? std::optional(url->path()) : std::nullopt;
}

}  // namespace

std::string bookmarkText(const Bookmark& bookmark)
{
    const DirectoryIdentity& identity = bookmark.identity;
    std::string text(firstLine);
    text += '\n';
    append(text, placeKey, bookmark.place.fileURLText());
    append(text, kindKey, hexText(identity.fileSystemKind));
    append(text, mountRootKey, identity.isMountRoot ? "yes" : "no");
    if (identity.inode) {
        append(text, inodeKey, std::to_string(*identity.inode));
    }
    if (identity.born) {
        append(text, bornKey, std::to_string(*identity.born));
    }
    if (identity.volumeNumber) {
        append(text, volumeNumberKey, hexText(*identity.volumeNumber));
    }
    if (identity.volumeUUID) {
        append(text, volumeUUIDKey, *identity.volumeUUID);
    }
    if (identity.volumeSource) {
        append(text, volumeSourceKey, base64Encoded(*identity.volumeSource));
    }
    if (identity.mountPoint) {
        append(text, mountPointKey, FileURL(*identity.mountPoint).fileURLText());
    }
    return text;
}

std::optional<Bookmark> parseBookmark(std::string_view text)
{
    if (!text.starts_with(firstLine) || text.substr(firstLine.size(), 1) != "\n") {
        return std::nullopt;
    }
    const std::optional<Lines> lines = linesOf(text.substr(firstLine.size() + 1));
    if (!lines) {
        return std::nullopt;
    }
    const auto decimal = [](std::string_view value) { return number<std::uint64_t>(value, 10); };
    const auto moment = [](std::string_view value) { return number<std::int64_t>(value, 10); };
    const auto hex = [](std::string_view value) { return number<std::uint64_t>(value, 16); };
    const auto word = [](std::string_view value) { return std::optional(std::string(value)); };

    std::optional<FileURL> place;
    std::optional<std::uint64_t> kind;
    std::optional<bool> isMountRoot;
    DirectoryIdentity identity;
    const bool isReadable =
        readOptional(*lines, placeKey, place, FileURL::fromFileURLText)
        && readOptional(*lines, kindKey, kind, hex)
        && readOptional(*lines, mountRootKey, isMountRoot, truth)
        && readOptional(*lines, inodeKey, identity.inode, decimal)
        && readOptional(*lines, bornKey, identity.born, moment)
        && readOptional(*lines, volumeNumberKey, identity.volumeNumber, hex)
        && readOptional(*lines, volumeUUIDKey, identity.volumeUUID, word)
        && readOptional(*lines, volumeSourceKey, identity.volumeSource, base64Decoded)
        && readOptional(*lines, mountPointKey, identity.mountPoint, pathOf);
    if (!isReadable || !place || !kind || !isMountRoot) {
        return std::nullopt;
    }
    identity.fileSystemKind = *kind;
    identity.isMountRoot = *isMountRoot;
    return Bookmark{*place, identity};
}

}  // namespace gruk
