#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/actions/grant.h"
#include "core/actions/scoped_access.h"
#include "platform/files/atomic_file.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// How a `GrantStore` makes and resolves bookmarks. A test hands in its own.
struct BookmarkCalls {
    /// The bookmark of a directory; may throw.
    std::function<std::string(const FileURL&)> make;
    /// The directory of a bookmark; throws when it is not there.
    std::function<FileURL(std::string_view)> resolve;
    /// Whether access to a resolved directory was started.
    std::function<bool(const FileURL&)> startAccessing;
    /// Balances a start that answered true; must not throw.
    std::function<void(const FileURL&)> stopAccessing;
    /// The bookmark of a resolved directory anew; throws when another one stands there by now.
    /// Empty means that `make` does it.
    std::function<std::string(std::string_view bookmark, const FileURL&)> renew = {};

    static BookmarkCalls live();
};

/// The granted realms, in order of adding, kept in one JSON file (docs/formats.md). Answers which
/// grant covers a place and opens access to it. Main thread only; takes no lock.
class GrantStore {
public:
    /// Reads the file at once. Never fails: an unreadable file is an empty list, and stays on
    /// disk until the next save.
    explicit GrantStore(FileURL storageURL, BookmarkCalls calls = BookmarkCalls::live(),
                        FileCalls files = FileCalls::live());

    [[nodiscard]] const std::vector<Grant>& grants() const noexcept { return storedGrants_; }

    /// The grant of that place: the one there is, unchanged, or a new one, saved. Throws when no
    /// bookmark can be made (the list is unchanged) or the file cannot be written (the new grant
    /// stays in the list until the program ends).
    Grant addGrant(const FileURL& url);

    /// Grants a place in another's stead, at the end of the list, with a bookmark made now; for a
    /// directory that is gone while the user has shown the one that is meant. Throws when no
    /// bookmark can be made (the list is unchanged) or the file cannot be written (the list keeps
    /// the new grant until the program ends).
    Grant replaceGrant(const UUID& former, const FileURL& url);

    /// Forgets a grant. A failure to save is not told: the grant is back at the next start.
    void removeGrant(const UUID& id);

    /// Opens access to the grant that covers `url`, the most specific one; none when there is no
    /// such grant or its directory is not there.
    [[nodiscard]] std::shared_ptr<ScopedAccess> startAccess(const FileURL& url) const;

    /// Renews a grant's bookmark without asking the user, and saves. Throws when its directory is
    /// not there, or when saving fails (the list then keeps the renewed grant).
    Grant refreshGrant(const Grant& grant);

    /// Where the grant's own directory is now; none when it is not found.
    [[nodiscard]] std::optional<FileURL> whereabouts(const Grant& grant) const;

    /// The grant's bookmark anew, made at `place`. Throws unless the grant's own directory is
    /// there, wherever it was before.
    [[nodiscard]] std::string bookmarkAt(const Grant& grant, const FileURL& place) const;

    /// Gives a grant another place, with a bookmark of it; any other grant of that place goes. Does
    /// nothing when there is no such grant. Throws when the file cannot be written; the list is
    /// then as it was.
    void moveGrant(const UUID& id, const FileURL& place, const std::string& bookmark);
    /// Puts the list back to what `grants` told. Throws as `moveGrant` does.
    void putBack(const std::vector<Grant>& former);

private:
    Grant appendGrant(Grant grant);
    [[nodiscard]] const Grant* bestGrant(std::string_view path) const;
    void save() const;

    FileURL storageURL_;
    BookmarkCalls calls_;
    FileCalls files_;
    std::vector<Grant> storedGrants_;
};

}  // namespace gruk
