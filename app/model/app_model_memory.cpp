#include <algorithm>
#include <exception>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "app/model/model_copy.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// What looking at the store gave.
struct LookAtMemory {
    StoreShares shares;
    bool isDamaged = false;
};

LookAtMemory lookAtMemory(const SnapshotStore& store)
{
    try {
        return {store.shares(), false};
    } catch (const std::exception&) {
        return {{}, true};
    }
}

}  // namespace

QCoro::Task<> AppModel::loadMemory()
{
    const Lifetime::Watch self = lifetime_.watch();
    std::function<LookAtMemory()> look = [store = with_.snapshotStore] {
        return lookAtMemory(*store);
    };
    const LookAtMemory found =
        co_await inBackground(with_.taskPool, with_.runLoop, std::move(look));
    if (!self) {
        co_return;
    }
    PatrolMemory memory;
    memory.isDamaged = found.isDamaged;
    memory.bytes = static_cast<Bytes>(found.shares.fileBytes);
    for (const auto& [path, share] : found.shares.realms) {
        if (!isRealm(path)) {
            memory.forgettable.push_back({path, share.snapshots, static_cast<Bytes>(share.bytes)});
        }
    }
    std::ranges::stable_sort(memory.forgettable, std::ranges::greater(),
                             &PatrolMemory::Forgettable::bytes);
    assign(memory_, std::optional(std::move(memory)), &AppModel::memoryChanged);
}

QCoro::Task<bool> AppModel::forgetPatrols(std::string path)
{
    if (isRealm(path)) {
        complain(std::string(ModelCopy::memoryNotForgotten));
        co_return false;
    }
    if (forgetting_.contains(path)) {
        co_return false;
    }
    const Lifetime::Watch self = lifetime_.watch();
    const std::stop_token stop = forgetting_[path].get_token();
    std::function<bool()> forget = [path, stop, store = with_.snapshotStore] {
        store->forget(path, stop);
        return true;
    };
    std::optional<std::string> failure;
    try {
        co_await inBackground(with_.taskPool, with_.runLoop, std::move(forget));
    } catch (const CancelledError&) {
        failure = std::string(ModelCopy::memoryNotForgotten);
    } catch (const std::exception& error) {
        failure = ModelCopy::couldNotForget(describe(error));
    }
    if (!self) {
        co_return false;
    }
    forgetting_.erase(path);
    if (failure) {
        complain(failure);
    } else {
        if (mappedRoots_) {
            mappedRoots_->erase(path);
        }
        complain(std::nullopt);
        tell(ModelCopy::forgotten(FileURL(path).lastPathComponent()));
        // A place below a realm can be open without being one.
        if (activeRootURL_ && activeRootURL_->path() == path) {
            loadRealmHistory(*activeRootURL_);
        }
    }
    co_await loadMemory();
    co_return !failure;
}

void AppModel::revealMemory()
{
    reveal({with_.snapshotStore->fileURL()});
}

QCoro::Task<> AppModel::setMemoryAside()
{
    const Lifetime::Watch self = lifetime_.watch();
    std::function<std::optional<FileURL>()> setAside = [store = with_.snapshotStore] {
        return store->setAside();
    };
    try {
        const std::optional<FileURL> aside =
            co_await inBackground(with_.taskPool, with_.runLoop, std::move(setAside));
        if (!self) {
            co_return;
        }
        if (mappedRoots_ && aside) {
            mappedRoots_->clear();
        }
        complain(std::nullopt);
        tell(aside ? ModelCopy::memorySetAside(aside->lastPathComponent())
                   : std::string(ModelCopy::memoryIsSound));
    } catch (const std::exception& error) {
        if (!self) {
            co_return;
        }
        complain(ModelCopy::memoryNotSetAside(describe(error)), ErrorRemedy::damagedMemory);
    }
    markTerritoriesStale();
    if (activeRootURL_ && !isPatrolling_) {
        loadRealmHistory(*activeRootURL_);
    }
    co_await loadMemory();
}

}  // namespace gruk
