#include <cerrno>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/atomic_file.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/errno_error.h"

namespace gruk {

namespace {

/// At least so much is asked for at once, also of files that tell no length.
constexpr std::size_t smallestRead = 4'096;

Descriptor openForReading(const std::string& path)
{
    int number = -1;
    do {
        // A pipe by that name must not be waited for.
        number = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    if (number < 0) {
        throwErrno(errno, "open", path);
    }
    return Descriptor(number);
}

}  // namespace

std::string readFile(const FileURL& url, std::size_t longest)
{
    const std::string& path = url.path();
    const Descriptor file = openForReading(path);
    struct stat facts {};
    if (::fstat(file.number(), &facts) != 0) {
        throwErrno(errno, "read", path);
    }
    if (!S_ISREG(facts.st_mode)) {
        throwErrno(S_ISDIR(facts.st_mode) ? EISDIR : EINVAL, "read", path);
    }
    if (static_cast<std::uint64_t>(facts.st_size) > longest) {
        throwErrno(EFBIG, "read", path);
    }
    std::string content(static_cast<std::size_t>(facts.st_size) + smallestRead, '\0');
    std::size_t length = 0;
    for (;;) {
        const ssize_t count =
            ::read(file.number(), content.data() + length, content.size() - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throwErrno(errno, "read", path);
        }
        if (count == 0) {
            content.resize(length);
            return content;
        }
        length += static_cast<std::size_t>(count);
        if (content.size() - length < smallestRead) {
            content.resize(content.size() * 2);
        }
    }
}

}  // namespace gruk
