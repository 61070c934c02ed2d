#include "tests/support/model_house.h"

#include <stdexcept>
#include <utility>

namespace gruk::test {

namespace {

constexpr std::size_t fileSize = 8'192;

}  // namespace

ModelHouse::ModelHouse(std::shared_ptr<SnapshotScanner> scanner)
    : store(std::make_shared<SnapshotStore>(FileURL(directory.path("app/snapshots.json"))))
{
    AppModel::Collaborators collaborators;
    collaborators.grantStore =
        std::make_shared<GrantStore>(FileURL(directory.path("app/grants.json")));
    collaborators.snapshotScanner = std::move(scanner);
    collaborators.snapshotStore = store;
    collaborators.runLoop = loop;
    collaborators.taskPool = pool;
    collaborators.openPanel = panel;
    collaborators.log = [this](const std::string& line) { logLines.push_back(line); };
    model = std::make_unique<AppModel>(std::move(collaborators));
}

void ModelHouse::settle()
{
    while (pool->runNext() || loop->run()) {
    }
}

FileURL ModelHouse::makeRealm(const std::string& name)
{
    directory.file(name + "/first.txt", fileSize);
    const FileURL url = FileURL::directory(directory.path(name));
    model->grantRealm(url);
    return url;
}

FileURL ModelHouse::makePatrolledRealm(const std::string& name)
{
    const FileURL url = makeRealm(name);
    settle();
    patrol();
    return url;
}

void ModelHouse::select(const FileURL& url)
{
    model->selectRealm(url);
    settle();
}

void ModelHouse::patrol()
{
    model->patrolActiveRealm();
    settle();
}

std::vector<ScanSnapshot> ModelHouse::stored(const FileURL& url) const
{
    return store->snapshots(url.path());
}

const Grant& ModelHouse::grantOf(const FileURL& url) const
{
    for (const Grant& grant : model->grants()) {
        if (grant.path == url.path()) {
            return grant;
        }
    }
    throw std::runtime_error("no grant of " + url.path());
}

}  // namespace gruk::test
