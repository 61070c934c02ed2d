#include "platform/files/file_reader.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/errno_error.h"

namespace gruk {

std::optional<FileReader> FileReader::open(const FileURL& url)
{
    // A FIFO in the file's place must not hold the program up until somebody writes to it.
    const int descriptor = ::open(url.path().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        throwErrno(errno, "open", url.path());
    }
    FileReader reader(descriptor, url.path());
    struct stat facts {};
    if (::fstat(descriptor, &facts) != 0) {
        throwErrno(errno, "open", url.path());
    }
    if (!S_ISREG(facts.st_mode)) {
        throwErrno(S_ISDIR(facts.st_mode) ? EISDIR : EINVAL, "open", url.path());
    }
    return reader;
}

FileReader::FileReader(int descriptor, std::string path)
    : descriptor_(descriptor), path_(std::move(path))
{
}

FileReader::FileReader(FileReader&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)),
      offset_(other.offset_)
{
}

FileReader& FileReader::operator=(FileReader&& other) noexcept
{
    std::swap(descriptor_, other.descriptor_);
    std::swap(path_, other.path_);
    std::swap(offset_, other.offset_);
    return *this;
}

FileReader::~FileReader()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::size_t FileReader::read(char* buffer, std::size_t size)
{
    for (;;) {
        const auto count = ::pread(descriptor_, buffer, size, static_cast<off_t>(offset_));
        if (count >= 0) {
            offset_ += static_cast<std::uint64_t>(count);
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            throwErrno(errno, "read", path_);
        }
    }
}

FileReader FileReader::another() const
{
    const int descriptor = ::fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0) {
        throwErrno(errno, "open", path_);
    }
    return {descriptor, path_};
}

FileStamp FileReader::stamp() const
{
    struct stat facts {};
    if (::fstat(descriptor_, &facts) != 0) {
        throwErrno(errno, "read", path_);
    }
    const auto nanoseconds = [](const timespec& time) {
        return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    };
    return {facts.st_dev, facts.st_ino, facts.st_size, nanoseconds(facts.st_mtim),
            nanoseconds(facts.st_ctim)};
}

}  // namespace gruk
