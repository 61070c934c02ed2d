#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/events/file_event_stream.h"
#include "platform/foundation/file_url.h"
#include "platform/linux/file_event_folders.h"
#include "platform/linux/file_event_own_items.h"
#include "platform/linux/file_event_place.h"
#include "platform/linux/file_event_records.h"

namespace gruk {

/// The calls that make and end watches; a test lets them fail.
struct WatchCalls {
    /// Watches an open directory; returns its watch, or the negative error number.
    std::function<int(int queue, int directory)> add;
    std::function<void(int queue, int watch)> remove;

    static WatchCalls live();
};

/// Keeps every directory of a tree watched while the tree changes. Knows no thread: whoever owns
/// it reads the queue, hands every record to `handle`, and calls `work` while there is some.
///
/// A directory is watched first and listed then, so that what is made in between is heard of or
/// found; and it is watched as what was opened, never by its path. Symbolic links, directories of
/// another device and those that are unheard are not entered. Directories are held open only while
/// there is work.
class FileEventTree {
public:
    /// Opens and watches `root`; throws `FileError`. `queue` is borrowed.
    FileEventTree(const FileURL& root, int queue, WatchCalls calls = WatchCalls::live(),
                  UnheardItems unheard = {});

    /// Takes in one record; returns whether it tells of a change.
    bool handle(const FileEventRecord& record);

    /// Takes in that something was mounted or unmounted somewhere; returns whether that is a
    /// change. What it uncovered is there to be taken in.
    bool mountsChanged();

    /// Whether directories are to be taken in or looked for.
    [[nodiscard]] bool hasWork() const
    {
        return !isGone_ && (!pending_.empty() || !moved_.empty());
    }

    /// Takes in at most `count` directories; returns whether that counts as a change.
    bool work(std::size_t count);

    /// Whether the root has gone from its place: there is nothing more to hear of it.
    [[nodiscard]] bool isGone() const { return isGone_; }

    /// What went short since the last call, in words for the log; each kind is told once.
    [[nodiscard]] std::optional<std::string> takeComplaint();

    [[nodiscard]] std::size_t watchCount() const { return folders_.size(); }

private:
    /// What is listed again of a directory that is watched already.
    enum class Relisting { nothing, itself, tree };
    struct Item {
        /// The watch of the directory that it is in; 0 for the root.
        int parent = 0;
        std::string name;
        Relisting relisting = Relisting::nothing;
    };
    enum class Shortfall { watches, queue, descriptors };

    bool goes();
    void noteFolder(const FileEventRecord& record);
    void walkAgain();
    bool takeIn(const Item& item);
    bool takeInOpened(int directory, const Item& item);
    bool watchFailed(int error);
    bool wasChangedSinceTheBeginning(int directory) const;
    void finishWork();
    [[nodiscard]] std::vector<int> movedAway();
    void drop(const std::vector<int>& watches);
    bool complain(Shortfall shortfall);

    std::string rootPath_;
    int queue_;
    WatchCalls calls_;
    timespec begun_{};
    FileEventFolders folders_;
    FileEventOwnItems ownItems_;
    /// Whether all of it is unheard.
    bool isUnheard_ = false;
    /// None until the root is watched.
    std::optional<FileEventPlace> place_;
    /// The last one first, so that a tree is taken in depth first.
    std::vector<Item> pending_;
    /// Those that moved; whether they are still in the tree shows when all else is done.
    std::vector<int> moved_;
    /// Counts the walks, so that none lists a directory twice.
    std::uint32_t walk_ = 1;
    /// Set after records were lost: what no walk since then has listed is not there any more.
    std::optional<std::uint32_t> dropsBefore_;
    bool isFirstWalk_ = true;
    bool isGone_ = false;
    std::vector<Shortfall> told_;
    std::string complaint_;
};

}  // namespace gruk
