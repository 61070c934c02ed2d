#pragma once

#include <functional>

namespace gruk {

/// Where long work runs, away from the main thread. The application's is a pool of threads; tests
/// use one that runs each piece when told to.
class TaskPool {
public:
    virtual ~TaskPool() = default;

    /// Runs `work` once, soon, on another thread; never before returning. `work` must not throw.
    /// Any thread may call. What `work` holds is let go of where it ran, or, when the pool ends
    /// before it ran, where the pool is destroyed.
    virtual void start(std::function<void()> work) = 0;
};

}  // namespace gruk
