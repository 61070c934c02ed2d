#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/model/app_model.h"
#include "tests/support/environment.h"
#include "tests/support/manual_run_loop.h"
#include "tests/support/manual_task_pool.h"
#include "tests/support/scripted_open_panel.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// A model with everything that it works with under the test's control: its files in a folder of
/// the test's own, its main thread and its pool by hand, its panel scripted.
class ModelHouse {
public:
    explicit ModelHouse(std::shared_ptr<SnapshotScanner> scanner = nullptr);
    /// `change` may put other collaborators in before the model is made.
    explicit ModelHouse(const std::function<void(ModelCollaborators&)>& change);

    /// Ends the model, as a quit does, and begins another one on the same files.
    void restart();

    /// Runs work and main thread until neither has anything left.
    void settle();

    /// Makes a folder with one file of 8 KB in it, grants it, and returns its place.
    FileURL makeRealm(const std::string& name);
    /// Grants a realm, patrols it and leaves it selected.
    FileURL makePatrolledRealm(const std::string& name);

    void select(const FileURL& url);
    void patrol();

    /// The snapshots stored for a realm.
    [[nodiscard]] std::vector<ScanSnapshot> stored(const FileURL& url) const;
    [[nodiscard]] const Grant& grantOf(const FileURL& url) const;

    /// Allows Trash actions and forgets that it said so.
    void allowTrash();
    /// Tells the watchers of that path that something changed there.
    void touch(const std::string& path);

    TemporaryDirectory directory;
    std::shared_ptr<ManualRunLoop> loop = std::make_shared<ManualRunLoop>();
    std::shared_ptr<ManualTaskPool> pool = std::make_shared<ManualTaskPool>();
    std::shared_ptr<ScriptedOpenPanel> panel = std::make_shared<ScriptedOpenPanel>();
    std::vector<std::string> logLines;
    std::shared_ptr<SnapshotStore> store;
    std::shared_ptr<UserDefaults> preferences;
    /// Whether the program starts with the session, and what is thrown at a change of that.
    bool startsAtLogin = false;
    std::optional<std::string> loginItemRefusal;
    /// What the file manager was asked to show, each time.
    std::vector<std::vector<FileURL>> revealed;
    bool hasFileManager = true;
    /// The live streams of events, by path.
    std::multimap<std::string, std::function<void()>> streams;
    std::unique_ptr<AppModel> model;

private:
    [[nodiscard]] ModelCollaborators collaborators();

    std::function<void(ModelCollaborators&)> change_;
    EnvironmentVariable home_{"HOME", directory.path("home")};
    EnvironmentVariable data_{"XDG_DATA_HOME", directory.path("data")};
    EnvironmentVariable configuration_{"XDG_CONFIG_HOME", directory.path("config")};
};

}  // namespace gruk::test
