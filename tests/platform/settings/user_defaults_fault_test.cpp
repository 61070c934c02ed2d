#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/foundation/errors.h"
#include "platform/settings/user_defaults.h"
#include "tests/support/fault_calls.h"
#include "tests/support/temporary_directory.h"

// What becomes of settings when the disk, or the process, fails at any step of a write.

namespace gruk {

namespace {

using test::FaultCalls;
using test::TemporaryDirectory;

/// What the file is before the write that fails.
enum class Start { nothing, settings, damaged };

constexpr Start everyStart[] = {Start::nothing, Start::settings, Start::damaged};

class Scene {
public:
    explicit Scene(Start start) : start_(start)
    {
        if (start == Start::settings) {
            UserDefaults(file()).setText("former", "kept");
        } else if (start == Start::damaged) {
            (void)disk_.fileWith("Gruk/settings.json", "damaged");
        }
    }

    [[nodiscard]] FileURL file() const { return FileURL(disk_.path("Gruk/settings.json")); }

    /// Whether nothing of what was there is lost.
    [[nodiscard]] bool keepsWhatWasThere() const
    {
        if (start_ == Start::settings) {
            return UserDefaults(file()).text("former") == "kept";
        }
        return start_ == Start::nothing || contentOf("Gruk/settings.json") == "damaged"
               || contentOf("Gruk/settings.json.damaged") == "damaged";
    }

private:
    [[nodiscard]] std::string contentOf(const std::string& name) const
    {
        return std::filesystem::exists(disk_.path(name)) ? disk_.read(name) : "";
    }

    Start start_;
    TemporaryDirectory disk_;
};

std::vector<std::string> callsWithoutFault(Start start)
{
    const Scene scene(start);
    const FaultCalls faults;
    UserDefaults(scene.file(), faults.calls()).setText("new", "value");
    return faults.names();
}

/// Sets a value while the disk fails; whether that was reported.
bool isReported(UserDefaults& settings, int error)
{
    try {
        settings.setText("new", "value");
        return false;
    } catch (const FileError& problem) {
        EXPECT_EQ(problem.code().value(), error);
        return true;
    }
}

}  // namespace

TEST(UserDefaultsFault, anErrorAtAnyCallIsReportedLosesNothingAndTheValueHolds)
{
    int faultCount = 0;
    for (const Start start : everyStart) {
        const std::vector<std::string> calls = callsWithoutFault(start);
        for (std::size_t number = 0; number < calls.size(); ++number) {
            for (const int error : {ENOSPC, EIO, EROFS, EDQUOT}) {
                const Scene scene(start);
                FaultCalls faults;
                faults.failAt = number;
                faults.error = error;
                UserDefaults settings(scene.file(), faults.calls());
                const bool wasReported = isReported(settings, error);
                ++faultCount;
                EXPECT_EQ(settings.text("new"), "value") << calls[number];
                EXPECT_TRUE(scene.keepsWhatWasThere()) << calls[number];
                EXPECT_EQ(UserDefaults(scene.file()).text("new").has_value(), !wasReported);
                // The fault is over: the next write takes the value along.
                settings.setText("next", "one");
                EXPECT_EQ(UserDefaults(scene.file()).text("new"), "value") << calls[number];
                EXPECT_TRUE(scene.keepsWhatWasThere()) << calls[number];
            }
        }
    }
    EXPECT_GT(faultCount, 80);
}

TEST(UserDefaultsFault, aRemovalThatCannotBeWrittenHoldsToo)
{
    const Scene scene(Start::settings);
    FaultCalls faults;
    faults.failAt = 0;
    faults.error = ENOSPC;
    faults.span = FaultCalls::Span::fromThenOn;
    UserDefaults settings(scene.file(), faults.calls());
    EXPECT_THROW(settings.remove("former"), FileError);
    EXPECT_EQ(settings.text("former"), std::nullopt);
    EXPECT_TRUE(scene.keepsWhatWasThere());
}

TEST(UserDefaultsFault, aKillAtAnyCallLosesNothingAndTheNextProcessWrites)
{
    for (const Start start : everyStart) {
        const std::size_t count = callsWithoutFault(start).size();
        for (std::size_t number = 0; number < count; ++number) {
            const Scene scene(start);
            const pid_t child = ::fork();
            if (child == 0) {
                FaultCalls faults;
                faults.before = [number](std::size_t at) {
                    if (at == number) {
                        ::kill(::getpid(), SIGKILL);
                    }
                };
                UserDefaults(scene.file(), faults.calls()).setText("new", "value");
                ::_exit(0);
            }
            int status = 0;
            ::waitpid(child, &status, 0);
            ASSERT_TRUE(WIFSIGNALED(status)) << number;
            EXPECT_TRUE(scene.keepsWhatWasThere()) << number;
            UserDefaults settings(scene.file());
            settings.setText("next", "one");
            EXPECT_EQ(UserDefaults(scene.file()).text("next"), "one");
            EXPECT_TRUE(scene.keepsWhatWasThere()) << number;
            for (const auto& item : std::filesystem::directory_iterator(
                     scene.file().deletingLastPathComponent().path())) {
                EXPECT_NE(item.path().extension(), ".gruk-new") << "left behind for good";
            }
        }
    }
}

TEST(UserDefaultsFault, anErrorAtAnyCallOfAMoveLeavesEveryValueWhereItWas)
{
    std::size_t failures = 0;
    for (std::size_t number = 0;; ++number) {
        const TemporaryDirectory disk;
        const FileURL file(disk.path("settings.json"));
        UserDefaults(file).setText("from", "moved");
        UserDefaults(file).setBoolean("to", true);
        UserDefaults(file).setText("note", "pending");
        FaultCalls faults;
        faults.failAt = number;
        faults.error = ENOSPC;
        UserDefaults settings(file, faults.calls());
        bool failed = false;
        try {
            settings.move({{"from", "to"}, {"absent", "other"}}, "note");
        } catch (const FileError&) {
            failed = true;
        }
        const bool wasReached = faults.names().size() > number;
        failures += failed ? 1 : 0;
        const UserDefaults fresh(file);
        for (const UserDefaults* each : {static_cast<const UserDefaults*>(&settings), &fresh}) {
            EXPECT_EQ(each->text("from").has_value(), failed);
            EXPECT_EQ(each->boolean("to"), failed ? std::optional(true) : std::nullopt);
            EXPECT_EQ(each->text("to"),
                      failed ? std::nullopt : std::optional<std::string>("moved"));
            EXPECT_EQ(each->text("note").has_value(), failed);
        }
        if (!wasReached) {
            break;
        }
        // And nothing of it comes with a later write.
        settings.setBoolean("later", true);
        EXPECT_EQ(UserDefaults(file).text("from").has_value(), failed);
    }
    EXPECT_GT(failures, 3U);
}

TEST(UserDefaultsFault, inAFolderThatIsReadOnlyTheValueHoldsAndTheFileStays)
{
    const TemporaryDirectory disk;
    const auto body = [](const TemporaryDirectory& own) {
        (void)own.fileWith("Gruk/settings.json", R"({"a":"x"})");
        ::chmod(own.path("Gruk").c_str(), 0500);
        UserDefaults settings(FileURL(own.path("Gruk/settings.json")));
        bool isRefused = false;
        try {
            settings.setText("a", "y");
        } catch (const FileError& error) {
            isRefused = meaning(error) == ErrorMeaning::accessRefused;
        }
        const bool holds = settings.text("a") == "y";
        const bool stays = own.read("Gruk/settings.json") == R"({"a":"x"})";
        ::chmod(own.path("Gruk").c_str(), 0700);
        return isRefused && holds && stays;
    };
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(body, disk));
}

TEST(UserDefaultsFault, aFileThatMayNotBeReadIsNeverWrittenOver)
{
    const TemporaryDirectory disk;
    const auto body = [](const TemporaryDirectory& own) {
        const std::string file = own.fileWith("Gruk/settings.json", R"({"a":"x"})");
        ::chmod(file.c_str(), 0);
        UserDefaults settings{FileURL(file)};
        bool isRefused = false;
        try {
            settings.setText("a", "y");
        } catch (const FileError& error) {
            isRefused = meaning(error) == ErrorMeaning::accessRefused;
        }
        ::chmod(file.c_str(), 0600);
        return isRefused && own.read("Gruk/settings.json") == R"({"a":"x"})";
    };
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(body, disk));
}

TEST(UserDefaultsFault, aFolderInTheFilesPlaceIsLeftAlone)
{
    const TemporaryDirectory disk;
    (void)disk.folder("Gruk/settings.json");
    UserDefaults settings(FileURL(disk.path("Gruk/settings.json")));
    EXPECT_EQ(settings.boolean("a"), std::nullopt);
    EXPECT_THROW(settings.setBoolean("a", true), FileError);
    EXPECT_EQ(settings.boolean("a"), true);
    EXPECT_TRUE(std::filesystem::is_directory(disk.path("Gruk/settings.json")));
    EXPECT_FALSE(std::filesystem::exists(disk.path("Gruk/settings.json.damaged")));
}

}  // namespace gruk
