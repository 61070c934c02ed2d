#include <algorithm>
#include <chrono>
#include <exception>
#include <map>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

constexpr std::chrono::seconds dueCheckInterval{60};

using CaptureDates = std::map<std::string, Date, std::less<>>;

std::optional<Date> lastOf(const FileURL& root, const CaptureDates& lastPatrols)
{
    const auto last = lastPatrols.find(root.path());
    return last == lastPatrols.end() ? std::nullopt : std::optional(last->second);
}

FileURL rootOf(const Grant& grant)
{
    return FileURL::directory(FileURL::directory(grant.path).standardized().path());
}

}  // namespace

void AppModel::startTimer()
{
    automationTimer_ = with_.runLoop->every(dueCheckInterval, [this] { patrolDueRealms(); });
}

QCoro::Task<> AppModel::patrolDueRealms()
{
    for (const auto& [id, watcher] : realmWatchers_) {
        // One that the system refused before.
        watcher->start();
    }
    const bool mayAnyComeDue = std::ranges::any_of(grants_, [this](const Grant& grant) {
        const PatrolCadence cadence = this->cadence(grant);
        return cadence != PatrolCadence::off && automaticPatrolsOf(grant).mayComeDue(cadence);
    });
    if (isPatrolling_ || !mayAnyComeDue) {
        co_return;
    }
    const Lifetime::Watch self = lifetime_.watch();
    const Date now = with_.runLoop->now();
    // The whole store in one look, and not on this thread.
    std::function<CaptureDates()> look = [store = with_.snapshotStore] {
        try {
            return store->lastCaptures();
        } catch (const std::exception&) {
            return CaptureDates();
        }
    };
    const CaptureDates lastPatrols =
        co_await inBackground(with_.taskPool, with_.runLoop, std::move(look));
    if (!self || isPatrolling_) {
        co_return;
    }
    for (const Grant& grant : grants_) {
        const PatrolCadence cadence = this->cadence(grant);
        if (cadence != PatrolCadence::off
            && automaticPatrolsOf(grant).isDue(cadence, lastOf(rootOf(grant), lastPatrols), now)) {
            co_await automaticPatrol(grant);
            co_return;
        }
    }
}

QCoro::Task<> AppModel::automaticPatrol(Grant grant)
{
    if (isPatrolling_) {
        co_return;
    }
    automaticPatrolsOf(grant).begun();
    const Lifetime::Watch self = lifetime_.watch();
    const FileURL url = rootOf(grant);
    std::shared_ptr<ScopedAccess> access = accessTo(url);
    if (!access) {
        co_return;
    }
    const std::optional<std::int64_t> found = co_await runPatrol(url, std::move(access));
    if (!self) {
        co_return;
    }
    noteEndOfPatrol(url, Asking::unasked);
    if (found) {
        tell(ModelCopy::automaticPatrolFinished(url.lastPathComponent(), *found));
    }
}

AutomaticPatrols& AppModel::automaticPatrolsOf(const Grant& grant)
{
    const auto known = automaticPatrols_.find(grant.id);
    if (known != automaticPatrols_.end()) {
        return known->second;
    }
    const auto stopped = with_.preferences->text(SettingKeys::patrolStopped(grant));
    return automaticPatrols_
        .emplace(grant.id, AutomaticPatrols(stopped ? iso8601::parse(*stopped) : std::nullopt))
        .first->second;
}

void AppModel::noteEndOfPatrol(const FileURL& url, Asking asking)
{
    const Date now = with_.runLoop->now();
    for (const Grant& grant : grants_) {
        if (rootOf(grant) != url) {
            continue;
        }
        AutomaticPatrols& patrols = automaticPatrolsOf(grant);
        const bool wasStopped = patrols.stoppedAt().has_value();
        const bool isUnasked = asking == Asking::unasked;
        // One by the clock would begin again at once what the user has just stopped.
        const bool stopCounts = isUnasked || interval(cadence(grant));
        if (lastPatrolEnd_ == PatrolEnd::success) {
            patrols.succeeded();
        } else if (lastPatrolEnd_ == PatrolEnd::stop && stopCounts) {
            patrols.stopped(now);
        } else if (lastPatrolEnd_ == PatrolEnd::failure && isUnasked) {
            patrols.failed(cadence(grant), now);
        }
        if (wasStopped || patrols.stoppedAt()) {
            save([&](UserDefaults& settings) {
                const std::string key = SettingKeys::patrolStopped(grant);
                if (const std::optional<Date> stopped = patrols.stoppedAt()) {
                    settings.setText(key, iso8601::text(*stopped));
                } else {
                    settings.remove(key);
                }
            });
        }
    }
}

PatrolCadence AppModel::cadence(const Grant& grant) const
{
    const auto raw = with_.preferences->text(SettingKeys::cadence(grant));
    return (raw ? patrolCadence(*raw) : std::nullopt).value_or(PatrolCadence::off);
}

void AppModel::setCadence(PatrolCadence cadence, const Grant& grant)
{
    // Nothing would ever end the guard of a grant that is gone.
    if (std::ranges::find(grants_, grant.id, &Grant::id) == grants_.end()) {
        return;
    }
    save([&](UserDefaults& settings) {
        settings.setText(SettingKeys::cadence(grant), std::string(rawString(cadence)));
        settings.remove(SettingKeys::patrolStopped(grant));
    });
    markTerritoriesStale();
    // Whoever sets it means it from now on.
    automaticPatrols_.erase(grant.id);
    realmWatchers_.erase(grant.id);
    if (cadence == PatrolCadence::standGuard) {
        guard(grant);
    }
}

void AppModel::guard(const Grant& grant)
{
    auto watcher = std::make_unique<RealmWatcher>(
        grant.path, with_.quietPeriod, [this, id = grant.id] { guardSettled(id); },
        with_.eventStreams, with_.runLoop);
    watcher->start();
    realmWatchers_[grant.id] = std::move(watcher);
}

void AppModel::guardSettled(const UUID& id)
{
    const auto grant = std::ranges::find(grants_, id, &Grant::id);
    if (isPatrolling_ || grant == grants_.end()) {
        return;
    }
    AutomaticPatrols& patrols = automaticPatrolsOf(*grant);
    patrols.settled();
    if (patrols.isDue(PatrolCadence::standGuard, std::nullopt, with_.runLoop->now())) {
        automaticPatrol(*grant);
    }
}

void AppModel::renewGuards(const std::vector<Grant>& formerGrants)
{
    const auto isGone = [this](const auto& entry) {
        return std::ranges::find(grants_, entry.first, &Grant::id) == grants_.end();
    };
    // The cadence goes with the grant that it was set for, and so does the guard.
    std::erase_if(realmWatchers_, isGone);
    std::erase_if(automaticPatrols_, isGone);
    for (const Grant& grant : grants_) {
        // One that leads to another directory now is guarded there.
        if (realmWatchers_.contains(grant.id)
            && std::ranges::find(formerGrants, grant) == formerGrants.end()) {
            guard(grant);
        }
    }
}

std::vector<RealmRule> AppModel::realmRules(const FileURL& realm) const
{
    const auto stored = with_.preferences->data(SettingKeys::realmRules(realm));
    const auto rules = stored ? RealmRules::decoded(*stored) : std::nullopt;
    return rules.value_or(std::vector<RealmRule>());
}

void AppModel::addRealmRule(FileKind kind, const std::string& folderName, bool applyAfterPatrol,
                            const FileURL& realm)
{
    std::vector<RealmRule> rules = realmRules(realm);
    if (rules.size() >= RealmRules::maximumRulesPerRealm) {
        return;
    }
    rules.push_back({UUID::random(), kind, folderName, applyAfterPatrol});
    saveRealmRules(rules, realm);
}

void AppModel::saveRealmRules(const std::vector<RealmRule>& rules, const FileURL& realm)
{
    save([&](UserDefaults& settings) {
        settings.setData(SettingKeys::realmRules(realm), RealmRules::encoded(rules));
    });
    if (pendingRuleFilingPlan_) {
        // What is offered is what the rules say now.
        assign(pendingRuleFilingPlan_, underPresentRules(pendingRuleFilingPlan_),
               &AppModel::pendingRuleFilingPlanChanged);
    }
}

void AppModel::setLaunchAtLogin(bool enabled)
{
    try {
        if (enabled) {
            with_.loginItem.enable();
        } else {
            with_.loginItem.disable();
        }
        assign(launchAtLogin_, enabled, &AppModel::launchAtLoginChanged);
    } catch (const std::exception& error) {
        with_.log(ModelCopy::launchAtLoginFailedLog(enabled ? "register" : "unregister",
                                                    describe(error)));
    }
}

void AppModel::save(const std::function<void(UserDefaults&)>& write)
{
    try {
        write(*with_.preferences);
    } catch (const std::exception& error) {
        with_.log(ModelCopy::settingNotSavedLog(describe(error)));
    }
}

}  // namespace gruk
