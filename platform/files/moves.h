#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/atomic_file.h"
#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/foundation/errors.h"
#include "platform/foundation/file_url.h"

/// What the services that change the user's folders do to a disk: look, make a folder, move. A
/// move stays within one file system; it never replaces, never copies, never deletes, and moves a
/// link itself. Paths of any length, names of any bytes. Any thread; a mount whose server is gone
/// blocks.

namespace gruk {

/// Whether something can be seen to stand at `url`: a link that leads nowhere stands there, too.
/// What cannot be looked at counts as nothing; a move there would be refused.
[[nodiscard]] bool itemStands(const FileURL& url, const MoveCalls& calls = MoveCalls::live());

/// Whether `url`, with a last link followed, leads to something.
[[nodiscard]] bool itemIsReachable(const FileURL& url, const MoveCalls& calls = MoveCalls::live());

/// Another item than the one that was meant came to the destination, and could not be put back,
/// since something stands at its old place again. `what()` says where it is, too.
class StrayedItemError : public FileError {
public:
    /// An item strayed from `path` to `place`.
    StrayedItemError(const std::string& path, const std::string& place);

    /// Where it is now.
    [[nodiscard]] const std::string& place() const noexcept { return place_; }

private:
    std::string place_;
};

enum class HiddenItems { listed, skipped };

/// The places of everything directly in the directory, in the system's order. Hidden is what has a
/// name that begins with ".". `FileURL`s of directories name a directory. Throws `FileError`.
[[nodiscard]] std::vector<FileURL> itemsIn(const FileURL& directory, HiddenItems hidden,
                                           const MoveCalls& calls = MoveCalls::live());

/// Makes one directory, whose parent must exist; the user's mask of permissions applies. Throws
/// `FileError`, also when anything stands there.
void makeDirectory(const FileURL& url, const MoveConditions& conditions = {},
                   const MoveCalls& calls = MoveCalls::live());

/// Moves the item at `from` to the free place `to`. Throws `FileError`: `file_exists` when `to` is
/// taken, `cross_device_link` when it lies in another file system, `too_many_symbolic_link_levels`
/// or `not_a_directory` when the way leads through a link below `conditions.within`,
/// `no_such_file_or_directory` when it is gone or is not the one that `conditions` name. Whatever
/// is thrown, that item is where it was; when another one was put in its place in the very moment
/// and cannot go back, the error says where that one is now.
void moveItem(const FileURL& from, const FileURL& to, const MoveConditions& conditions = {},
              const MoveCalls& calls = MoveCalls::live());

/// What stands at `url` itself; none when that cannot be read.
[[nodiscard]] std::optional<ItemIdentity> itemIdentity(const FileURL& url,
                                                       const MoveCalls& calls = MoveCalls::live());

/// The same; throws `FileError` when it cannot be read.
[[nodiscard]] ItemIdentity requiredIdentity(const FileURL& url,
                                            const MoveCalls& calls = MoveCalls::live());

/// The content of a plain file of the program's own, of at most `longest` bytes; none when there is
/// none that can be read. The way to it is followed as it reads, but for what lies below `within`:
/// there no link is.
[[nodiscard]] std::optional<std::string>
readOwnFile(const FileURL& url, std::size_t longest, const MoveCalls& calls = MoveCalls::live(),
            const std::optional<FileURL>& within = std::nullopt);

/// How a file of the program's own is told from a user's of the same name.
struct OwnContent {
    /// A longer one is not the program's.
    std::size_t longest = 0;
    /// Whether the program wrote that. Empty: whatever has the name is the program's.
    std::function<bool(std::string_view content)> isOurs = {};
};

/// Replaces a file of the program's own as `replaceFile` does, with the way to its directory
/// followed under `conditions.within`: below that, a link at `target` itself is refused, too. The
/// directory must exist. Throws `FileError`: `file_exists` when what stands there is not `own`.
void replaceOwnFile(const FileURL& target, std::string_view bytes,
                    const MoveConditions& conditions = {},
                    const MoveCalls& calls = MoveCalls::live(), const OwnContent& own = {});

}  // namespace gruk
