#include "app/desktop/qt_run_loop.h"

#include <utility>

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

namespace gruk {

namespace {

class QtTimer final : public RunLoop::Timer {
public:
    enum class Repeats { once, forever };

    QtTimer(std::chrono::milliseconds interval, Repeats repeats, std::function<void()> function)
        : function_(std::make_shared<std::function<void()>>(std::move(function)))
    {
        timer_->setSingleShot(repeats == Repeats::once);
        QObject::connect(timer_, &QTimer::timeout, timer_, [function = function_] {
            // Held, since the function may end this timer.
            const auto held = function;
            (*held)();
        });
        timer_->start(interval);
    }

    ~QtTimer() override
    {
        timer_->stop();
        timer_->disconnect();
        // Not at once: this may be its own signal.
        timer_->deleteLater();
    }

private:
    QTimer* timer_ = new QTimer;
    std::shared_ptr<std::function<void()>> function_;
};

}  // namespace

QtRunLoop::QtRunLoop() = default;

QtRunLoop::~QtRunLoop()
{
    std::deque<std::function<void()>> never;
    {
        const std::lock_guard guard(lock_);
        never.swap(posted_);
    }
    // Outside the lock: letting go may resume what waits, which may post again.
}

void QtRunLoop::post(std::function<void()> function)
{
    bool isFirst = false;
    {
        const std::lock_guard guard(lock_);
        isFirst = posted_.empty();
        posted_.push_back(std::move(function));
    }
    if (isFirst) {
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

std::unique_ptr<RunLoop::Timer> QtRunLoop::after(std::chrono::milliseconds delay,
                                                 std::function<void()> function)
{
    return std::make_unique<QtTimer>(delay, QtTimer::Repeats::once, std::move(function));
}

std::unique_ptr<RunLoop::Timer> QtRunLoop::every(std::chrono::milliseconds interval,
                                                 std::function<void()> function)
{
    return std::make_unique<QtTimer>(interval, QtTimer::Repeats::forever, std::move(function));
}

Date QtRunLoop::now() const
{
    return Date::now();
}

bool QtRunLoop::event(QEvent* event)
{
    if (event->type() == QEvent::User) {
        runPosted();
        return true;
    }
    return QObject::event(event);
}

void QtRunLoop::runPosted()
{
    std::deque<std::function<void()>> batch;
    {
        const std::lock_guard guard(lock_);
        batch.swap(posted_);
    }
    // What these post comes in an event of its own, so that input is never starved.
    for (auto& function : batch) {
        function();
        function = nullptr;
    }
}

}  // namespace gruk
