#include "platform/settings/login_item.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/foundation/errors.h"
#include "platform/linux/desktop_entry.h"
#include "tests/support/environment.h"
#include "tests/support/fault_calls.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::EnvironmentVariable;
using test::FaultCalls;
using test::TemporaryDirectory;

constexpr const char* entryName = "config/autostart/io.github.gruk.Gruk.desktop";

/// A desktop of the test's own with a program on it.
class LoginItemTest : public testing::Test {
protected:
    FileURL makeProgram(const std::string& name)
    {
        const std::string path = disk.fileWith(name, "#!/bin/sh\n");
        ::chmod(path.c_str(), 0755);
        return FileURL(path);
    }

    void writeEntry(const std::string& lines)
    {
        (void)disk.fileWith(entryName, "[Desktop Entry]\nType=Application\nName=Gruk\n" + lines);
    }

    [[nodiscard]] std::string entryText() const { return disk.read(entryName); }
    [[nodiscard]] std::string execLine() const
    {
        return "Exec=\"" + program.path() + "\" --background\n";
    }

    TemporaryDirectory disk;
    const EnvironmentVariable config{"XDG_CONFIG_HOME", disk.path("config")};
    const FileURL program = makeProgram("bin/gruk");
    LoginItem item;
};

int runTool(const std::string& tool, const std::string& argument)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::execlp(tool.c_str(), tool.c_str(), argument.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST_F(LoginItemTest, isOffWhereNothingIsAndLookingMakesNothing)
{
    EXPECT_FALSE(item.isEnabled());
    item.disable();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(std::filesystem::exists(disk.path("config")));
}

TEST_F(LoginItemTest, isOnAfterEnablingAndOffAfterDisabling)
{
    for (int round = 0; round < 2; ++round) {
        item.enable(program);
        EXPECT_TRUE(LoginItem().isEnabled());
        item.disable();
        EXPECT_FALSE(LoginItem().isEnabled());
    }
}

TEST_F(LoginItemTest, eachQuestionReadsTheFile)
{
    item.enable(program);
    std::filesystem::remove(disk.path(entryName));
    EXPECT_FALSE(item.isEnabled());
    writeEntry(execLine());
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItemTest, theDesktopsOwnSwitchesTurnItOff)
{
    for (const std::string line : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n",
                                   "Hidden = true \n", "TryExec=/no/such/program\n"}) {
        writeEntry(execLine() + line);
        EXPECT_FALSE(item.isEnabled()) << line;
        item.enable(program);
        EXPECT_TRUE(item.isEnabled()) << line;
    }
    for (const std::string line : {"Hidden=false\n", "X-GNOME-Autostart-enabled=true\n",
                                   "[Desktop Action x]\nHidden=true\n"}) {
        writeEntry(execLine() + line);
        EXPECT_TRUE(item.isEnabled()) << line;
    }
}

TEST_F(LoginItemTest, isOffWhenNoProgramWouldStart)
{
    const std::string plain = disk.file("plain");
    for (const std::string& lines :
         {std::string(), std::string("Exec=\n"), std::string("Exec=\"/no end\n"),
          std::string("Exec=/no/such/program\n"), "Exec=" + plain + "\n",
          "Exec=" + disk.path("bin") + "\n", std::string("Exec=no-such-program-anywhere\n"),
          std::string("Exec=bin/gruk\n"), execLine() + "Type=Link\n"}) {
        writeEntry(lines);
        EXPECT_FALSE(item.isEnabled()) << lines;
    }
    (void)disk.fileWith(entryName, execLine());
    EXPECT_FALSE(item.isEnabled()) << "no entry at all";
}

TEST_F(LoginItemTest, aProgramByItsNameAloneIsLookedForWhereProgramsAre)
{
    const EnvironmentVariable path("PATH", "/nowhere::relative:" + disk.path("bin"));
    writeEntry("Exec=gruk %U\n");
    EXPECT_TRUE(item.isEnabled());
    writeEntry("Exec=grukk %U\n");
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(LoginItemTest, enablingWritesTheProgramThatRunsNow)
{
    writeEntry("Exec=/old/place/gruk\n");
    item.enable(program);
    EXPECT_NE(entryText().find(execLine()), std::string::npos);
    EXPECT_EQ(entryText().find("/old/place"), std::string::npos);
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItemTest, whatTheDesktopHasNotedStays)
{
    const std::string notes = "X-GNOME-Autostart-Delay=60\nName[de]=Gruk\n# by hand\n"
                              "X-MATE-Autostart-Delay=1\n\n[X-Group]\nKey=value\n";
    writeEntry(notes);
    item.enable(program);
    item.disable();
    item.enable(program);
    for (const char* line : {"X-GNOME-Autostart-Delay=60\n", "Name[de]=Gruk\n", "# by hand\n",
                             "X-MATE-Autostart-Delay=1\n", "[X-Group]\nKey=value\n"}) {
        EXPECT_NE(entryText().find(line), std::string::npos) << line;
    }
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItemTest, programsWithOddPathsAreStarted)
{
    for (const std::string name : {"my apps/gruk", "50% $HOME/gruk", "a\"b\\c`d/gruk", "ä\tö/gruk",
                                   "semi;colon & #/gruk", " lead/gruk ", "new\nline/gruk"}) {
        const FileURL odd = makeProgram(name);
        item.enable(odd);
        EXPECT_TRUE(item.isEnabled()) << entryText();
        std::filesystem::remove(odd.path());
        EXPECT_FALSE(item.isEnabled()) << "it was another program";
    }
}

TEST_F(LoginItemTest, aPathThatNoEntryCanHoldIsRefusedAndNothingChanges)
{
    item.enable(program);
    const std::string before = entryText();
    for (const std::string path : {"/a=b/gruk", "/\xff/gruk"}) {
        try {
            item.enable(FileURL(path));
            ADD_FAILURE() << path;
        } catch (const FileError& error) {
            EXPECT_EQ(error.code(), std::errc::invalid_argument);
        }
    }
    EXPECT_EQ(entryText(), before);
}

TEST_F(LoginItemTest, aFileThatIsNoEntryIsReplacedByOne)
{
    (void)disk.fileWith(entryName, "\xff no entry");
    EXPECT_FALSE(item.isEnabled());
    item.disable();
    EXPECT_EQ(entryText(), "\xff no entry");
    item.enable(program);
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItemTest, afterAFaultAtAnyCallTheFormerEntryStandsOrTheNewOne)
{
    item.enable(program);
    const FileURL other = makeProgram("other/gruk");
    std::size_t number = 0;
    for (bool wasReached = true; wasReached; ++number) {
        item.enable(program);
        const std::string before = entryText();
        FaultCalls faults;
        faults.failAt = number;
        faults.error = ENOSPC;
        bool isReported = false;
        try {
            LoginItem(faults.calls()).enable(other);
        } catch (const FileError& error) {
            isReported = true;
            EXPECT_EQ(error.code(), std::errc::no_space_on_device);
        }
        wasReached = faults.names().size() > number;
        EXPECT_EQ(entryText() == before, isReported) << number;
        EXPECT_TRUE(item.isEnabled());
    }
    EXPECT_GE(number, 6U);
}

TEST_F(LoginItemTest, theEntryPassesTheDesktopsOwnCheck)
{
    if (std::system("command -v desktop-file-validate > /dev/null") != 0) {
        GTEST_SKIP() << "desktop-file-validate is not installed";
    }
    item.enable(makeProgram("50% my \"apps\" $x/gruk"));
    EXPECT_EQ(runTool("desktop-file-validate", disk.path(entryName)), 0) << entryText();
    item.disable();
    EXPECT_EQ(runTool("desktop-file-validate", disk.path(entryName)), 0) << entryText();
}

}  // namespace gruk
