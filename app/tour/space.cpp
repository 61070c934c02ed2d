#include "app/tour/space.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace gruk::tour {

void makeFileOfSize(const std::filesystem::path& at, std::uint64_t length, std::uint64_t allocated)
{
    const int descriptor =
        ::open(at.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    bool succeeded = descriptor >= 0;
    if (succeeded) {
        const auto reserved = static_cast<off_t>(std::min(length, allocated));
        if (reserved > 0) {
            // Not the library's emulation, which writes into every block.
            [[maybe_unused]] const int result = ::fallocate(descriptor, 0, 0, reserved);
        }
        succeeded = ::ftruncate(descriptor, static_cast<off_t>(length)) == 0;
        succeeded = ::close(descriptor) == 0 && succeeded;
    }
    if (!succeeded) {
        throw std::filesystem::filesystem_error("cannot make a file", at,
                                                std::error_code(errno, std::generic_category()));
    }
}

}  // namespace gruk::tour
