#include <csignal>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/settings/user_defaults.h"
#include "tests/support/temporary_directory.h"

// What one process stores, another one finds: within one, a cache could hide the loss.

namespace gruk {

namespace {

using test::TemporaryDirectory;

/// Starts the program that works with the settings in `file`.
pid_t start(const FileURL& file, const std::vector<std::string>& words)
{
    std::vector<std::string> all = {GRUK_SETTINGS_PROCESS, file.path()};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    return child;
}

bool endsWell(pid_t child)
{
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// How many of the keys `name`0, `name`1 and so on are there with their values, without a gap.
int countOf(const UserDefaults& settings, const std::string& name)
{
    int count = 0;
    while (settings.text(name + std::to_string(count)) == std::to_string(count)) {
        ++count;
    }
    return count;
}

}  // namespace

TEST(UserDefaultsProcesses, valuesOfEachTypeSurviveARestart)
{
    const TemporaryDirectory disk;
    const FileURL file(disk.path("Gruk/settings.json"));
    EXPECT_FALSE(endsWell(start(file, {"check"})));
    EXPECT_TRUE(endsWell(start(file, {"store"})));
    EXPECT_TRUE(endsWell(start(file, {"check"})));
    EXPECT_EQ(UserDefaults(file).text("cadence.X"), "weekly");
}

TEST(UserDefaultsProcesses, twoThatWriteFiveHundredKeysEachAtOnceLoseNone)
{
    const TemporaryDirectory disk;
    const FileURL file(disk.path("Gruk/settings.json"));
    const pid_t first = start(file, {"count", "first.", "500"});
    const pid_t second = start(file, {"count", "second.", "500"});
    EXPECT_TRUE(endsWell(first));
    EXPECT_TRUE(endsWell(second));
    const UserDefaults settings(file);
    EXPECT_EQ(countOf(settings, "first."), 500);
    EXPECT_EQ(countOf(settings, "second."), 500);
}

TEST(UserDefaultsProcesses, oneThatIsKilledWhileItWritesLosesNothingThatItHadWritten)
{
    const TemporaryDirectory disk;
    const FileURL file(disk.path("Gruk/settings.json"));
    UserDefaults settings(file);
    settings.setText("ours", "kept");
    int written = 0;
    for (int round = 0; round < 10; ++round) {
        const int wanted = written + 1 + round;
        const pid_t child = start(file, {"count", "child.", "100000"});
        while (countOf(settings, "child.") < wanted) {
            ASSERT_EQ(::waitpid(child, nullptr, WNOHANG), 0) << "ended by itself";
        }
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const int found = countOf(settings, "child.");
        EXPECT_GE(found, wanted);
        written = found;
        EXPECT_EQ(settings.text("ours"), "kept");
        settings.setText("round", std::to_string(round));
        EXPECT_EQ(UserDefaults(file).text("round"), std::to_string(round));
        EXPECT_EQ(countOf(settings, "child."), found);
    }
}

}  // namespace gruk
