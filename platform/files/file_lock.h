#pragma once

#include <chrono>

#include "platform/foundation/file_url.h"

namespace gruk {

/// Keeps everybody else who takes the same lock away, in this process and in others, for as long
/// as it lives. The system drops the lock of a process that ends, however it ends. A file system
/// without locks gives it to everybody. Any thread.
class FileLock {
public:
    /// For work that is done in a moment, and where nobody can wait for ever.
    static constexpr std::chrono::milliseconds usualPatience{5'000};

    /// Makes the lock file at `url` for the user alone, if it is missing (its folder must exist),
    /// and waits until it is ours. Throws `FileError`: `resource_unavailable_try_again` when
    /// another one kept it for longer than `patience`.
    explicit FileLock(const FileURL& url, std::chrono::milliseconds patience = usualPatience);

    /// Lets go of it. The file stays: to remove it would let two own it.
    ~FileLock();

    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;

private:
    explicit FileLock(int descriptor) noexcept : descriptor_(descriptor) {}

    int descriptor_ = -1;
};

}  // namespace gruk
