#include <algorithm>
#include <chrono>
#include <exception>
#include <map>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "core/automation/patrol_schedule.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

constexpr std::chrono::seconds dueCheckInterval{60};

using CaptureDates = std::map<std::string, Date, std::less<>>;

bool isDue(PatrolCadence cadence, const FileURL& root, const CaptureDates& lastPatrols, Date now)
{
    const auto last = lastPatrols.find(root.path());
    const std::optional<Date> due = PatrolSchedule::nextDue(
        cadence, last == lastPatrols.end() ? std::nullopt : std::optional(last->second), now);
    return due && now >= *due;
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
    const bool isAnyScheduled = std::ranges::any_of(
        grants_, [this](const Grant& grant) { return interval(cadence(grant)).has_value(); });
    if (isPatrolling_ || !isAnyScheduled) {
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
        if (isDue(cadence(grant), rootOf(grant), lastPatrols, now)) {
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
    const Lifetime::Watch self = lifetime_.watch();
    const FileURL url = rootOf(grant);
    std::shared_ptr<ScopedAccess> access = accessTo(url);
    if (!access) {
        co_return;
    }
    const std::optional<std::int64_t> found = co_await runPatrol(url, std::move(access));
    if (self && found) {
        tell(ModelCopy::automaticPatrolFinished(url.lastPathComponent(), *found));
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
    });
    markTerritoriesStale();
    realmWatchers_.erase(grant.id);
    if (cadence != PatrolCadence::standGuard) {
        return;
    }
    auto watcher = std::make_unique<RealmWatcher>(
        grant.path, with_.quietPeriod, [this, grant] { automaticPatrol(grant); },
        with_.eventStreams, with_.runLoop);
    watcher->start();
    realmWatchers_[grant.id] = std::move(watcher);
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
