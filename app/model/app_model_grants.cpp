#include <utility>

#include "app/model/app_model.h"
#include "app/model/model_copy.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

OpenPanelRequest panelRequest(std::optional<FileURL> startingDirectory)
{
    return {std::string(ModelCopy::openPanelMessage), std::string(ModelCopy::grantAccessPrompt),
            std::move(startingDirectory)};
}

}  // namespace

QCoro::Task<> AppModel::grantRealm()
{
    const Lifetime::Watch self = lifetime_.watch();
    const std::optional<FileURL> chosen =
        co_await openPanel_->chooseDirectory(panelRequest(std::nullopt));
    if (self && chosen) {
        co_await addRealm(*chosen);
    }
}

QCoro::Task<> AppModel::grantRealm(FileURL url)
{
    co_await addRealm(std::move(url));
}

QCoro::Task<> AppModel::addRealm(FileURL url)
{
    try {
        grantStore_->addGrant(url);
    } catch (const std::exception& error) {
        log_(ModelCopy::grantFailedLog(url.path(), describe(error)));
        co_return;
    }
    rereadGrants();
    co_await selectRealm(url);
}

QCoro::Task<> AppModel::regrantRealm(Grant grant)
{
    const Lifetime::Watch self = lifetime_.watch();
    try {
        grantStore_->refreshGrant(grant);
        // A directory that is found under another name is not back at the realm's place yet.
        if (isConnected(grant)) {
            rereadGrants();
            co_return;
        }
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the user is asked instead
    }
    const std::optional<FileURL> chosen =
        co_await openPanel_->chooseDirectory(panelRequest(FileURL::directory(grant.path)));
    if (self && chosen) {
        replaceGrant(grant, *chosen);
    }
}

void AppModel::replaceGrant(const Grant& grant, const FileURL& url)
{
    try {
        if (grantStore_->addGrant(url).id == grant.id) {
            // The same place again: the store keeps the grant that it has, whose bookmark is the
            // one that leads nowhere.
            grantStore_->removeGrant(grant.id);
            grantStore_->addGrant(url);
        }
    } catch (const std::exception& error) {
        log_(ModelCopy::regrantFailedLog(grant.path, describe(error)));
        assign(grants_, grantStore_->grants(), &AppModel::grantsChanged);
        return;
    }
    grantStore_->removeGrant(grant.id);
    rereadGrants();
}

void AppModel::removeRealm(Grant grant)
{
    grantStore_->removeGrant(grant.id);
    rereadGrants();
    if (activeRootURL_
        && activeRootURL_->path() == FileURL::directory(grant.path).standardized().path()) {
        clearActiveRealm();
    }
}

void AppModel::rereadGrants()
{
    assign(grants_, grantStore_->grants(), &AppModel::grantsChanged);
    assign(territoriesAreStale_, true, &AppModel::territoriesAreStaleChanged);
}

}  // namespace gruk
