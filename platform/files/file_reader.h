#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/foundation/file_url.h"

namespace gruk {

/// What tells one state of a file from another: which file it is, its length, and when it was last
/// changed in any way. A plain value.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    /// Nanoseconds since 1970 of the last change of its content, and of anything about it.
    std::int64_t modified = 0;
    std::int64_t changed = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

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

    /// Goes on at that byte.
    void seek(std::uint64_t offset) { offset_ = offset; }

    /// Another reader of the same open file, at its start. Throws `FileError`.
    [[nodiscard]] FileReader another() const;

    /// The state that the file is in now. Throws `FileError`.
    [[nodiscard]] FileStamp stamp() const;

private:
    FileReader(int descriptor, std::string path);

    int descriptor_ = -1;
    std::string path_;
    std::uint64_t offset_ = 0;
};

}  // namespace gruk
