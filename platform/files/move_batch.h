#pragma once

#include <functional>
#include <memory>

#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// Moves that belong to one action of the user. What a single move does after itself is done once
/// for all of them, at the end: making names durable, taking the info files of what left the Trash
/// away, noting the sizes of folders there. So many items wait for the disk about as often as one.
///
/// Hand it over in `MoveConditions`. A process that is killed before the end has lost no item; at
/// most an info file of an item that went back stays in the Trash. One thread at a time.
class MoveBatch {
public:
    explicit MoveBatch(MoveCalls calls = MoveCalls::live());
    /// Finishes.
    ~MoveBatch();
    MoveBatch(const MoveBatch&) = delete;
    MoveBatch& operator=(const MoveBatch&) = delete;

    /// Takes note of which directory stands at `root` now. From then on, moves of this batch under
    /// that `MoveConditions::within` find their way through this very one only: another folder put
    /// in its place, or the bare mount point of a disk that was pulled out, is refused with
    /// `no_such_file_or_directory`. One that cannot be looked at refuses every move with that
    /// error. `isMeant`, if any, is asked right then whether that directory is the one that was
    /// granted; if not, every move is refused as if it had gone.
    void stayIn(const FileURL& root, const std::function<bool()>& isMeant = {});
    /// Throws `FileError` unless the directory of `stayIn`, if any, still stands at its place.
    void requireRoot() const;

    /// Does what is left to do for the moves so far. Failures are not told: the moves stand.
    void finish() noexcept;

    /// What the system's side notes down.
    class Records;
    [[nodiscard]] Records& records() { return *records_; }

private:
    std::unique_ptr<Records> records_;
};

}  // namespace gruk
