#include "platform/files/damaged_file.h"

#include <string>

#include "platform/files/moves.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// More files than that have not been damaged; something is wrong with the folder.
constexpr int damagedFilesLimit = 1'000;

}  // namespace

FileURL setDamagedFileAside(const FileURL& file)
{
    for (int number = 1;; ++number) {
        const std::string mark = number == 1 ? "" : "." + std::to_string(number);
        FileURL aside(file.path() + ".damaged" + mark);
        try {
            moveItem(file, aside);
            return aside;
        } catch (const FileError& error) {
            if (error.code() != std::errc::file_exists || number == damagedFilesLimit) {
                throw;
            }
        }
    }
}

}  // namespace gruk
