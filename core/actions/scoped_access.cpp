#include "core/actions/scoped_access.h"

#include <utility>

namespace gruk {

ScopedAccess::ScopedAccess(FileURL url, bool didStartAccessing, StopFunction stop)
    : url_(std::move(url)), didStartAccessing_(didStartAccessing), stop_(std::move(stop))
{
}

ScopedAccess::~ScopedAccess()
{
    if (didStartAccessing_ && stop_) {
        stop_(url_);
    }
}

}  // namespace gruk
