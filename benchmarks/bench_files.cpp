#include "benchmarks/bench_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace gruk::benchmarks {

namespace {

[[noreturn]] void fail(const std::string& path)
{
    throw std::runtime_error(path + ": " + std::strerror(errno));
}

class InputFile {
public:
    explicit InputFile(const std::string& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)), path_(path)
    {
        if (descriptor_ < 0) {
            fail(path);
        }
    }
    ~InputFile() { ::close(descriptor_); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    [[nodiscard]] std::uint64_t size() const
    {
        struct stat facts {};
        if (::fstat(descriptor_, &facts) != 0) {
            fail(path_);
        }
        return static_cast<std::uint64_t>(facts.st_size);
    }

    std::size_t read(char* buffer, std::size_t size)
    {
        const ssize_t count = ::read(descriptor_, buffer, size);
        if (count < 0) {
            fail(path_);
        }
        return static_cast<std::size_t>(count);
    }

private:
    int descriptor_;
    std::string path_;
};

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : descriptor_(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)), path_(path)
{
    if (descriptor_ < 0) {
        fail(path);
    }
}

OutputFile::~OutputFile()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

void OutputFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0) {
            fail(path_);
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void OutputFile::close()
{
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (::close(descriptor) != 0) {
        fail(path_);
    }
}

Buffer readWhole(const std::string& path)
{
    InputFile file(path);
    Buffer buffer;
    buffer.size = file.size();
    buffer.bytes = std::make_unique_for_overwrite<char[]>(buffer.size);
    for (std::size_t at = 0; at < buffer.size;) {
        const std::size_t count = file.read(buffer.bytes.get() + at, buffer.size - at);
        if (count == 0) {
            throw std::runtime_error(path + " became shorter");
        }
        at += count;
    }
    return buffer;
}

void copyPart(const std::string& from, const std::string& to, std::uint64_t numerator,
              std::uint64_t denominator)
{
    InputFile in(from);
    OutputFile out(to);
    std::vector<char> buffer(std::size_t{1} << 20);
    for (std::uint64_t left = in.size() / denominator * numerator; left > 0;) {
        const std::size_t count =
            in.read(buffer.data(), std::min<std::uint64_t>(left, buffer.size()));
        if (count == 0) {
            throw std::runtime_error(from + " became shorter");
        }
        out.write({buffer.data(), count});
        left -= count;
    }
    out.close();
}

double peakMemory()
{
    // Of this program alone: what the usage of a process tells begins with that of its parent.
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes) {
            return kilobytes * 1'024;
        }
    }
    throw std::runtime_error("the peak of the memory is not told");
}

TemporaryFolder::TemporaryFolder()
    : path_((std::filesystem::temp_directory_path() / "gruk-bench-XXXXXX").string())
{
    if (::mkdtemp(path_.data()) == nullptr) {
        fail(path_);
    }
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace gruk::benchmarks
