#include "core/browse/aggregate_tasks.h"

#include <utility>

namespace gruk {

AggregateTasks::AggregateTasks(std::shared_ptr<ScanEngine> engine, std::shared_ptr<TaskPool> pool,
                               std::shared_ptr<RunLoop> loop)
    : engine_(std::move(engine)), pool_(std::move(pool)), loop_(std::move(loop))
{
}

AggregateTasks::~AggregateTasks()
{
    alive_.reset();
    cancelWalks();
}

void AggregateTasks::walk(const std::shared_ptr<ScanNode>& node)
{
    waiting_.push_back(node);
    node->beginComputing();
    startNext();
}

void AggregateTasks::cancelWalks()
{
    stop_.request_stop();
    stop_ = std::stop_source();
    std::deque<std::shared_ptr<ScanNode>> cancelled;
    cancelled.swap(waiting_);
    if (walked_) {
        cancelled.push_front(std::exchange(walked_, nullptr));
    }
    // Forgetting is no walk: it stays asked for.
    for (const std::shared_ptr<ScanNode>& node : cancelled) {
        if (!node) {
            waiting_.push_back(nullptr);
        }
    }
    for (const std::shared_ptr<ScanNode>& node : cancelled) {
        if (node) {
            node->endComputing(std::nullopt);
        }
    }
}

void AggregateTasks::invalidate()
{
    waiting_.push_back(nullptr);
    startNext();
}

void AggregateTasks::startNext()
{
    if (isBusy_ || waiting_.empty()) {
        return;
    }
    isBusy_ = true;
    walked_ = std::move(waiting_.front());
    waiting_.pop_front();
    if (walked_) {
        startWalk();
    } else {
        startForgetting();
    }
}

void AggregateTasks::startWalk()
{
    pool_->start([this, alive = std::weak_ptr(alive_), engine = engine_, loop = loop_,
                  url = walked_->id(), stop = stop_.get_token()] {
        const auto report = [&](const ScanProgress& progress) {
            loop->post([this, alive, progress] {
                if (!alive.expired() && walked_) {
                    walked_->report(progress);
                }
            });
        };
        std::optional<DirectoryStats> result;
        try {
            result = engine->stats(url, report, stop);
        } catch (...) {
            // Whatever it was, the row goes without a final size.
            result.reset();
        }
        loop->post([this, alive, result] {
            if (!alive.expired()) {
                ended(result);
            }
        });
    });
}

void AggregateTasks::startForgetting()
{
    pool_->start([this, alive = std::weak_ptr(alive_), engine = engine_, loop = loop_] {
        engine->invalidate();
        loop->post([this, alive] {
            if (!alive.expired()) {
                ended(std::nullopt);
            }
        });
    });
}

void AggregateTasks::ended(const std::optional<DirectoryStats>& result)
{
    isBusy_ = false;
    // The pool has its next piece before anybody hears of this one, whatever they then do.
    const std::shared_ptr<ScanNode> node = std::exchange(walked_, nullptr);
    startNext();
    if (node) {
        node->endComputing(result);
    }
}

}  // namespace gruk
