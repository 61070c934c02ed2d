#pragma once

#include <boost/unordered/unordered_flat_set.hpp>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <new>
#include <stop_token>
#include <string_view>
#include <utility>
#include <vector>

#include "core/patrol/child_lister.h"
#include "platform/foundation/errors.h"

namespace gruk {

/// Whether a file of several names is met for the first time in a walk. Of one name, always.
enum class FileMeeting { first, again };

/// The walk that everything which counts a tree has in common: depth first, the directory found
/// last listed first; symbolic links are skipped, and so is what is gone when it is looked at; what
/// is on another volume than the root is not entered; of a hard-linked file the first name met is
/// told from the others. Keeps its own stack, so that no depth exhausts the call stack.
///
/// What is made of it is up to `Rules`, which has
///
///     using Directory;                 // tells a directory from others; `Directory()` is the root
///     std::string_view name(const Directory&) const;
///     void willVisit();                // before each child; may throw
///     void otherVolume(const Directory& parent, const ListedItem&);
///     Directory directory(const Directory& parent, const ListedItem&);
///     void file(const Directory& parent, const ListedItem&, FileMeeting);
///     void listed(const Directory&);   // after its last child
///     bool absorbs(const Directory&, const std::exception&);  // of its listing; else it is thrown
///
/// Only what the listing itself throws is offered to `absorbs`: what the rules throw, and want of
/// memory, ends the walk. Throws `CancelledError` at the next directory after a stop is requested.
/// One walk, one thread.
template <typename Rules>
class TreeWalk {
public:
    /// All are borrowed.
    TreeWalk(ChildLister& lister, std::int32_t rootDevice, const std::stop_token& stop,
             Rules& rules)
        : lister_(lister), rootDevice_(rootDevice), stop_(stop), rules_(rules)
    {
    }

    void run()
    {
        pending_.push_back({Directory(), 0});
        while (!pending_.empty()) {
            const Pending next = std::move(pending_.back());
            pending_.pop_back();
            if (stop_.stop_requested()) {
                throw CancelledError();
            }
            if (list(next)) {
                rules_.listed(next.directory);
            }
        }
    }

private:
    using Directory = typename Rules::Directory;

    struct Pending {
        Directory directory;
        std::uint32_t depth = 0;
    };

    /// The identity of a file's storage.
    struct HardLinkKey {
        std::int32_t deviceID = 0;
        std::uint64_t inode = 0;
        friend bool operator==(const HardLinkKey&, const HardLinkKey&) = default;
        friend std::size_t hash_value(const HardLinkKey& key)  // NOLINT: Boost looks for the name
        {
            return std::hash<std::uint64_t>()(key.inode
                                              ^ (static_cast<std::uint64_t>(key.deviceID) << 40U));
        }
    };

    bool list(const Pending& at)
    {
        bool isRecording = false;
        try {
            const std::string_view name =
                at.depth == 0 ? std::string_view() : rules_.name(at.directory);
            lister_.list(at.depth, name, [&](const ListedItem& item) {
                isRecording = true;
                visit(at, item);
                isRecording = false;
            });
            return true;
        } catch (const CancelledError&) {
            throw;
        } catch (const std::bad_alloc&) {
            // That memory ran out says nothing about the folder.
            throw;
        } catch (const std::exception& error) {
            // Nor does what failed while an item of it was recorded.
            if (isRecording || !rules_.absorbs(at.directory, error)) {
                throw;
            }
            return false;
        }
    }

    void visit(const Pending& at, const ListedItem& item)
    {
        rules_.willVisit();
        if (item.isSymlink || item.hasVanished) {
            return;
        }
        if (item.volumeID != rootDevice_) {
            rules_.otherVolume(at.directory, item);
        } else if (item.isDirectory) {
            pending_.push_back({rules_.directory(at.directory, item), at.depth + 1});
        } else {
            rules_.file(at.directory, item, meet(item));
        }
    }

    FileMeeting meet(const ListedItem& file)
    {
        return file.linkCount < 2 || seenHardLinks_.insert({file.deviceID, file.inode}).second
                   ? FileMeeting::first
                   : FileMeeting::again;
    }

    ChildLister& lister_;
    std::int32_t rootDevice_;
    const std::stop_token& stop_;
    Rules& rules_;
    std::vector<Pending> pending_;
    boost::unordered_flat_set<HardLinkKey> seenHardLinks_;
};

}  // namespace gruk
