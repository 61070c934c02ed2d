#include "platform/files/move_calls.h"

#include <array>
#include <cerrno>
#include <climits>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/foundation/errors.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/directory_stream.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/or_error.h"
#include "platform/linux/statx_facts.h"

namespace gruk {

namespace {

int openDirectoryItself(int directory, const char* name, LastLink link)
{
    const int links = link == LastLink::refused ? O_NOFOLLOW : 0;
    return orError(::openat(directory, name, O_PATH | O_DIRECTORY | O_CLOEXEC | links));
}

int readFactsOf(int directory, const char* name, LastLink link, PlaceFacts& facts)
{
    constexpr unsigned mask = statxMask | STATX_UID | STATX_MNT_ID;
    constexpr unsigned permissionBits = 07777;
    const int links = link == LastLink::followed ? statxFlags & ~AT_SYMLINK_NOFOLLOW : statxFlags;
    const int itself = *name == '\0' ? AT_EMPTY_PATH : 0;
    struct statx answer {};
    if (::statx(directory, name, links | itself, mask, &answer) != 0) {
        return -errno;
    }
    facts.item = factsFrom(answer);
    facts.permissions = answer.stx_mode & permissionBits;
    facts.owner = answer.stx_uid;
    facts.mount = (answer.stx_mask & STATX_MNT_ID) != 0 ? answer.stx_mnt_id : 0;
    return 0;
}

int tellPath(int directory, std::string& path)
{
    std::array<char, PATH_MAX> text{};
    const std::string entry = "/proc/self/fd/" + std::to_string(directory);
    const ssize_t length = ::readlink(entry.c_str(), text.data(), text.size());
    if (length < 0) {
        return -errno;
    }
    path.assign(text.data(), static_cast<std::size_t>(length));
    return path.starts_with('/') ? 0 : -ENOENT;
}

int tellMounts(MoveCalls::MountVisitor visit)
{
    try {
        for (const Mount& mount : readMountTable()) {
            visit(mount.id, mount.point);
        }
        return 0;
    } catch (const FileError& error) {
        // That there is no table says nothing of the item that it was asked for.
        return error.code() == std::errc::no_such_file_or_directory ? -EIO : -error.code().value();
    }
}

std::optional<ItemType> typeOf(unsigned char listed)
{
    if (listed == DT_UNKNOWN) {
        return std::nullopt;
    }
    constexpr unsigned typeShift = 12;  // as DTTOIF has it, of a signed number
    return itemTypeFrom(unsigned{listed} << typeShift);
}

int listNames(int directory, MoveCalls::NameVisitor visit)
{
    const DirectoryStream listing = streamOf(directory, ".");
    if (!listing) {
        return -errno;
    }
    errno = 0;
    while (const dirent* item = ::readdir(listing.get())) {
        const std::string_view name = item->d_name;
        if (name != "." && name != "..") {
            visit({name, typeOf(item->d_type)});
        }
        errno = 0;
    }
    return -errno;
}

int synchronizeOpenDirectory(int directory)
{
    const Descriptor readable(::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return readable.isOpen() ? orError(::fsync(readable.number())) : -errno;
}

int createNewFile(int directory, const char* name, unsigned permissions)
{
    return orError(::openat(directory, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                            static_cast<mode_t>(permissions)));
}

void setLookingCalls(MoveCalls& calls)
{
    calls.openDirectory = openDirectoryItself;
    calls.facts = readFactsOf;
    calls.pathOf = tellPath;
    calls.mounts = tellMounts;
    calls.list = listNames;
}

void setFileCalls(MoveCalls& calls)
{
    calls.createExclusive = createNewFile;
    calls.openFile = [](int directory, const char* name) {
        return orError(
            ::openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    };
    calls.read = [](int descriptor, char* bytes, std::size_t count) {
        return static_cast<long>(orError(::read(descriptor, bytes, count)));
    };
    calls.write = [](int descriptor, const char* bytes, std::size_t count) {
        return static_cast<long>(orError(::write(descriptor, bytes, count)));
    };
    calls.startWriting = [](int descriptor) {
        return orError(::sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WRITE));
    };
    calls.synchronize = [](int descriptor) { return orError(::fsync(descriptor)); };
    calls.close = [](int descriptor) { return orError(::close(descriptor)); };
    calls.files = FileCalls::live();
}

void setNameCalls(MoveCalls& calls)
{
    calls.makeDirectory = [](int directory, const char* name, unsigned permissions) {
        return orError(::mkdirat(directory, name, static_cast<mode_t>(permissions)));
    };
    calls.synchronizeDirectory = synchronizeOpenDirectory;
    calls.moveWithoutReplacing = [](int fromDirectory, const char* from, int toDirectory,
                                    const char* to) {
        return orError(::renameat2(fromDirectory, from, toDirectory, to, RENAME_NOREPLACE));
    };
    calls.moveOver = [](int fromDirectory, const char* from, int toDirectory, const char* to) {
        return orError(::renameat(fromDirectory, from, toDirectory, to));
    };
    calls.remove = [](int directory, const char* name) {
        return orError(::unlinkat(directory, name, 0));
    };
    calls.removeDirectory = [](int directory, const char* name) {
        return orError(::unlinkat(directory, name, AT_REMOVEDIR));
    };
}

}  // namespace

MoveCalls::MoveCalls()
{
    setLookingCalls(*this);
    setFileCalls(*this);
    setNameCalls(*this);
}

const MoveCalls& MoveCalls::live()
{
    static const MoveCalls calls;
    return calls;
}

}  // namespace gruk
