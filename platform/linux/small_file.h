#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/move_calls.h"

/// The small files that belong to a Trash, by their name in an open directory.

namespace gruk {

struct SmallFile {
    std::string text;
    PlaceFacts facts;
};

/// The whole of a file; none when it cannot be read, is longer than `longest` bytes, or is anything
/// but a plain file.
[[nodiscard]] std::optional<SmallFile> readSmallFile(int directory, const std::string& name,
                                                     std::size_t longest, const MoveCalls& calls);

/// A new file of mode 0600, made where nothing stood, that is still to reach the disk. Unless it is
/// finished, it is removed with this object. Moves; one thread.
class SmallFileInMaking {
public:
    /// Makes it with all of `text`, and lets the disk begin with it. Throws `FileError` for `path`:
    /// `file_exists` when the name is taken; whatever is thrown, here or by `finish`, nothing of it
    /// is left, as far as the system lets it be removed. `directory` stays borrowed.
    SmallFileInMaking(int directory, std::string name, std::string_view text, std::string path,
                      const MoveCalls& calls);
    ~SmallFileInMaking();
    SmallFileInMaking(SmallFileInMaking&& other) noexcept;
    SmallFileInMaking& operator=(SmallFileInMaking&&) = delete;
    SmallFileInMaking(const SmallFileInMaking&) = delete;
    SmallFileInMaking& operator=(const SmallFileInMaking&) = delete;

    /// Waits until it is on the disk, and closes it. Throws `FileError`.
    void finish();

    [[nodiscard]] const PlaceFacts& facts() const { return facts_; }

private:
    void learn();
    /// The descriptor is gone even when a signal came between.
    int close();
    void requireDone(int result);

    int directory_;
    std::string name_;
    std::string path_;
    const MoveCalls* calls_;
    PlaceFacts facts_;
    int number_ = -1;
};

/// Removes the file if it is still the one with these facts. Failures are not told.
void removeSmallFile(int directory, const std::string& name, const PlaceFacts& facts,
                     const MoveCalls& calls);

}  // namespace gruk
