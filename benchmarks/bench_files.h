#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace gruk::benchmarks {

/// A new file, written with plain calls and not made durable. All its functions throw.
class OutputFile {
public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view bytes);
    void close();

private:
    int descriptor_;
    std::string path_;
};

struct Buffer {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;

    [[nodiscard]] std::string_view text() const { return {bytes.get(), size}; }
};

/// The whole file, read into one fresh buffer of its size that nothing has touched before.
Buffer readWhole(const std::string& path);

/// Copies the first `numerator` / `denominator` of a file, a megabyte at a time.
void copyPart(const std::string& from, const std::string& to, std::uint64_t numerator,
              std::uint64_t denominator);

/// The most memory that this process has had resident, in bytes.
[[nodiscard]] double peakMemory();

/// A folder of its own below the system's for temporary files, removed with what is in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace gruk::benchmarks
