#pragma once

#include <deque>
#include <mutex>

#include <QObject>

#include "platform/events/run_loop.h"

namespace gruk {

/// The run loop over the toolkit's event loop. Create and destroy it on the main thread, before
/// respectively after everything that posts to it. What was posted and never ran is let go of at
/// its end.
class QtRunLoop final : public QObject, public RunLoop {
public:
    QtRunLoop();
    ~QtRunLoop() override;

    void post(std::function<void()> function) override;
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                               std::function<void()> function) override;
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                               std::function<void()> function) override;
    [[nodiscard]] Date now() const override;

    bool event(QEvent* event) override;

private:
    void runPosted();

    /// Guards `posted_`.
    std::mutex lock_;
    std::deque<std::function<void()>> posted_;
};

}  // namespace gruk
