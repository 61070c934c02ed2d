#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/file_url.h"

namespace gruk {

/// The calls that a replacement makes, each replaceable by a test that lets it fail. Every one
/// returns 0 or a positive count on success and the negative error number on failure. The
/// defaults call the system. Any thread.
struct FileCalls {
    /// Makes a new file (never an existing one) of mode 0600; returns a descriptor.
    std::function<int(const char* path)> createExclusive;
    /// Returns how many bytes were written; may be fewer than `count`.
    std::function<long(int descriptor, const char* bytes, std::size_t count)> write;
    std::function<int(int descriptor)> synchronize;
    std::function<int(int descriptor)> close;
    std::function<int(const char* from, const char* to)> rename;
    /// Makes the rename durable.
    std::function<int(const char* directory)> synchronizeDirectory;
    std::function<int(const char* path)> remove;
    /// Makes one directory of mode 0700; an existing one is success.
    std::function<int(const char* path)> makeDirectory;

    static FileCalls live();
};

/// Replaces one file whole: what is written goes to a temporary file beside the target, and
/// `commit` puts it in the target's place. A reader, a crash or a full disk at any moment finds
/// the former file or the new one, whole. Without `commit`, destruction removes the temporary
/// file and leaves the target as it was. (A process that is killed leaves a temporary file, which
/// `removeLeftOvers` clears away at the next replacement of the same target.)
///
/// One thread at a time.
class AtomicFile {
public:
    /// A link at the target itself: what it leads to is replaced, or the link.
    enum class TargetLink { followed, replaced };

    /// Creates the temporary file, and the parent directory with its intermediates if missing.
    /// Throws `FileError`.
    explicit AtomicFile(const FileURL& target, FileCalls calls = FileCalls::live(),
                        TargetLink link = TargetLink::followed);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Appends all of `bytes`. Throws `FileError`; the object is then only good to be destroyed.
    void write(std::string_view bytes);

    /// Makes the content durable, puts it in the target's place and makes that durable. Throws
    /// `FileError`: the target is then the former file, but for a failure of the very last step,
    /// after which the new file stands and only its durability is in doubt; that is not an error.
    void commit();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

/// Replaces `target` by `bytes` in one go. Throws `FileError`.
void replaceFile(const FileURL& target, std::string_view bytes,
                 const FileCalls& calls = FileCalls::live());

/// The whole content of the file. Throws `FileError`: `file_too_large` when it has more than
/// `longest` bytes.
[[nodiscard]] std::string readFile(const FileURL& url, std::size_t longest = std::size_t{1} << 40U);

}  // namespace gruk
