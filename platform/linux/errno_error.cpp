#include "platform/linux/errno_error.h"

#include <system_error>
#include <utility>

namespace gruk {

FileError errnoError(int number, std::string operation, std::string path)
{
    return {std::error_code(number, std::generic_category()), std::move(operation),
            std::move(path)};
}

void throwErrno(int number, std::string operation, std::string path)
{
    throw errnoError(number, std::move(operation), std::move(path));
}

}  // namespace gruk
