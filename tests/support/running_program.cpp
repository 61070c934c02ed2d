#include "tests/support/running_program.h"

#include <chrono>
#include <filesystem>
#include <utility>

#include <gtest/gtest.h>

namespace gruk::test {

void RunningProgram::start(const std::function<void(ModelCollaborators&)>& change)
{
    // A picture of a step shows where its movement ends.
    theme.setReducedMotion(true);
    loop_ = std::make_shared<QtRunLoop>();
    pool_ = std::make_shared<QtTaskPool>();
    ModelCollaborators with;
    with.runLoop = loop_;
    with.taskPool = pool_;
    with.openPanel = panel;
    if (change) {
        change(with);
    }
    model = std::make_unique<AppModel>(std::move(with));
    window = std::make_unique<SweepView>(*model, theme);
    // So tall that every finding is in view and can be counted.
    constexpr int tall = 2'400;
    window->resize(window->width(), tall);
    window->show();
}

void RunningProgram::quit()
{
    window.reset();
    model.reset();
    if (pool_) {
        EXPECT_TRUE(pool_->waitForDone(std::chrono::minutes(1)));
    }
}

std::string RunningProgram::path(const std::string& below) const
{
    return directory.path("home/" + below);
}

bool RunningProgram::stands(const std::string& below) const
{
    return std::filesystem::exists(std::filesystem::symlink_status(path(below)));
}

}  // namespace gruk::test
