#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "core/browse/scan_engine.h"
#include "core/browse/scan_node.h"
#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"

namespace gruk {

/// The work that a session gives to its engine: walks for the nodes of a folder, and forgetting;
/// and looking again at what a folder holds.
///
/// The engine does one thing at a time, so at most one piece that is still wanted is on the pool,
/// and the next is started from the main thread when it has ended: a folder of many children never
/// holds more than one thread of the pool. A piece that was cancelled is waited for no longer,
/// since a disk that does not answer would end all sizes; its folder is not walked again until it
/// has come back, and with `mostHanging` of them nothing is started, so that the pool has threads
/// left for others. The main thread only.
class AggregateTasks {
public:
    using Listing = std::vector<FileEntry>;
    static constexpr std::size_t mostHanging = 2;

    AggregateTasks(std::shared_ptr<ScanEngine> engine, std::shared_ptr<TaskPool> pool,
                   std::shared_ptr<RunLoop> loop);
    /// Cancels everything.
    ~AggregateTasks();
    AggregateTasks(const AggregateTasks&) = delete;
    AggregateTasks& operator=(const AggregateTasks&) = delete;

    /// Walks for `node`, which is computing from now until its walk has ended, failed or been
    /// cancelled. What was asked for first is done first.
    void walk(const std::shared_ptr<ScanNode>& node);

    /// Ends every walk asked for so far: their nodes are not computing any more, and what one on
    /// the pool still finds reaches nobody.
    void cancelWalks();
    /// The same, and of every look.
    void cancel();

    /// Empties the engine's cache, after what was asked for before.
    void invalidate();

    /// Before any walk that has not begun: forgets what a change of `touched` made another, and
    /// then, if `look` is given, calls it and hands over what it found. A look that was asked for
    /// before and has not begun is dropped for it; a walk that runs where something was touched
    /// begins again.
    void renew(std::vector<FileURL> touched, std::function<Listing()> look,
               std::function<void(std::shared_ptr<const Listing>)> found);

private:
    enum class Kind { walk, look, forgetting };

    struct Piece {
        Kind kind = Kind::walk;
        /// What runs on the pool, told to stop by that token; what it yields runs on the main
        /// thread, unless the piece was cancelled.
        std::function<std::function<void()>(const std::stop_token&)> work;
        /// What is walked, and for which node; empty and none for others.
        std::string path = {};
        std::shared_ptr<ScanNode> node = {};
    };

    void cancelAll(std::initializer_list<Kind> kinds);
    void letGoOfRunning();
    void startNext();
    [[nodiscard]] Piece forgetting(std::function<void(ScanEngine&)> forget) const;
    [[nodiscard]] std::function<std::function<void()>(const std::stop_token&)>
    walkOf(const std::shared_ptr<ScanNode>& node);
    void ended(std::uint64_t number, const std::function<void()>& outcome);

    std::shared_ptr<ScanEngine> engine_;
    std::shared_ptr<TaskPool> pool_;
    std::shared_ptr<RunLoop> loop_;
    std::deque<Piece> waiting_;
    /// What is on the pool and waited for, and its number; 0 for nothing.
    Piece running_;
    std::uint64_t runningNumber_ = 0;
    std::uint64_t lastNumber_ = 0;
    /// What was cancelled and has not come back: numbers, and paths of walks.
    std::map<std::uint64_t, std::string> hanging_;
    std::stop_source stop_;
    /// Ends with this object; what the pool posts late asks for it.
    std::shared_ptr<const char> alive_ = std::make_shared<const char>();
};

}  // namespace gruk
