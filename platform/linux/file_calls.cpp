#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/atomic_file.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/or_error.h"

namespace gruk {

namespace {

int createOwnFile(const char* path)
{
    constexpr mode_t ownerOnly = 0600;
    return orError(::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownerOnly));
}

int synchronizeNames(const char* path)
{
    const Descriptor directory(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen()) {
        return -errno;
    }
    return orError(::fsync(directory.number()));
}

int makeOwnDirectory(const char* path)
{
    constexpr mode_t ownerOnly = 0700;
    const int result = ::mkdir(path, ownerOnly);
    return result != 0 && errno == EEXIST ? 0 : orError(result);
}

}  // namespace

FileCalls FileCalls::live()
{
    FileCalls calls;
    calls.createExclusive = createOwnFile;
    calls.write = [](int descriptor, const char* bytes, std::size_t count) {
        return static_cast<long>(orError(::write(descriptor, bytes, count)));
    };
    calls.synchronize = [](int descriptor) { return orError(::fsync(descriptor)); };
    calls.close = [](int descriptor) { return orError(::close(descriptor)); };
    calls.rename = [](const char* from, const char* to) { return orError(::rename(from, to)); };
    calls.synchronizeDirectory = synchronizeNames;
    calls.remove = [](const char* path) { return orError(::unlink(path)); };
    calls.makeDirectory = makeOwnDirectory;
    return calls;
}

}  // namespace gruk
