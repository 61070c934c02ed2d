#include "platform/settings/bookmarks.h"

#include <cerrno>
#include <optional>
#include <vector>

#include <dirent.h>
#include <fcntl.h>

#include "platform/linux/bookmark_text.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/directory_identity.h"
#include "platform/linux/directory_stream.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/quiet_open.h"

namespace gruk {

namespace {

/// Opens a directory for listing it; none with `errno` set when that is refused.
Descriptor openForListing(const std::string& path)
{
    return Descriptor(openQuietly(AT_FDCWD, path.c_str()));
}

Descriptor openedForListing(const FileURL& url)
{
    Descriptor directory = openForListing(url.path());
    if (!directory.isOpen()) {
        throwErrno(errno, "open", url.path());
    }
    return directory;
}

std::string describedAt(const Descriptor& directory, const FileURL& url)
{
    return bookmarkText({FileURL::directory(url.path()), identityOf(directory, url.path())});
}

Bookmark parsedBookmark(std::string_view bookmark)
{
    std::optional<Bookmark> parsed = parseBookmark(bookmark);
    if (!parsed) {
        throwErrno(EINVAL, "resolve", "bookmark");
    }
    return *std::move(parsed);
}

/// The directories in `parent` that the listing shows under that inode number.
std::vector<FileURL> foldersByInode(const FileURL& parent, std::uint64_t inode)
{
    std::vector<FileURL> found;
    const DirectoryStream listing = streamOf(AT_FDCWD, parent.path().c_str());
    if (!listing) {
        return found;
    }
    while (const dirent* item = ::readdir(listing.get())) {
        const std::string_view name = item->d_name;
        if (item->d_ino == inode && (item->d_type == DT_DIR || item->d_type == DT_UNKNOWN)
            && name != "." && name != "..") {
            found.push_back(parent.appending(name, FileURL::Names::directory));
        }
    }
    return found;
}

/// What is mounted directly in `parent`, on disks or on the network. A listing shows the folder
/// that a mount covers, not the mount.
std::vector<FileURL> mountsIn(const FileURL& parent, bool onNetwork)
{
    std::vector<FileURL> found;
    for (const Mount& mount : mountTable()) {
        const FileURL point = FileURL::directory(mount.point);
        if (point.deletingLastPathComponent() == parent && isNetworkType(mount.type) == onNetwork) {
            found.push_back(point);
        }
    }
    return found;
}

bool isPlaceOf(const FileURL& url, const DirectoryIdentity& identity)
{
    const Descriptor directory = openPlace(url.path());
    return directory.isOpen() && isSameDirectory(directory, identity);
}

/// The directory under another name beside its old place.
std::optional<FileURL> findBeside(const Bookmark& bookmark)
{
    const FileURL parent = bookmark.place.deletingLastPathComponent();
    std::vector<FileURL> candidates;
    if (bookmark.identity.isMountRoot) {
        candidates = mountsIn(parent, bookmark.identity.volumeSource.has_value());
    } else if (bookmark.identity.inode) {
        candidates = foldersByInode(parent, *bookmark.identity.inode);
    }
    for (const FileURL& candidate : candidates) {
        if (isPlaceOf(candidate, bookmark.identity)) {
            return candidate;
        }
    }
    return std::nullopt;
}

}  // namespace

std::string makeBookmark(const FileURL& url)
{
    return describedAt(openedForListing(url), url);
}

std::string renewBookmark(std::string_view bookmark, const FileURL& url)
{
    const Bookmark former = parsedBookmark(bookmark);
    const Descriptor directory = openedForListing(url);
    // Elsewhere, a directory without a number of its own could be any of its volume.
    const bool canBeTold =
        former.identity.inode || former.identity.isMountRoot || former.place.path() == url.path();
    if (!canBeTold || !isSameDirectory(directory, former.identity)) {
        throwErrno(ENOENT, "renew", url.path());
    }
    return describedAt(directory, url);
}

FileURL resolveBookmark(std::string_view bookmark)
{
    const Bookmark parsed = parsedBookmark(bookmark);
    FileURL place = FileURL::directory(parsed.place.path());
    const Descriptor directory = openPlace(place.path());
    const int error = directory.isOpen() ? ENOENT : errno;
    if (directory.isOpen() && isSameDirectory(directory, parsed.identity)) {
        return place;
    }
    if (const std::optional<FileURL> beside = findBeside(parsed)) {
        return *beside;
    }
    const bool isElsewhere = error == ENOTDIR || error == ELOOP;
    throwErrno(isElsewhere ? ENOENT : error, "resolve", place.path());
}

bool startAccessing(const FileURL& url)
{
    return openForListing(url.path()).isOpen();
}

void stopAccessing(const FileURL& /*url*/) noexcept {}

}  // namespace gruk
