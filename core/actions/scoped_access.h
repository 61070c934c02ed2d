#pragma once

#include <functional>

#include "platform/foundation/file_url.h"
#include "platform/settings/bookmarks.h"

namespace gruk {

/// Holds a realm open for as long as it lives; released with its last reference. Every patrol,
/// browse and move runs under one. Hold it by `std::shared_ptr`; it has no copy.
class ScopedAccess {
public:
    /// Called with `url()` at the release of an access that was started; must not throw. An empty
    /// one means that there is nothing to balance.
    using StopFunction = std::function<void(const FileURL&)>;

    /// Whether the granted directory itself is still where the access leads. Looks at the disk; any
    /// thread, also when the access has been released; must not throw.
    using StandsFunction = std::function<bool()>;

    /// Takes over an access that was started (or refused, `didStartAccessing` false). Without
    /// `stands` it is taken to stand for ever.
    ScopedAccess(FileURL url, bool didStartAccessing, StopFunction stop = stopAccessing,
                 StandsFunction stands = {});
    ~ScopedAccess();
    ScopedAccess(const ScopedAccess&) = delete;
    ScopedAccess& operator=(const ScopedAccess&) = delete;

    /// Where the grant's own directory is now; the authorised root, never the sub-path asked for.
    [[nodiscard]] const FileURL& url() const noexcept { return url_; }
    [[nodiscard]] bool didStartAccessing() const noexcept { return didStartAccessing_; }
    /// Never empty.
    [[nodiscard]] const StandsFunction& stands() const noexcept { return stands_; }

private:
    FileURL url_;
    bool didStartAccessing_;
    StopFunction stop_;
    StandsFunction stands_;
};

}  // namespace gruk
