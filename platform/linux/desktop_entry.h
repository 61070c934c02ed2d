#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The files by which a desktop knows programs: the Desktop Entry Specification 1.5.

namespace gruk {

/// One desktop entry, held line by line, so that everything that is not changed is written back
/// byte for byte: comments, translations, keys and groups that nobody here knows. A plain value.
class DesktopEntry {
public:
    /// One with nothing in it.
    DesktopEntry();

    /// Reads a whole file; none when a desktop would refuse it: text that is not UTF-8, a line that
    /// is no comment, group or entry, or a first group that is not the entry's own.
    static std::optional<DesktopEntry> parse(std::string_view text);

    /// The value of `key` in the entry's own group with its escapes resolved; none when it is not
    /// there. Of a key that stands twice the last counts.
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const;
    /// True or false for just that; none for anything else.
    [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;

    /// Sets `key` (letters, digits and "-") in the entry's own group, in its place if it is there,
    /// else behind the group's last entry. `value` is UTF-8 without NUL.
    void setText(std::string_view key, std::string_view value);
    void setBoolean(std::string_view key, bool value);
    void remove(std::string_view key);

    /// The whole file.
    [[nodiscard]] std::string fileText() const;

private:
    /// Where the entry's own group ends.
    [[nodiscard]] std::size_t groupEnd() const;
    void set(std::string_view key, std::string_view raw);

    std::vector<std::string> lines_;
    /// The line that begins the entry's own group.
    std::size_t groupStart_ = 0;
};

}  // namespace gruk
