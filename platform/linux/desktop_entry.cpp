#include "platform/linux/desktop_entry.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/ascii.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

constexpr std::string_view ownGroup = "[Desktop Entry]";

bool isKeyCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

/// The key of an entry with its translation mark; empty for any other line, also a comment.
std::string_view keyOf(std::string_view line)
{
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        return {};
    }
    const std::string_view key = trimmedLine(line.substr(0, equals));
    const std::string_view name = key.substr(0, key.find('['));
    const bool isPlain = std::all_of(name.begin(), name.end(), isKeyCharacter);
    const bool isWhole = name.size() == key.size() || key.ends_with(']');
    return isPlain && isWhole && !name.empty() ? key : std::string_view();
}

std::string_view valueOf(std::string_view line)
{
    return trimmedLine(line.substr(line.find('=') + 1));
}

bool isGroup(std::string_view line)
{
    const std::string_view text = trimmedLine(line);
    return text.size() > 2 && text.starts_with('[')
           && text.find_first_of("[]", 1) == text.size() - 1 && text.ends_with(']');
}

bool isPassedOver(std::string_view line)
{
    const std::string_view text = trimmedLine(line);
    return text.empty() || text.starts_with('#');
}

/// The letters that stand behind a backslash, and what each stands for.
constexpr std::pair<char, char> escapes[] = {
    {'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};

std::string unescapedString(std::string_view raw)
{
    std::string text;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const auto* const escape =
            raw[i] != '\\' || i + 1 == raw.size()
                ? std::end(escapes)
                : std::find_if(std::begin(escapes), std::end(escapes),
                               [&](const auto& pair) { return pair.first == raw[i + 1]; });
        if (escape == std::end(escapes)) {
            text += raw[i];
        } else {
            text += escape->second;
            ++i;
        }
    }
    return text;
}

std::string escaped(std::string_view text)
{
    std::string raw;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto* const escape =
            std::find_if(std::begin(escapes), std::end(escapes),
                         [&](const auto& pair) { return pair.second == text[i]; });
        // A blank needs its escape only where it would be trimmed away.
        const bool isInner = text[i] == ' ' && i > 0 && i + 1 < text.size();
        if (escape == std::end(escapes) || isInner) {
            raw += text[i];
        } else {
            raw += '\\';
            raw += escape->first;
        }
    }
    return raw;
}

}  // namespace

DesktopEntry::DesktopEntry() : lines_{std::string(ownGroup)} {}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text)
{
    if (!isValidUTF8(text) || text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    DesktopEntry entry;
    entry.lines_.clear();
    bool isInGroup = false;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!isInGroup && !isPassedOver(line)) {
            if (trimmedLine(line) != ownGroup) {
                return std::nullopt;
            }
            isInGroup = true;
            entry.groupStart_ = entry.lines_.size();
        } else if (!isPassedOver(line) && !isGroup(line) && keyOf(line).empty()) {
            return std::nullopt;
        }
        entry.lines_.emplace_back(line);
    }
    return isInGroup ? std::optional(std::move(entry)) : std::nullopt;
}

std::optional<std::string> DesktopEntry::text(std::string_view key) const
{
    std::optional<std::string> found;
    for (std::size_t i = groupStart_ + 1; i < groupEnd(); ++i) {
        if (keyOf(lines_[i]) == key) {
            found = unescapedString(valueOf(lines_[i]));
        }
    }
    return found;
}

std::optional<bool> DesktopEntry::boolean(std::string_view key) const
{
    const std::optional<std::string> value = text(key);
    if (value != "true" && value != "false") {
        return std::nullopt;
    }
    return value == "true";
}

void DesktopEntry::setText(std::string_view key, std::string_view value)
{
    set(key, escaped(value));
}

void DesktopEntry::setBoolean(std::string_view key, bool value)
{
    set(key, value ? "true" : "false");
}

void DesktopEntry::remove(std::string_view key)
{
    for (std::size_t i = groupEnd() - 1; i > groupStart_; --i) {
        if (keyOf(lines_[i]) == key) {
            lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

std::string DesktopEntry::fileText() const
{
    std::string text;
    for (const std::string& line : lines_) {
        text.append(line).append("\n");
    }
    return text;
}

std::size_t DesktopEntry::groupEnd() const
{
    const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(groupStart_) + 1;
    const auto next = std::find_if(first, lines_.end(), isGroup);
    return static_cast<std::size_t>(next - lines_.begin());
}

void DesktopEntry::set(std::string_view key, std::string_view raw)
{
    std::size_t place = 0;
    for (std::size_t i = groupStart_ + 1; i < groupEnd() && place == 0; ++i) {
        place = keyOf(lines_[i]) == key ? i : 0;
    }
    if (place == 0) {
        place = groupEnd();
        while (isPassedOver(lines_[place - 1]) && place - 1 > groupStart_) {
            --place;
        }
    } else {
        remove(key);
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place),
                  std::string(key).append("=").append(raw));
}

}  // namespace gruk
