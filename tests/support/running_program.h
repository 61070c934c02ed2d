#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/screens/main_window.h"
#include "app/theme/theme.h"
#include "tests/support/environment.h"
#include "tests/support/scripted_open_panel.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// The program with its window on real files, threads, watches and the real Trash, in a home of its
/// own ("home" in `directory`), as often as it is started. Gruk's own folders lie in that home.
class RunningProgram {
public:
    RunningProgram() = default;
    ~RunningProgram() { quit(); }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    /// `change` may set what the model works with; what it leaves empty is live.
    void start(const std::function<void(ModelCollaborators&)>& change = {});
    /// Ends it; work that runs is waited for.
    void quit();

    /// The path of what lies below the home.
    [[nodiscard]] std::string path(const std::string& below) const;
    /// Whether there is anything at that place, be it a link to nothing.
    [[nodiscard]] bool stands(const std::string& below) const;

    TemporaryDirectory directory;
    std::shared_ptr<ScriptedOpenPanel> panel = std::make_shared<ScriptedOpenPanel>();
    Theme theme;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<SweepView> window;

private:
    EnvironmentVariable home_{"HOME", directory.path("home")};
    EnvironmentVariable data_{"XDG_DATA_HOME", directory.path("home/.local/share")};
    EnvironmentVariable configuration_{"XDG_CONFIG_HOME", directory.path("home/.config")};
    std::shared_ptr<QtRunLoop> loop_;
    std::shared_ptr<QtTaskPool> pool_;
};

}  // namespace gruk::test
