#include <algorithm>
#include <exception>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/failure_log.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "platform/files/real_place.h"

namespace gruk {

namespace {

/// The folder that an operation worked in: of an organise the realm that it names, of a Hoard the
/// folder that holds it. Below it no link is followed on the way back, whichever realm is open.
std::optional<FileURL> rootOfUndo(const StashOperation& operation)
{
    if (!operation.hoardFolder || operation.moved.empty()) {
        return std::nullopt;
    }
    const FileURL& folder = *operation.hoardFolder;
    return isInsideRoot(operation.moved.front().originalURL, folder)
               ? folder
               : folder.deletingLastPathComponent();
}

/// Where something came or went when these items moved.
std::vector<FileURL> touchedByMoves(const std::vector<StashedItem>& items)
{
    std::vector<FileURL> places;
    for (const StashedItem& item : items) {
        places.push_back(item.originalURL);
        places.push_back(item.stashedURL);
    }
    return places;
}

}  // namespace

std::optional<FileURL> AppModel::grantedDesktopURL() const
{
    const FileURL desktop = FileURL::directory(with_.desktopDirectory().standardized().path());
    // Where it is a link, what it leads to is what was granted.
    for (const FileURL& place : {realPlace(desktop), desktop}) {
        if (accessTo(place)) {
            return place;
        }
    }
    return std::nullopt;
}

std::size_t AppModel::stashableCount(const FileURL& desktop) const
{
    return with_.stashService->stashableCount(desktop);
}

std::string AppModel::proposedHoardName(const FileURL& desktop) const
{
    return with_.stashService->proposedHoardName(desktop);
}

void AppModel::tidyDesktop()
{
    const std::optional<FileURL> desktop = grantedDesktopURL();
    const std::shared_ptr<ScopedAccess> access = desktop ? accessTo(*desktop) : nullptr;
    if (!access) {
        return complain(std::string(ModelCopy::noAccessToDesktop));
    }
    const StashOperation operation =
        with_.stashService->stashDesktop(*desktop, access->url(), access->stands());
    log(operation.failures);
    const std::size_t moved = operation.moved.size();
    assign(lastStashOperation_, moved == 0 ? std::nullopt : std::optional(operation),
           &AppModel::lastStashOperationChanged);
    session().renew(touchedByMoves(operation.moved));
    if (operation.failures.empty()) {
        tell(moved == 0 ? std::string(ModelCopy::nothingToTidy) : ModelCopy::desktopIsClear(moved));
        complain(std::nullopt);
    } else if (moved == 0) {
        complain(std::string(ModelCopy::couldNotTidy));
    } else {
        tell(ModelCopy::desktopIsPartlyClear(moved));
        complain(ModelCopy::itemsNotMoved(operation.failures.size()));
    }
}

void AppModel::undoLastStash()
{
    const std::optional<FileURL> desktop = lastStashOperation_ ? grantedDesktopURL() : std::nullopt;
    if (desktop && accessTo(*desktop)) {
        undoMoves(lastStashOperation_, &AppModel::lastStashOperationChanged);
    }
}

void AppModel::undoLastOrganise()
{
    const bool isPossible = lastOrganiseOperation_ && activeRootURL_;
    if (isPossible && accessTo(*activeRootURL_)) {
        undoMoves(lastOrganiseOperation_, &AppModel::lastOrganiseOperationChanged);
    }
}

void AppModel::undoMoves(UndoSlot& slot, void (AppModel::*changed)())
{
    const StashOperation former = *slot;
    const std::optional<FileURL> root = rootOfUndo(former);
    // None also of a realm that was removed from the list; its files may go back all the same.
    const std::shared_ptr<ScopedAccess> access = root ? accessTo(*root) : nullptr;
    const StashRestoreOperation operation =
        with_.stashService->restore(former.moved, root, access ? access->stands() : RootCheck());
    log(operation.failures);

    StashOperation left{former.hoardFolder, {}, {}};
    std::ranges::copy_if(
        former.moved, std::back_inserter(left.moved), [&](const StashedItem& item) {
            return std::ranges::find(operation.restored, item) == operation.restored.end();
        });
    assign(slot, left.moved.empty() ? std::nullopt : std::optional(std::move(left)), changed);
    session().renew(touchedByMoves(operation.restored));
    if (operation.failures.empty()) {
        tell(std::string(ModelCopy::everythingIsBack));
        complain(std::nullopt);
    } else {
        tell(operation.restored.empty()
                 ? std::nullopt
                 : std::optional(ModelCopy::itemsPutBack(operation.restored.size())));
        complain(std::string(ModelCopy::someCouldNotBePutBack));
    }
}

std::optional<OrganisePlan> AppModel::organisePlanForActiveRealm() const
{
    return activeRootURL_ ? organisePlan(*activeRootURL_) : std::nullopt;
}

std::optional<OrganisePlan> AppModel::organisePlanForDesktop() const
{
    const std::optional<FileURL> desktop = grantedDesktopURL();
    return desktop ? organisePlan(*desktop) : std::nullopt;
}

std::optional<OrganisePlan> AppModel::organisePlan(const FileURL& realm) const
{
    const std::shared_ptr<ScopedAccess> access = accessTo(realm);
    return access ? std::optional(with_.organiseService->planOrganise(
               realm, access->url(), overrides(realm), access->stands()))
                  : std::nullopt;
}

FolderOverrides AppModel::overrides(const FileURL& realm) const
{
    FolderOverrides result;
    const auto stored = with_.preferences->textDictionary(SettingKeys::organiseOverrides(realm));
    if (stored) {
        for (const auto& [raw, name] : *stored) {
            if (const std::optional<FileKind> kind = fileKind(raw)) {
                result[*kind] = name;
            }
        }
    }
    for (auto& [kind, name] : RealmRules::folderOverrides(realmRules(realm))) {
        result[kind] = name;
    }
    return result;
}

void AppModel::saveOrganiseOverride(const std::string& folderName, FileKind kind,
                                    const FileURL& realm)
{
    const std::string key = SettingKeys::organiseOverrides(realm);
    auto stored = with_.preferences->textDictionary(key);
    auto names = stored ? *std::move(stored) : std::map<std::string, std::string>();
    names[std::string(rawString(kind))] = folderName;
    save([&](UserDefaults& settings) { settings.setTextDictionary(key, names); });
}

void AppModel::organise(const OrganisePlan& plan)
{
    const std::shared_ptr<ScopedAccess> access = accessTo(plan.realm);
    if (!access) {
        return complain(std::string(ModelCopy::noAccessToOrganise));
    }
    const StashOperation operation =
        with_.organiseService->applyPlan(plan, access->url(), access->stands());
    log(operation.failures);
    const std::size_t moved = operation.moved.size();
    assign(lastOrganiseOperation_, moved == 0 ? std::nullopt : std::optional(operation),
           &AppModel::lastOrganiseOperationChanged);
    session().renew(touchedByMoves(operation.moved));
    if (operation.failures.empty()) {
        tell(ModelCopy::realmIsTidied(moved, plan.moves.size()));
        complain(std::nullopt);
    } else if (moved == 0) {
        complain(std::string(ModelCopy::couldNotOrganise));
    } else {
        tell(ModelCopy::realmIsPartlyTidied(moved, plan.moves.size()));
        complain(ModelCopy::itemsNotMoved(operation.failures.size()));
    }
}

std::optional<OrganisePlan> AppModel::underPresentRules(std::optional<OrganisePlan> filing) const
{
    if (!filing) {
        return std::nullopt;
    }
    const std::vector<RealmRule> rules = RealmRules::afterPatrol(realmRules(filing->realm));
    return RealmRules::stillRuled(*std::move(filing), rules);
}

void AppModel::filePendingRuleMatches()
{
    if (!pendingRuleFilingPlan_) {
        return;
    }
    const std::optional<OrganisePlan> plan = underPresentRules(pendingRuleFilingPlan_);
    // First, so that the banner goes at once.
    assign(pendingRuleFilingPlan_, std::nullopt, &AppModel::pendingRuleFilingPlanChanged);
    if (plan) {
        organise(*plan);
    }
}

void AppModel::saveShield(const RealmIdentity& identity, std::string_view path)
{
    changeShields([&] { with_.realmIdentityStore->setOverride(identity, path); },
                  ModelCopy::shieldNotSaved);
}

void AppModel::resetShield(std::string_view path)
{
    changeShields([&] { with_.realmIdentityStore->clearOverride(path); },
                  ModelCopy::shieldNotReset);
}

void AppModel::changeShields(const std::function<void()>& change, std::string_view failure)
{
    try {
        change();
        complain(std::nullopt);
    } catch (const std::exception&) {
        complain(std::string(failure));
    }
    Q_EMIT realmIdentityStoreChanged();
}

}  // namespace gruk
