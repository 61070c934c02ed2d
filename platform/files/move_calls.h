#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/atomic_file.h"
#include "platform/files/item_facts.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// What a move has to know of an item beside what a listing shows. A plain value.
struct PlaceFacts {
    ItemFacts item;
    /// The bits of the permissions, with the sticky bit (01000).
    unsigned permissions = 0;
    /// The number of the user whom it belongs to.
    std::uint32_t owner = 0;
    /// The number of the mount that shows it; 0 where the system does not tell.
    std::uint64_t mount = 0;
};

/// One name in a listed directory. Valid only while the visitor runs.
struct ListedName {
    std::string_view name;
    /// None where the listing itself does not tell it.
    std::optional<ItemType> type;
};

/// What becomes of a link at the very end of a path.
enum class LastLink { followed, refused };

/// The calls that looking, moving and trashing make, each replaceable by a test that lets it fail.
/// Every one returns 0, a descriptor or a count on success and the negative error number on
/// failure. Names are relative to the open `directory`; an absolute path ignores it. A
/// default-constructed set calls the system. Any thread, as long as no field is changed.
struct MoveCalls {
    MoveCalls();

    using NameVisitor = FunctionRef<void(const ListedName&)>;
    /// Takes the number of a mount and where it is mounted.
    using MountVisitor = FunctionRef<void(std::uint64_t number, const std::string& point)>;

    /// Opens a directory to name what is in it, which takes no right to list it.
    std::function<int(int directory, const char* name, LastLink link)> openDirectory;
    /// Describes an item; the directory itself when `name` is empty. Nothing is opened.
    std::function<int(int directory, const char* name, LastLink link, PlaceFacts& facts)> facts;
    /// Where an open directory is now, as an absolute path.
    std::function<int(int directory, std::string& path)> pathOf;
    /// Hands every mount to `visit`, in order of mounting.
    std::function<int(MountVisitor visit)> mounts;
    /// Hands every name but "." and ".." to `visit`, in the system's order; a failure may come in
    /// the middle.
    std::function<int(int directory, NameVisitor visit)> list;
    /// Makes a directory where nothing stands; the user's mask of permissions applies.
    std::function<int(int directory, const char* name, unsigned permissions)> makeDirectory;
    /// Makes a file where nothing stands and opens it for writing; the user's mask applies.
    std::function<int(int directory, const char* name, unsigned permissions)> createExclusive;
    /// Opens a file for reading; a link is refused, and nothing that stands there blocks.
    std::function<int(int directory, const char* name)> openFile;
    std::function<long(int descriptor, char* bytes, std::size_t count)> read;
    /// Returns how many bytes were written; may be fewer than `count`.
    std::function<long(int descriptor, const char* bytes, std::size_t count)> write;
    /// Lets the disk begin with what was written, without waiting for it; a hint.
    std::function<int(int descriptor)> startWriting;
    std::function<int(int descriptor)> synchronize;
    /// Makes the names in a directory durable, also one that `openDirectory` opened.
    std::function<int(int directory)> synchronizeDirectory;
    std::function<int(int descriptor)> close;
    /// Moves an item itself to a name where nothing stands. The error for "invalid" also says that
    /// the file system cannot promise that.
    std::function<int(int fromDirectory, const char* from, int toDirectory, const char* to)>
        moveWithoutReplacing;
    /// Moves an item over an empty place-holder that the move made itself, for file systems that
    /// cannot promise more.
    std::function<int(int fromDirectory, const char* from, int toDirectory, const char* to)>
        moveOver;
    /// Removes a file that the program made itself.
    std::function<int(int directory, const char* name)> remove;
    /// Removes an empty directory that the program made itself.
    std::function<int(int directory, const char* name)> removeDirectory;
    /// For files of the program's own that are replaced whole.
    FileCalls files;

    /// One shared set that calls the system.
    static const MoveCalls& live();
};

}  // namespace gruk
