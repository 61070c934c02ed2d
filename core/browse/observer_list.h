#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace gruk {

/// Who can be taken off a list by a number.
class SubscriptionList {
public:
    virtual ~SubscriptionList() = default;
    virtual void remove(std::uint64_t id) = 0;
};

/// A place on an observer list: ends when it is destroyed. The list may be gone by then. Moves.
class Subscription {
public:
    Subscription() = default;
    Subscription(std::weak_ptr<SubscriptionList> list, std::uint64_t id)
        : list_(std::move(list)), id_(id)
    {
    }
    ~Subscription() { end(); }
    Subscription(Subscription&& other) noexcept
        : list_(std::exchange(other.list_, {})), id_(other.id_)
    {
    }
    Subscription& operator=(Subscription&& other) noexcept
    {
        std::swap(list_, other.list_);
        std::swap(id_, other.id_);
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

    void end()
    {
        if (const auto list = std::exchange(list_, {}).lock()) {
            list->remove(id_);
        }
    }

private:
    std::weak_ptr<SubscriptionList> list_;
    std::uint64_t id_ = 0;
};

/// Who wants to be told of something. One thread.
///
/// Observers may come and go while they are being told: one that left is not called any more, one
/// that came is called from the next time on. The list may go meanwhile too, and then calls nobody
/// else. A list that nobody ever subscribed to is one empty pointer.
template <typename... Arguments>
class ObserverList {
public:
    ObserverList() = default;
    ~ObserverList()
    {
        if (state_) {
            state_->isClosed = true;
        }
    }
    ObserverList(const ObserverList&) = delete;
    ObserverList& operator=(const ObserverList&) = delete;

    /// Calls `function` at each telling until the subscription ends.
    [[nodiscard]] Subscription subscribe(std::function<void(Arguments...)> function)
    {
        if (!state_) {
            state_ = std::make_shared<State>();
        }
        const std::uint64_t id = state_->nextID++;
        state_->entries.push_back({id, std::make_shared<const Function>(std::move(function))});
        return {state_, id};
    }

    /// Calls everyone who is subscribed now, in the order in which they came.
    void tell(Arguments... arguments) const
    {
        if (!state_) {
            return;
        }
        const std::shared_ptr<State> state = state_;
        const Telling telling(*state);
        const std::size_t count = state->entries.size();
        for (std::size_t i = 0; i < count && !state->isClosed; ++i) {
            if (const auto function = state->entries[i].function) {
                (*function)(arguments...);
            }
        }
    }

private:
    using Function = std::function<void(Arguments...)>;

    struct Entry {
        std::uint64_t id = 0;
        /// Shared, so that one that leaves during its own call ends after it. None: left.
        std::shared_ptr<const Function> function;
    };

    struct State final : SubscriptionList {
        std::vector<Entry> entries;
        std::uint64_t nextID = 1;
        int tellings = 0;
        bool isClosed = false;

        void remove(std::uint64_t id) override
        {
            const auto entry = std::find_if(entries.begin(), entries.end(),
                                            [id](const Entry& one) { return one.id == id; });
            if (entry == entries.end()) {
                return;
            }
            // Let go of last: what the function holds may itself be subscribed here.
            const auto function = std::move(entry->function);
            if (tellings == 0) {
                entries.erase(entry);
            }
        }
    };

    /// Counts a telling, however it ends, and clears away who left during it.
    class Telling {
    public:
        explicit Telling(State& state) : state_(state) { ++state_.tellings; }
        ~Telling()
        {
            if (--state_.tellings == 0) {
                std::erase_if(state_.entries, [](const Entry& entry) { return !entry.function; });
            }
        }
        Telling(const Telling&) = delete;
        Telling& operator=(const Telling&) = delete;

    private:
        State& state_;
    };

    std::shared_ptr<State> state_;
};

}  // namespace gruk
