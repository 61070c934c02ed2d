#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace gruk {

/// The place of one item: an absolute path of bytes, and whether it names a directory.
///
/// A path is kept byte for byte as the system gave it, since a name may hold any byte but "/" and
/// NUL. Nothing here touches the disk. Two URLs are equal when path and directory mark are equal;
/// code that asks "the same place?" compares the paths of standardised URLs.
///
/// A plain value; any thread.
class FileURL {
public:
    enum class Names { item, directory };

    /// The root directory, "/".
    FileURL() = default;

    /// `path` as it stands; a trailing "/" is dropped and makes the URL name a directory. A
    /// relative path is taken from "/". Bytes from a NUL on are dropped.
    explicit FileURL(std::string_view path, Names names = Names::item);

    static FileURL directory(std::string_view path) { return FileURL(path, Names::directory); }

    /// The bytes of the path, with no trailing "/" but for the root itself.
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] bool namesDirectory() const noexcept { return namesDirectory_; }

    /// The bytes after the last "/"; "/" for the root.
    [[nodiscard]] std::string_view lastPathComponent() const noexcept;

    /// The URL of the directory that holds this item; the root's is the root.
    [[nodiscard]] FileURL deletingLastPathComponent() const;

    /// This place with `relative` below it ("a", or "a/b"); an empty text changes nothing.
    [[nodiscard]] FileURL appending(std::string_view relative, Names names = Names::item) const;

    /// The same place with "." and ".." and doubled "/" resolved in the text alone; links are not
    /// looked at, and ".." at the root stays at the root.
    [[nodiscard]] FileURL standardized() const;

    /// What every text of a URL begins with.
    static constexpr std::string_view scheme = "file://";

    /// "file://" and the path, every byte but the unreserved ones of RFC 3986 and "/" written as
    /// "%XX", so that any name comes back to the same bytes. Ends in "/" for a directory.
    [[nodiscard]] std::string fileURLText() const;

    /// Reads what `fileURLText` writes, and "file://localhost/…". None for any other scheme or
    /// host, a relative path, a broken "%", or an encoded NUL.
    static std::optional<FileURL> fromFileURLText(std::string_view text);

    friend bool operator==(const FileURL&, const FileURL&) = default;
    friend std::strong_ordering operator<=>(const FileURL&, const FileURL&) = default;

private:
    std::string path_ = "/";
    bool namesDirectory_ = true;
};

/// Whether the path text `path` is `ancestor` itself or lies below it: compared with a "/" behind
/// the ancestor, so that "/a/bc" never lies in "/a". Both without a trailing "/".
[[nodiscard]] bool pathIsAtOrBelow(std::string_view path, std::string_view ancestor) noexcept;

}  // namespace gruk
