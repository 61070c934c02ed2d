#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/realm/realm_identity.h"

namespace gruk {

/// Puts two forms of one Unicode text in one place, and knows nothing else of them: not their
/// case, nor a trailing "/".
struct CanonicalLess {
    using is_transparent = void;
    [[nodiscard]] bool operator()(std::string_view a, std::string_view b) const;
};

/// The shields that the user painted, each under the bytes of its realm's path. Canonically
/// equivalent paths are one key, spelled as it came first.
using IdentityOverrides = std::map<std::string, RealmIdentity, CanonicalLess>;

/// The content of "identities.json" (docs/formats.md): one compact object, in the order of the
/// keys. A path with a NUL in it is a programming error.
[[nodiscard]] std::string identityOverridesJSON(const IdentityOverrides& overrides);

/// Reads such a content; none unless all of it is right, down to the last member. Members of a
/// shield beyond the six are passed over; of a path that stands twice the last one counts.
[[nodiscard]] std::optional<IdentityOverrides> identityOverrides(std::string_view content);

}  // namespace gruk
