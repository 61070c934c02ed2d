#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <stop_token>

#include "core/browse/scan_engine.h"
#include "core/browse/scan_node.h"
#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"

namespace gruk {

/// The work that a session gives to its engine: walks for the nodes of a folder, and forgetting.
///
/// The engine does one thing at a time, so at most one piece is on the pool, and the next is
/// started from the main thread when it has ended: a folder of many children never holds more
/// than one thread of the pool. The main thread only.
class AggregateTasks {
public:
    AggregateTasks(std::shared_ptr<ScanEngine> engine, std::shared_ptr<TaskPool> pool,
                   std::shared_ptr<RunLoop> loop);
    /// Cancels everything.
    ~AggregateTasks();
    AggregateTasks(const AggregateTasks&) = delete;
    AggregateTasks& operator=(const AggregateTasks&) = delete;

    /// Walks for `node`, which is computing from now until its walk has ended, failed or been
    /// cancelled. What was asked for first is done first.
    void walk(const std::shared_ptr<ScanNode>& node);

    /// Ends every walk asked for so far: their nodes are not computing any more, and what a walk
    /// on the pool still finds reaches nobody.
    void cancelWalks();

    /// Empties the engine's cache, after what was asked for before.
    void invalidate();

private:
    void startNext();
    void startWalk();
    void startForgetting();
    void ended(const std::optional<DirectoryStats>& result);

    std::shared_ptr<ScanEngine> engine_;
    std::shared_ptr<TaskPool> pool_;
    std::shared_ptr<RunLoop> loop_;
    /// Still to be started; none stands for forgetting.
    std::deque<std::shared_ptr<ScanNode>> waiting_;
    /// Whether a piece is on the pool, and for which node; none when forgetting, or cancelled.
    bool isBusy_ = false;
    std::shared_ptr<ScanNode> walked_;
    std::stop_source stop_;
    /// Ends with this object; what the pool posts late asks for it.
    std::shared_ptr<const char> alive_ = std::make_shared<const char>();
};

}  // namespace gruk
