#include "platform/linux/trash_info.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

#include "platform/foundation/ascii.h"
#include "platform/foundation/file_url.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

constexpr std::string_view header = "[Trash Info]";

std::string_view takeLine(std::string_view& text)
{
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return trimmedLine(line);
}

/// The value of a line "key=value"; none for another key.
std::optional<std::string_view> valueOfKey(std::string_view line, std::string_view key)
{
    const std::size_t mark = line.find('=');
    if (mark == std::string_view::npos || trimmedLine(line.substr(0, mark)) != key) {
        return std::nullopt;
    }
    return trimmedLine(line.substr(mark + 1));
}

/// Where to end `text` so that at most `room` bytes are left and no character is split.
std::size_t characterEnd(std::string_view text, std::size_t room)
{
    if (room >= text.size()) {
        return text.size();
    }
    constexpr std::size_t longestSequence = 4;
    for (std::size_t back = 1; back < longestSequence && back <= room; ++back) {
        if (utf8SequenceLength(text.substr(room - back)) > back) {
            return room - back;
        }
    }
    return room;
}

/// Where the extension of `name` starts; its end when it has none worth keeping.
std::size_t extensionStart(std::string_view name)
{
    constexpr std::size_t longestExtension = 16;
    const std::size_t dot = name.rfind('.');
    const bool isExtension =
        dot != std::string_view::npos && dot > 0 && name.size() - dot <= longestExtension;
    return isExtension ? dot : name.size();
}

}  // namespace

std::string deletionDateText(std::time_t moment)
{
    // The system reads its zone anew for each call; so that this is true for any thread, one at a
    // time does.
    static std::mutex zone;
    const std::lock_guard lock(zone);
    std::tm local{};
    // The user may have changed the time zone since the program began.
    ::tzset();
    if (::localtime_r(&moment, &local) == nullptr) {
        return {};
    }
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return {text.data(), length};
}

std::string percentEncodedPath(std::string_view path)
{
    const bool isAbsolute = path.starts_with('/');
    const std::string text = FileURL(path).fileURLText();
    return text.substr(FileURL::scheme.size() + (isAbsolute ? 0 : 1));
}

std::optional<std::string> percentDecodedPath(std::string_view text)
{
    if (text.empty()) {
        return std::nullopt;
    }
    const bool isAbsolute = text.starts_with('/');
    const auto url = FileURL::fromFileURLText(std::string(FileURL::scheme) + (isAbsolute ? "" : "/")
                                              + std::string(text));
    if (!url) {
        return std::nullopt;
    }
    std::string path = isAbsolute ? url->path() : url->path().substr(1);
    return path.empty() ? std::nullopt : std::optional(std::move(path));
}

std::string trashInfoText(const TrashInfo& info)
{
    return std::string(header) + "\nPath=" + percentEncodedPath(info.path)
           + "\nDeletionDate=" + info.deletionDate + "\n";
}

std::optional<TrashInfo> parseTrashInfo(std::string_view text)
{
    if (takeLine(text) != header) {
        return std::nullopt;
    }
    std::optional<std::string> path;
    std::optional<std::string> date;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with('[')) {
            break;
        }
        if (const auto value = valueOfKey(line, "Path"); value && !path) {
            path = percentDecodedPath(*value);
            if (!path) {
                return std::nullopt;
            }
        }
        if (const auto value = valueOfKey(line, "DeletionDate"); value && !date) {
            date = std::string(*value);
        }
    }
    if (!path) {
        return std::nullopt;
    }
    return TrashInfo{std::move(*path), date.value_or(std::string())};
}

std::string trashName(std::string_view name, std::string_view mark, std::size_t longest)
{
    const std::size_t dot = extensionStart(name);
    std::string tail(name.substr(dot));
    if (!mark.empty()) {
        tail.insert(0, mark).insert(0, ".");
    }
    const std::string_view stem = name.substr(0, dot);
    const std::size_t room = longest - std::min(tail.size(), longest);
    return std::string(stem.substr(0, characterEnd(stem, room))) + tail;
}

}  // namespace gruk
