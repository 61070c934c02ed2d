#include "tests/support/model_house.h"

#include <stdexcept>
#include <utility>

namespace gruk::test {

namespace {

constexpr std::size_t fileSize = 8'192;

/// A stream of events that a test makes, entered in a list as long as it lives.
class ListedStream final : public FileEventStream {
public:
    using List = std::multimap<std::string, std::function<void()>>;

    ListedStream(List& list, const std::string& path, std::function<void()> onEvent)
        : list_(list), place_(list.emplace(path, std::move(onEvent)))
    {
    }
    ~ListedStream() override { list_.erase(place_); }

private:
    List& list_;
    List::iterator place_;
};

}  // namespace

ModelHouse::ModelHouse(std::shared_ptr<SnapshotScanner> scanner)
    : ModelHouse(
        [scanner = std::move(scanner)](ModelCollaborators& all) { all.snapshotScanner = scanner; })
{
}

ModelHouse::ModelHouse(const std::function<void(ModelCollaborators&)>& change)
    : store(std::make_shared<SnapshotStore>(FileURL(directory.path("app/snapshots.json")))),
      preferences(std::make_shared<UserDefaults>(FileURL(directory.path("app/settings.json")))),
      change_(change)
{
    directory.folder("home");
    model = std::make_unique<AppModel>(collaborators());
}

ModelCollaborators ModelHouse::collaborators()
{
    ModelCollaborators all;
    all.grantStore = std::make_shared<GrantStore>(FileURL(directory.path("app/grants.json")));
    all.realmIdentityStore =
        std::make_shared<RealmIdentityStore>(FileURL::directory(directory.path("app")));
    all.snapshotStore = store;
    all.preferences = preferences;
    all.runLoop = loop;
    all.taskPool = pool;
    all.openPanel = panel;
    all.ownFolders = OwnFolders({FileURL::directory(directory.path("app"))});
    all.desktopDirectory = [this] { return FileURL::directory(directory.path("Desktop")); };
    const auto set = [this](bool enabled) {
        if (loginItemRefusal) {
            throw std::runtime_error(*loginItemRefusal);
        }
        startsAtLogin = enabled;
    };
    all.loginItem = {[this] { return startsAtLogin; }, [set] { set(true); }, [set] { set(false); }};
    all.eventStreams = [this](const FileURL& place, std::function<void()> onEvent) {
        return std::make_unique<ListedStream>(streams, place.path(), std::move(onEvent));
    };
    all.reveal = [this](const std::vector<FileURL>& items, std::function<void()> onFailure) {
        revealed.push_back(items);
        if (!hasFileManager) {
            onFailure();
        }
    };
    all.log = [this](const std::string& line) { logLines.push_back(line); };
    change_(all);
    return all;
}

void ModelHouse::restart()
{
    model.reset();
    settle();
    preferences = std::make_shared<UserDefaults>(FileURL(directory.path("app/settings.json")));
    model = std::make_unique<AppModel>(collaborators());
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

void ModelHouse::allowTrash()
{
    model->setReviewOnly(false);
    // An action clears both lines, also one with nothing to do.
    model->moveFindingsToTrash({});
}

void ModelHouse::touch(const std::string& path)
{
    const auto [first, last] = streams.equal_range(path);
    for (auto stream = first; stream != last; ++stream) {
        const std::function<void()> tell = stream->second;
        tell();
    }
}

}  // namespace gruk::test
