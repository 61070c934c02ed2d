#include "platform/files/file_lock.h"

#include <cerrno>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/errno_error.h"
#include "platform/linux/persistently.h"
#include "platform/linux/try_lock.h"

namespace gruk {

namespace {

using Clock = std::chrono::steady_clock;

/// Short beside the time for which a lock is held, so that who waits gets its turn also between
/// two owners who take it again and again.
constexpr std::chrono::microseconds betweenAttempts{200};

bool meansNoLocks(int error)
{
    return error == -ENOLCK || error == -EOPNOTSUPP || error == -ENOSYS || error == -EINVAL;
}

int openLockFile(const std::string& path)
{
    constexpr mode_t ownerOnly = 0600;
    constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const int result = persistently([&] {
        const int number = ::open(path.c_str(), flags, ownerOnly);
        return number >= 0 ? number : -errno;
    });
    if (result < 0) {
        throwErrno(-result, "lock", path);
    }
    return result;
}

}  // namespace

FileLock::FileLock(const FileURL& url, std::chrono::milliseconds patience)
    : FileLock(openLockFile(url.path()))
{
    const Clock::time_point end = Clock::now() + patience;
    for (;;) {
        const int result = tryLock(descriptor_);
        if (result == 0 || meansNoLocks(result)) {
            return;
        }
        if (result != -EWOULDBLOCK || Clock::now() >= end) {
            throwErrno(-result, "lock", url.path());
        }
        std::this_thread::sleep_for(betweenAttempts);
    }
}

FileLock::~FileLock()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

FileLock::FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept
{
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

}  // namespace gruk
