#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/foundation/file_url.h"

namespace gruk {

/// Reads one file from a place on, piece by piece. What is open stays the same file also when
/// another is put in its place meanwhile. One thread at a time.
class FileReader {
public:
    /// Opens the file; none when there is none. Throws `FileError` for any other refusal, and for
    /// what is no regular file.
    static std::optional<FileReader> open(const FileURL& url);

    FileReader(FileReader&& other) noexcept;
    FileReader& operator=(FileReader&& other) noexcept;
    ~FileReader();

    /// Fills `buffer` with up to `size` bytes and returns how many; 0 at the end only. Throws
    /// `FileError`.
    std::size_t read(char* buffer, std::size_t size);

    /// Goes on at that byte. Throws `FileError`.
    void seek(std::uint64_t offset);

private:
    FileReader(int descriptor, std::string path);

    int descriptor_ = -1;
    std::string path_;
};

}  // namespace gruk
