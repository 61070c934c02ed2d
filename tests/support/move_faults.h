#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files/move_calls.h"

namespace gruk::test {

/// The calls of moves and the Trash on the real disk, with those of the files that they replace,
/// counted, each named by its field ("facts", "files.rename"), with something done to one of them.
/// Copies share the count. One thread.
class MoveFaults {
public:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    enum class Span { once, fromThenOn };

    /// Runs before each call with its number, from 0, and its name. Empty means nothing.
    std::function<void(std::size_t number, std::string_view name)> before;
    /// The first call that fails, and with which error number (positive).
    std::size_t failAt = never;
    int error = 0;
    Span span = Span::once;
    /// The most bytes that one "write" takes.
    std::size_t longestWrite = never;
    /// Whether looking and opening fail with the others from then on. A disk that is full or
    /// refuses to write still lets itself be read; one that is broken does not.
    bool lookingFails = true;
    /// Whether removing fails with the others.
    bool removingFails = false;

    /// Calls to hand over, which go on to those of `calls`; they stay good after this object is
    /// gone.
    [[nodiscard]] MoveCalls calls(MoveCalls calls = {}) const
    {
        const auto plan = std::make_shared<MoveFaults>(*this);
        plan->wrap("openDirectory", calls.openDirectory);
        plan->wrap("facts", calls.facts);
        plan->wrap("pathOf", calls.pathOf);
        plan->wrap("mounts", calls.mounts);
        plan->wrap("list", calls.list);
        plan->wrap("makeDirectory", calls.makeDirectory);
        plan->wrap("createExclusive", calls.createExclusive);
        plan->wrap("openFile", calls.openFile);
        plan->wrap("read", calls.read);
        plan->wrapWrite("write", calls.write);
        plan->wrap("startWriting", calls.startWriting);
        plan->wrap("synchronize", calls.synchronize);
        plan->wrap("synchronizeDirectory", calls.synchronizeDirectory);
        plan->wrapClose("close", calls.close);
        plan->wrap("moveWithoutReplacing", calls.moveWithoutReplacing);
        plan->wrap("moveOver", calls.moveOver);
        plan->wrap("remove", calls.remove);
        plan->wrap("removeDirectory", calls.removeDirectory);
        plan->wrapFiles(calls.files);
        return calls;
    }

    /// Whether the call of that name is among those that fail from then on.
    [[nodiscard]] bool fails(const std::string& name) const
    {
        static const std::set<std::string> looking{"openDirectory", "facts",    "pathOf", "mounts",
                                                   "list",          "openFile", "read"};
        static const std::set<std::string> removing{"remove", "removeDirectory", "files.remove"};
        return (lookingFails || !looking.contains(name))
               && (removingFails || !removing.contains(name));
    }

    /// The names of the calls made so far.
    [[nodiscard]] const std::vector<std::string>& names() const { return *names_; }
    /// Whether the fault was reached.
    [[nodiscard]] bool isHit() const { return *hits_ > 0; }

private:
    void wrapFiles(FileCalls& files) const
    {
        wrap("files.createExclusive", files.createExclusive);
        wrapWrite("files.write", files.write);
        wrap("files.synchronize", files.synchronize);
        wrapClose("files.close", files.close);
        wrap("files.rename", files.rename);
        wrap("files.synchronizeDirectory", files.synchronizeDirectory);
        wrap("files.remove", files.remove);
        wrap("files.makeDirectory", files.makeDirectory);
    }

    /// Counts the call; the negative error that it is to answer, or 0 to go through.
    [[nodiscard]] int enter(const std::string& name) const
    {
        const std::size_t number = names_->size();
        names_->push_back(name);
        if (before) {
            before(number, name);
        }
        const bool isMeant =
            span == Span::once ? number == failAt : number >= failAt && fails(name);
        *hits_ += isMeant ? 1 : 0;
        return isMeant ? -error : 0;
    }

    template <typename Result, typename... Arguments>
    void wrap(const std::string& name, std::function<Result(Arguments...)>& call) const
    {
        call = [plan = *this, name, live = std::move(call)](Arguments... arguments) -> Result {
            const int fault = plan.enter(name);
            return fault != 0 ? Result{fault} : live(std::forward<Arguments>(arguments)...);
        };
    }

    void wrapWrite(const std::string& name,
                   std::function<long(int, const char*, std::size_t)>& call) const
    {
        call = [plan = *this, name, live = std::move(call)](int descriptor, const char* bytes,
                                                            std::size_t count) {
            const int fault = plan.enter(name);
            return fault != 0 ? long{fault}
                              : live(descriptor, bytes, std::min(count, plan.longestWrite));
        };
    }

    /// As the system has it: the descriptor is gone, whatever the answer.
    void wrapClose(const std::string& name, std::function<int(int)>& call) const
    {
        call = [plan = *this, name, live = std::move(call)](int descriptor) {
            const int fault = plan.enter(name);
            const int answer = live(descriptor);
            return fault != 0 ? fault : answer;
        };
    }

    std::shared_ptr<std::vector<std::string>> names_ = std::make_shared<std::vector<std::string>>();
    std::shared_ptr<std::size_t> hits_ = std::make_shared<std::size_t>(0);
};

}  // namespace gruk::test
