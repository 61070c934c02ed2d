#include <algorithm>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/model_copy.h"
#include "platform/files/real_place.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

OpenPanelRequest panelRequest(std::string_view prompt, std::optional<FileURL> startingDirectory)
{
    return {std::string(ModelCopy::openPanelMessage), std::string(prompt),
            std::move(startingDirectory)};
}

}  // namespace

QCoro::Task<> AppModel::grantRealm()
{
    const Lifetime::Watch self = lifetime_.watch();
    const std::optional<FileURL> chosen = co_await with_.openPanel->chooseDirectory(
        panelRequest(ModelCopy::grantAccessPrompt, std::nullopt));
    if (self && chosen) {
        co_await addRealm(*chosen, Freshness::territoriesGoStale);
    }
}

bool AppModel::couldBeRealm(const FileURL& place)
{
    const auto identity = TrashService::currentIdentity(FileURL(place.path()));
    return !identity || identity->kind == FileIdentity::Kind::directory
           || identity->kind == FileIdentity::Kind::symbolicLink;
}

QCoro::Task<> AppModel::grantRealm(FileURL url)
{
    if (!couldBeRealm(url)) {
        complain(ModelCopy::notAFolder(url.lastPathComponent()));
        co_return;
    }
    co_await addRealm(std::move(url), Freshness::territoriesGoStale);
}

QCoro::Task<> AppModel::grantDesktop()
{
    const Lifetime::Watch self = lifetime_.watch();
    const std::optional<FileURL> chosen = co_await with_.openPanel->chooseDirectory(
        panelRequest(ModelCopy::grantDesktopPrompt, with_.desktopDirectory().standardized()));
    if (self && chosen) {
        co_await addRealm(*chosen, Freshness::territoriesStay);
    }
}

QCoro::Task<> AppModel::addRealm(FileURL url, Freshness freshness)
{
    // Through a link, a walk would find nothing that it may enter.
    const FileURL place = realPlace(url);
    if (const std::optional<Grant> lost =
            isRealm(place.standardized().path()) ? std::nullopt : lostRealmAt(place)) {
        const Lifetime::Watch self = lifetime_.watch();
        co_await renameRealm(*lost, place);
        if (self && isRealm(place.standardized().path())) {
            co_await selectRealm(place);
        }
        co_return;
    }
    try {
        const Grant grant = with_.grantStore->addGrant(place);
        const bool isKnown = std::ranges::find(grants_, grant.id, &Grant::id) != grants_.end();
        if (isKnown && !isConnected(grant)) {
            // The store knows the place by a directory that has gone from it. The user has shown
            // the one that is meant now.
            with_.grantStore->replaceGrant(grant.id, place);
        }
    } catch (const std::exception& error) {
        with_.log(ModelCopy::grantFailedLog(url.path(), describe(error)));
        // One that could not be saved is in the list until the program ends.
        rereadGrants(Freshness::territoriesStay);
        complainOfGrant(place, error);
        co_return;
    }
    rereadGrants(freshness);
    co_await selectRealm(place);
}

void AppModel::complainOfGrant(const FileURL& url, const std::exception& error)
{
    complain(isRealm(url.standardized().path())
                 ? ModelCopy::grantNotSaved(url.standardized().lastPathComponent(), describe(error))
                 : ModelCopy::grantFailed(describe(error)));
}

std::optional<Grant> AppModel::lostRealmAt(const FileURL& url) const
{
    for (const Grant& grant : grants_) {
        if (isConnected(grant)) {
            continue;
        }
        try {
            static_cast<void>(with_.grantStore->bookmarkAt(grant, url));
            return grant;
        } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): another folder
        }
    }
    return std::nullopt;
}

bool AppModel::isRealm(std::string_view path) const
{
    return std::ranges::any_of(grants_, [&](const Grant& grant) {
        return FileURL::directory(grant.path).standardized().path() == path;
    });
}

std::optional<FileURL> AppModel::nowCalled(const Grant& grant) const
{
    std::optional<FileURL> place = with_.grantStore->whereabouts(grant);
    const bool isElsewhere =
        place
        && place->standardized().path() != FileURL::directory(grant.path).standardized().path();
    return isElsewhere ? place : std::nullopt;
}

QCoro::Task<> AppModel::regrantRealm(Grant grant)
{
    const Lifetime::Watch self = lifetime_.watch();
    try {
        with_.grantStore->refreshGrant(grant);
        rereadGrants();
        // A directory that is found under another name is not back at the realm's place yet.
        if (isConnected(grant)) {
            co_return;
        }
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the user is asked instead
    }
    const std::optional<FileURL> chosen = co_await with_.openPanel->chooseDirectory(
        panelRequest(ModelCopy::grantAccessPrompt, FileURL::directory(grant.path)));
    if (self && chosen) {
        co_await replaceGrant(grant, realPlace(*chosen));
    }
}

QCoro::Task<> AppModel::replaceGrant(Grant grant, FileURL url)
{
    const bool isElsewhere =
        url.standardized().path() != FileURL::directory(grant.path).standardized().path();
    const std::optional<Grant> lost = isElsewhere ? lostRealmAt(url) : std::nullopt;
    if (lost && lost->id == grant.id) {
        co_await renameRealm(grant, url);
        co_return;
    }
    try {
        if (with_.grantStore->addGrant(url).id == grant.id) {
            // The same place again: the store keeps the grant that it has, whose bookmark is the
            // one that leads nowhere.
            with_.grantStore->replaceGrant(grant.id, url);
        } else {
            with_.grantStore->removeGrant(grant.id);
        }
    } catch (const std::exception& error) {
        with_.log(ModelCopy::regrantFailedLog(grant.path, describe(error)));
        rereadGrants(Freshness::territoriesStay);
        complain(ModelCopy::grantFailed(describe(error)));
        co_return;
    }
    rereadGrants();
}

void AppModel::removeRealm(Grant grant)
{
    with_.grantStore->removeGrant(grant.id);
    rereadGrants();
    if (activeRootURL_
        && activeRootURL_->path() == FileURL::directory(grant.path).standardized().path()) {
        clearActiveRealm();
    }
}

void AppModel::rereadGrants(Freshness freshness)
{
    const std::vector<Grant> former = grants_;
    assign(grants_, with_.grantStore->grants(), &AppModel::grantsChanged);
    renewGuards(former);
    for (auto& [path, stop] : forgetting_) {
        if (isRealm(path)) {
            stop.request_stop();
        }
    }
    if (freshness == Freshness::territoriesGoStale) {
        markTerritoriesStale();
    }
}

}  // namespace gruk
