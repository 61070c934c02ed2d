#pragma once

#include <string_view>

#include "core/realm/identity_overrides.h"
#include "platform/files/atomic_file.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// The shields of all realms: those that the user painted, kept in "identities.json"
/// (docs/formats.md), and for every other path the derived one, which is never stored.
///
/// A value; one thread at a time.
class RealmIdentityStore {
public:
    /// Reads the file in `directory` at once, and never again. Never fails: a file that is
    /// missing, unreadable or wrong in a single member is no overrides, and stays on disk until
    /// the next write.
    explicit RealmIdentityStore(const FileURL& directory, FileCalls calls = FileCalls::live());

    [[nodiscard]] const FileURL& fileURL() const noexcept { return fileURL_; }
    [[nodiscard]] const IdentityOverrides& overrides() const noexcept { return overrides_; }

    /// The painted shield of exactly that path, else the derived one. Canonically equivalent
    /// paths have one painted shield, but a derived shield goes by the very bytes.
    [[nodiscard]] RealmIdentity identity(std::string_view path) const;

    /// Keeps `identity` for that path, whatever its tinctures, and writes the file. Throws
    /// `FileError` when it cannot be written; the override then still holds in memory.
    void setOverride(const RealmIdentity& identity, std::string_view path);

    /// Forgets the override of that path, if there is one, and writes the file in any case.
    /// Throws as `setOverride` does; the override is then still forgotten in memory.
    void clearOverride(std::string_view path);

    /// Keeps the painted shield of `from`, if it has one, as that of `to`. Throws as `setOverride`
    /// does; nothing has changed then.
    void moveOverride(std::string_view from, std::string_view to);
    /// Puts all of them back to what `overrides` told. Throws as `moveOverride` does.
    void putBack(const IdentityOverrides& former);

private:
    void write() const;

    FileURL fileURL_;
    FileCalls calls_;
    IdentityOverrides overrides_;
};

}  // namespace gruk
