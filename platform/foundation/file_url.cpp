#include "platform/foundation/file_url.h"

#include <algorithm>
#include <vector>

#include "platform/foundation/ascii.h"

namespace gruk {

namespace {

constexpr std::string_view localHost = "localhost";

std::string_view withoutNul(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

bool isUnreserved(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-'
           || c == '.' || c == '_' || c == '~';
}

/// Drops `prefix` (lower case) from the front of `text`, in either case; false if it is not there.
bool dropPrefix(std::string_view& text, std::string_view prefix)
{
    if (text.size() < prefix.size()
        || !std::equal(prefix.begin(), prefix.end(), text.begin(),
                       [](char a, char b) { return a == lowerASCII(b); })) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

/// The bytes of percent-encoded text; none for a broken "%", an encoded NUL, or a raw character
/// with which the path would end.
std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '?' || c == '#' || c == '\0') {
            return std::nullopt;
        }
        if (c != '%') {
            bytes.push_back(c);
            continue;
        }
        if (text.size() - i < 3) {
            return std::nullopt;
        }
        const int high = hexValue(text[i + 1]);
        const int low = hexValue(text[i + 2]);
        if (high < 0 || low < 0 || (high == 0 && low == 0)) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<char>(high * 16 + low));
        i += 2;
    }
    return bytes;
}

}  // namespace

FileURL::FileURL(std::string_view path, Names names)
    : path_(withoutNul(path)), namesDirectory_(names == Names::directory)
{
    if (!path_.starts_with('/')) {
        path_.insert(path_.begin(), '/');
    }
    if (path_.back() == '/') {
        namesDirectory_ = true;
        path_.resize(std::max<std::size_t>(1, path_.find_last_not_of('/') + 1));
    }
}

std::string_view FileURL::lastPathComponent() const noexcept
{
    if (path_.size() == 1) {
        return path_;
    }
    return std::string_view(path_).substr(path_.rfind('/') + 1);
}

FileURL FileURL::deletingLastPathComponent() const
{
    return directory(std::string_view(path_).substr(0, path_.rfind('/')));
}

FileURL FileURL::appending(std::string_view relative, Names names) const
{
    relative = withoutNul(relative);
    relative.remove_prefix(std::min(relative.find_first_not_of('/'), relative.size()));
    if (relative.empty()) {
        return *this;
    }
    std::string joined;
    joined.reserve(path_.size() + 1 + relative.size());
    joined += path_;
    if (path_.size() > 1) {
        joined += '/';
    }
    joined += relative;
    return FileURL(joined, names);
}

FileURL FileURL::standardized() const
{
    std::vector<std::string_view> kept;
    std::string_view rest = path_;
    while (!rest.empty()) {
        const std::size_t length = std::min(rest.find('/'), rest.size());
        const std::string_view component = rest.substr(0, length);
        rest.remove_prefix(std::min(length + 1, rest.size()));
        if (component == "..") {
            if (!kept.empty()) {
                kept.pop_back();
            }
        } else if (!component.empty() && component != ".") {
            kept.push_back(component);
        }
    }
    std::string path;
    path.reserve(path_.size());
    for (const std::string_view component : kept) {
        path += '/';
        path += component;
    }
    return FileURL(path, namesDirectory_ ? Names::directory : Names::item);
}

std::string FileURL::fileURLText() const
{
    std::string text(scheme);
    text.reserve(scheme.size() + path_.size() + 1);
    for (const char c : path_) {
        if (c == '/' || isUnreserved(c)) {
            text += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text += '%';
            text += upperHexDigits[byte >> 4U];
            text += upperHexDigits[byte & 0x0FU];
        }
    }
    if (namesDirectory_ && path_.size() > 1) {
        text += '/';
    }
    return text;
}

std::optional<FileURL> FileURL::fromFileURLText(std::string_view text)
{
    if (!dropPrefix(text, scheme)) {
        return std::nullopt;
    }
    dropPrefix(text, localHost);
    if (!text.starts_with('/')) {
        return std::nullopt;
    }
    const std::optional<std::string> path = percentDecoded(text);
    if (!path) {
        return std::nullopt;
    }
    return FileURL(*path);
}

bool pathIsAtOrBelow(std::string_view path, std::string_view ancestor) noexcept
{
    if (!path.starts_with(ancestor)) {
        return false;
    }
    return path.size() == ancestor.size() || ancestor.ends_with('/')
           || path[ancestor.size()] == '/';
}

}  // namespace gruk
