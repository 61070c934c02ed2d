#include <algorithm>
#include <exception>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "platform/foundation/errors.h"

/// What is known of a realm stands in four files, and no system writes four at once. So the
/// settings first say what is to be carried where; the history goes, then the shield, then the
/// grant; and one last write of the settings carries the rules and takes the note away. A failure
/// before that puts back what has gone. What a killed program has left carries on at the next
/// start: each step takes what is still at the old path, and nothing when that has gone already.

namespace gruk {

namespace {

std::vector<UserDefaults::Move> settingsToCarry(const RealmRenaming& renaming)
{
    const FileURL from = FileURL::directory(renaming.from);
    const FileURL to = FileURL::directory(renaming.to);
    std::vector<UserDefaults::Move> moves = {
        {SettingKeys::realmRules(from), SettingKeys::realmRules(to)},
        {SettingKeys::organiseOverrides(from), SettingKeys::organiseOverrides(to)}};
    if (renaming.cadenceOf) {
        moves.emplace_back(SettingKeys::cadence(*renaming.cadenceOf),
                           SettingKeys::cadence(renaming.grant));
    }
    return moves;
}

}  // namespace

QCoro::Task<> AppModel::renameRealm(Grant grant, FileURL place)
{
    const Lifetime::Watch self = lifetime_.watch();
    if (const std::optional<RealmRenaming> begun = pendingRenaming(grant.id)) {
        // What it has carried already is at that place, and nowhere else.
        co_await carryOver(*begun, Attempt::resumed);
        const bool isDone = self && !pendingRenaming(grant.id);
        if (!isDone || begun->to == place.standardized().path()) {
            co_return;
        }
    }
    const auto current = std::ranges::find(grants_, grant.id, &Grant::id);
    if (current == grants_.end()) {
        co_return;
    }
    RealmRenaming renaming;
    renaming.grant = grant.id;
    renaming.from = FileURL::directory(current->path).standardized().path();
    renaming.to = place.standardized().path();
    const auto other = std::ranges::find_if(grants_, [&](const Grant& each) {
        return FileURL::directory(each.path).standardized().path() == renaming.to;
    });
    if (other != grants_.end() && cadence(*current) == PatrolCadence::off) {
        renaming.cadenceOf = other->id;
    }
    try {
        renaming.bookmark = with_.grantStore->bookmarkAt(*current, place);
        with_.preferences->setTextDictionary(SettingKeys::renaming(grant.id),
                                             renamingSetting(renaming));
    } catch (const std::exception& error) {
        endRenaming(renaming, describe(error), true);
        co_return;
    }
    co_await carryOver(renaming, Attempt::first);
}

std::optional<RealmRenaming> AppModel::pendingRenaming(const UUID& grant) const
{
    const auto setting = with_.preferences->textDictionary(SettingKeys::renaming(grant));
    return setting ? renamingFrom(grant, *setting) : std::nullopt;
}

void AppModel::finishRenamings()
{
    const std::vector<Grant> grants = grants_;
    for (const Grant& grant : grants) {
        if (const std::optional<RealmRenaming> begun = pendingRenaming(grant.id)) {
            carryOver(*begun, Attempt::resumed);
        }
    }
}

QCoro::Task<> AppModel::carryOver(RealmRenaming renaming, Attempt attempt)
{
    if (!renaming_.insert(renaming.grant).second) {
        co_return;
    }
    const Lifetime::Watch self = lifetime_.watch();
    std::function<std::vector<UUID>()> carryHistory = [renaming, store = with_.snapshotStore] {
        return store->move(renaming.from, renaming.to);
    };
    std::optional<std::string> failure;
    bool isUndone = true;
    std::vector<UUID> carried;
    try {
        carried = co_await inBackground(with_.taskPool, with_.runLoop, std::move(carryHistory));
    } catch (const std::exception& error) {
        failure = describe(error);
    }
    if (!self) {
        co_return;
    }
    if (!failure) {
        failure = carrySmallThings(renaming, isUndone);
    }
    // What an earlier attempt has carried cannot be told from what was there before.
    isUndone = isUndone && attempt == Attempt::first;
    if (failure && isUndone && !carried.empty()) {
        std::function<bool()> giveBack = [renaming, carried, store = with_.snapshotStore] {
            store->moveBack(carried, renaming.to, renaming.from);
            return true;
        };
        try {
            isUndone = co_await inBackground(with_.taskPool, with_.runLoop, std::move(giveBack));
        } catch (const std::exception&) {
            isUndone = false;
        }
        if (!self) {
            co_return;
        }
    }
    renaming_.erase(renaming.grant);
    if (failure) {
        endRenaming(renaming, *failure, isUndone);
        co_return;
    }
    co_await showRenamed(renaming);
}

std::optional<std::string> AppModel::carrySmallThings(const RealmRenaming& renaming, bool& isUndone)
{
    RealmIdentityStore& shields = *with_.realmIdentityStore;
    GrantStore& grants = *with_.grantStore;
    const IdentityOverrides formerShields = shields.overrides();
    const std::vector<Grant> formerGrants = grants.grants();
    try {
        shields.moveOverride(renaming.from, renaming.to);
        grants.moveGrant(renaming.grant, FileURL::directory(renaming.to), renaming.bookmark);
        with_.preferences->move(settingsToCarry(renaming), SettingKeys::renaming(renaming.grant));
        return std::nullopt;
    } catch (const std::exception& error) {
        try {
            if (grants.grants() != formerGrants) {
                grants.putBack(formerGrants);
            }
            if (shields.overrides() != formerShields) {
                shields.putBack(formerShields);
            }
        } catch (const std::exception&) {
            isUndone = false;
        }
        return describe(error);
    }
}

void AppModel::endRenaming(const RealmRenaming& renaming, const std::string& failure, bool isUndone)
{
    with_.log(ModelCopy::regrantFailedLog(renaming.from, failure));
    if (isUndone) {
        save([&](UserDefaults& settings) {
            settings.remove(SettingKeys::renaming(renaming.grant));
        });
    }
    rereadGrants();
    Q_EMIT realmIdentityStoreChanged();
    complain(isUndone ? ModelCopy::realmNotRenamed(failure)
                      : ModelCopy::renamingUnfinished(FileURL(renaming.to).lastPathComponent(),
                                                      failure));
}

QCoro::Task<> AppModel::showRenamed(RealmRenaming renaming)
{
    const Lifetime::Watch self = lifetime_.watch();
    // Its own guard goes with the grant; one that comes with a cadence is set anew.
    const bool takesGuard = renaming.cadenceOf && realmWatchers_.contains(*renaming.cadenceOf);
    rereadGrants();
    Q_EMIT realmIdentityStoreChanged();
    const auto grant = std::ranges::find(grants_, renaming.grant, &Grant::id);
    if (takesGuard && grant != grants_.end()) {
        setCadence(cadence(*grant), Grant(*grant));
    }
    const FileURL from = FileURL::directory(renaming.from);
    const FileURL to = FileURL::directory(renaming.to);
    if (mappedRoots_ && mappedRoots_->erase(renaming.from) > 0) {
        mappedRoots_->insert(renaming.to);
    }
    if (activeRootURL_ == from) {
        co_await selectRealm(to);
    } else if (activeRootURL_ == to) {
        loadRealmHistory(to);
    }
    if (self) {
        complain(std::nullopt);
        tell(ModelCopy::realmRenamed(from.lastPathComponent(), to.lastPathComponent()));
    }
}

}  // namespace gruk
