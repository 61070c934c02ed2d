#include "core/actions/scoped_access.h"

#include <utility>

namespace gruk {

ScopedAccess::ScopedAccess(FileURL url, bool didStartAccessing, StopFunction stop,
                           StandsFunction stands)
    : url_(std::move(url)), didStartAccessing_(didStartAccessing), stop_(std::move(stop)),
      stands_(std::move(stands))
{
    if (!stands_) {
        stands_ = [] { return true; };
    }
}

ScopedAccess::~ScopedAccess()
{
    if (didStartAccessing_ && stop_) {
        stop_(url_);
    }
}

}  // namespace gruk
