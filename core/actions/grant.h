#pragma once

#include <string>

#include "platform/foundation/date.h"
#include "platform/foundation/uuid.h"

namespace gruk {

/// A folder or disk that the user handed to Gruk: a realm. A plain value.
struct Grant {
    /// Never changes, also when the bookmark is renewed.
    UUID id;
    /// The bytes of the path as it was handed in, not standardised.
    std::string path;
    /// Opaque bytes that find the same directory again after a restart.
    std::string bookmark;
    Date dateGranted;

    friend bool operator==(const Grant&, const Grant&) = default;
};

}  // namespace gruk
