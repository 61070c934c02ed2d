#include "core/browse/aggregate_tasks.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "core/browse/touched_places.h"

namespace gruk {

AggregateTasks::AggregateTasks(std::shared_ptr<ScanEngine> engine, std::shared_ptr<TaskPool> pool,
                               std::shared_ptr<RunLoop> loop)
    : engine_(std::move(engine)), pool_(std::move(pool)), loop_(std::move(loop))
{
}

AggregateTasks::~AggregateTasks()
{
    alive_.reset();
    cancel();
}

void AggregateTasks::walk(const std::shared_ptr<ScanNode>& node)
{
    waiting_.push_back({Kind::walk, walkOf(node), node->id().standardized().path(), node});
    node->beginComputing();
    startNext();
}

void AggregateTasks::cancelWalks()
{
    cancelAll({Kind::walk});
}

void AggregateTasks::cancel()
{
    cancelAll({Kind::walk, Kind::look});
}

/// Forgetting is never among them: it stays asked for.
void AggregateTasks::cancelAll(std::initializer_list<Kind> kinds)
{
    const auto isOne = [&](const Piece& piece) {
        return std::ranges::count(kinds, piece.kind) > 0;
    };
    std::vector<std::shared_ptr<ScanNode>> cancelled;
    if (runningNumber_ != 0 && isOne(running_)) {
        cancelled.push_back(running_.node);
        letGoOfRunning();
    }
    std::deque<Piece> kept;
    for (Piece& piece : waiting_) {
        if (isOne(piece)) {
            cancelled.push_back(std::move(piece.node));
        } else {
            kept.push_back(std::move(piece));
        }
    }
    waiting_ = std::move(kept);
    startNext();
    for (const std::shared_ptr<ScanNode>& node : cancelled) {
        if (node) {
            node->endComputing(std::nullopt);
        }
    }
}

/// Tells what is on the pool to stop, and waits for it no longer.
void AggregateTasks::letGoOfRunning()
{
    stop_.request_stop();
    stop_ = std::stop_source();
    hanging_.emplace(std::exchange(runningNumber_, 0), running_.path);
    running_ = {};
}

void AggregateTasks::invalidate()
{
    waiting_.push_back(forgetting([](ScanEngine& engine) { engine.invalidate(); }));
    startNext();
}

void AggregateTasks::renew(std::vector<FileURL> touched, std::function<Listing()> look,
                           std::function<void(std::shared_ptr<const Listing>)> found)
{
    if (runningNumber_ != 0 && running_.kind == Kind::walk
        && TouchedPlaces(touched).reach(running_.path)) {
        // What it finds is to be forgotten; its node waits for another walk.
        const std::shared_ptr<ScanNode> node = running_.node;
        letGoOfRunning();
        waiting_.push_front({Kind::walk, walkOf(node), node->id().standardized().path(), node});
    }
    if (look) {
        std::erase_if(waiting_, [](const Piece& piece) { return piece.kind == Kind::look; });
        waiting_.push_front({Kind::look, [look = std::move(look),
                                          found = std::move(found)](const std::stop_token&) {
                                 auto listing = std::make_shared<const Listing>(look());
                                 return [found, listing = std::move(listing)] { found(listing); };
                             }});
    }
    waiting_.push_front(forgetting(
        [touched = std::move(touched)](ScanEngine& engine) { engine.invalidateAround(touched); }));
    startNext();
}

AggregateTasks::Piece AggregateTasks::forgetting(std::function<void(ScanEngine&)> forget) const
{
    Piece piece;
    piece.kind = Kind::forgetting;
    piece.work = [forget = std::move(forget), engine = engine_](const std::stop_token&) {
        forget(*engine);
        return std::function<void()>();
    };
    return piece;
}

std::function<std::function<void()>(const std::stop_token&)>
AggregateTasks::walkOf(const std::shared_ptr<ScanNode>& node)
{
    return [this, alive = std::weak_ptr(alive_), engine = engine_, loop = loop_, url = node->id(),
            walked = std::weak_ptr(node)](const std::stop_token& stop) {
        const auto report = [&](const ScanProgress& progress) {
            loop->post([this, alive, walked, progress] {
                // Not of a walk that was cancelled.
                const auto reporting = walked.lock();
                if (!alive.expired() && reporting && running_.node == reporting) {
                    reporting->report(progress);
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
        return [walked, result] {
            if (const auto ending = walked.lock()) {
                ending->endComputing(result);
            }
        };
    };
}

void AggregateTasks::startNext()
{
    if (!alive_ || runningNumber_ != 0 || hanging_.size() >= mostHanging) {
        return;
    }
    const auto hangs = [this](const Piece& piece) {
        return piece.node && std::ranges::any_of(hanging_, [&](const auto& each) {
                   return each.second == piece.path;
               });
    };
    const auto next = std::ranges::find_if_not(waiting_, hangs);
    if (next == waiting_.end()) {
        return;
    }
    running_ = std::move(*next);
    waiting_.erase(next);
    runningNumber_ = ++lastNumber_;
    pool_->start([this, alive = std::weak_ptr(alive_), loop = loop_, work = running_.work,
                  number = runningNumber_, stop = stop_.get_token()] {
        std::function<void()> outcome = work(stop);
        loop->post([this, alive, number, outcome = std::move(outcome)] {
            if (!alive.expired()) {
                ended(number, outcome);
            }
        });
    });
}

void AggregateTasks::ended(std::uint64_t number, const std::function<void()>& outcome)
{
    if (hanging_.erase(number) > 0) {
        startNext();
        return;
    }
    runningNumber_ = 0;
    const Piece piece = std::exchange(running_, {});
    if (piece.kind == Kind::look) {
        // What it found takes the place of the walks that wait. Whoever hears of it may end us.
        const std::weak_ptr alive(alive_);
        outcome();
        if (!alive.expired()) {
            startNext();
        }
        return;
    }
    // The pool has its next piece before anybody hears of this one, whatever they then do.
    startNext();
    if (outcome) {
        outcome();
    }
}

}  // namespace gruk
