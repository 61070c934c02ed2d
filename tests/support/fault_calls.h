#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/atomic_file.h"

namespace gruk::test {

/// The calls of a replacement on the real disk, counted, each named by its field, with something
/// done to one of them. Copies share the count. One thread.
class FaultCalls {
public:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    enum class Span { once, fromThenOn };

    /// Runs before each call with its number, from 0. Empty means nothing.
    std::function<void(std::size_t number)> before;
    /// The first call that fails, and with which error number (positive).
    std::size_t failAt = never;
    int error = 0;
    Span span = Span::once;
    /// The most bytes that one `write` takes.
    std::size_t longestWrite = never;
    /// Whether removing fails with the others. A disk that is full or refuses to write lets files
    /// be removed; one that is broken does not.
    bool removeFails = false;

    /// Calls to hand over; they stay good after this object is gone.
    [[nodiscard]] FileCalls calls() const
    {
        const auto plan = std::make_shared<FaultCalls>(*this);
        const FileCalls live = FileCalls::live();
        FileCalls result;
        result.createExclusive = plan->wrapped("createExclusive", live.createExclusive);
        result.write = [plan, live](int descriptor, const char* bytes, std::size_t count) {
            const int fault = plan->enter("write");
            return fault != 0 ? long{fault}
                              : live.write(descriptor, bytes, std::min(count, plan->longestWrite));
        };
        result.synchronize = plan->wrapped("synchronize", live.synchronize);
        result.close = [plan, live](int descriptor) {
            // As the system has it: the descriptor is gone, whatever the answer.
            const int fault = plan->enter("close");
            const int answer = live.close(descriptor);
            return fault != 0 ? fault : answer;
        };
        result.rename = plan->wrapped("rename", live.rename);
        result.synchronizeDirectory =
            plan->wrapped("synchronizeDirectory", live.synchronizeDirectory);
        result.remove = plan->wrapped("remove", live.remove);
        result.makeDirectory = plan->wrapped("makeDirectory", live.makeDirectory);
        return result;
    }

    /// The names of the calls made so far.
    [[nodiscard]] const std::vector<std::string>& names() const { return *names_; }

private:
    /// Counts the call; the negative error that it is to answer, or 0 to go through.
    int enter(const std::string& name)
    {
        const std::size_t number = names_->size();
        names_->push_back(name);
        if (before) {
            before(number);
        }
        const bool isHit = span == Span::once ? number == failAt : number >= failAt;
        return isHit && (name != "remove" || removeFails) ? -error : 0;
    }

    template <typename... Arguments>
    std::function<int(Arguments...)> wrapped(std::string name,
                                             std::function<int(Arguments...)> live)
    {
        return [plan = *this, name = std::move(name),
                live = std::move(live)](Arguments... arguments) mutable {
            const int fault = plan.enter(name);
            return fault != 0 ? fault : live(arguments...);
        };
    }

    std::shared_ptr<std::vector<std::string>> names_ = std::make_shared<std::vector<std::string>>();
};

}  // namespace gruk::test
