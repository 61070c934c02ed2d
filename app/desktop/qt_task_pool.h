#pragma once

#include <chrono>

#include <QThreadPool>

#include "platform/events/task_pool.h"

namespace gruk {

/// The application's pool of threads. Enough of them that one walk, one load and one look at a
/// disk that does not answer never hold each other up.
class QtTaskPool final : public TaskPool {
public:
    QtTaskPool();

    /// Waits for what runs; see `waitForDone` for an end that does not.
    ~QtTaskPool() override;

    void start(std::function<void()> work) override;

    /// Whether everything started has ended within `limit`.
    [[nodiscard]] bool waitForDone(std::chrono::milliseconds limit);

private:
    QThreadPool threads_;
};

}  // namespace gruk
