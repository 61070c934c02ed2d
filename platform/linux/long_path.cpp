#include "platform/linux/long_path.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>

#include "platform/linux/errno_error.h"

namespace gruk {

namespace {

Descriptor openDirectory(int start, const std::string& piece)
{
    int number = -1;
    do {
        number = ::openat(start, piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

}  // namespace

OpenedParent openParent(std::string_view path, std::string_view operation)
{
    OpenedParent result;
    const std::size_t nameStart = path.rfind('/') + 1;
    result.name = path.substr(nameStart);
    result.directory = openDirectory(AT_FDCWD, "/");
    std::string_view rest = path.substr(0, nameStart);
    while (result.directory.isOpen()) {
        rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
        if (rest.empty()) {
            return result;
        }
        const std::string_view piece = nextPathPiece(rest);
        result.directory = openDirectory(result.directory.number(), std::string(piece));
        rest.remove_prefix(piece.size());
    }
    throwErrno(errno, std::string(operation), std::string(path));
}

std::string_view nextPathPiece(std::string_view path) noexcept
{
    constexpr std::size_t longest = PATH_MAX - 1;  // without the NUL at its end
    if (path.size() <= longest) {
        return path;
    }
    const std::size_t end = path.substr(0, longest + 1).rfind('/');
    return path.substr(0, end == std::string_view::npos ? path.find('/') : end);
}

}  // namespace gruk
