#include "platform/files/known_folders.h"

#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::EnvironmentVariable;
using test::TemporaryDirectory;

/// A home of the test's own, with nothing else set.
class KnownFolders : public ::testing::Test {
protected:
    void nameUserDirectories(const std::string& content) const
    {
        (void)home_.fileWith(".config/user-dirs.dirs", content);
    }

    TemporaryDirectory home_;

private:
    EnvironmentVariable homeVariable_{"HOME", home_.path()};
    EnvironmentVariable data_{"XDG_DATA_HOME", std::nullopt};
    EnvironmentVariable configuration_{"XDG_CONFIG_HOME", std::nullopt};
    EnvironmentVariable temporary_{"TMPDIR", std::nullopt};
};

TEST_F(KnownFolders, lieInTheHomeWhenNothingNamesThem)
{
    EXPECT_EQ(homeDirectory(), home_.url());
    EXPECT_EQ(applicationSupportDirectory(), FileURL::directory(home_.path(".local/share")));
    EXPECT_EQ(configurationDirectory(), FileURL::directory(home_.path(".config")));
    EXPECT_EQ(temporaryDirectory(), FileURL::directory("/tmp"));
    EXPECT_EQ(desktopDirectory(), FileURL::directory(home_.path("Desktop")));
    EXPECT_EQ(downloadsDirectory(), FileURL::directory(home_.path("Downloads")));
}

TEST_F(KnownFolders, followTheEnvironment)
{
    const EnvironmentVariable data("XDG_DATA_HOME", "/data/");
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", "/configuration");
    const EnvironmentVariable temporary("TMPDIR", "/elsewhere");
    EXPECT_EQ(applicationSupportDirectory(), FileURL::directory("/data"));
    EXPECT_EQ(configurationDirectory(), FileURL::directory("/configuration"));
    EXPECT_EQ(temporaryDirectory(), FileURL::directory("/elsewhere"));
}

TEST_F(KnownFolders, ignoreEmptyAndRelativeValues)
{
    for (const char* value : {"", "relative/place", "./here", "~/there"}) {
        const EnvironmentVariable data("XDG_DATA_HOME", value);
        const EnvironmentVariable configuration("XDG_CONFIG_HOME", value);
        const EnvironmentVariable temporary("TMPDIR", value);
        EXPECT_EQ(applicationSupportDirectory(), FileURL::directory(home_.path(".local/share")));
        EXPECT_EQ(configurationDirectory(), FileURL::directory(home_.path(".config")));
        EXPECT_EQ(temporaryDirectory(), FileURL::directory("/tmp"));
    }
}

TEST_F(KnownFolders, theHomeIsTheAccountsWhenTheEnvironmentHasNone)
{
    const EnvironmentVariable unset("HOME", std::nullopt);
    const FileURL account = homeDirectory();
    EXPECT_NE(account, home_.url());
    const EnvironmentVariable relative("HOME", "relative");
    EXPECT_EQ(homeDirectory(), account);
}

TEST_F(KnownFolders, readTheUserDirectoriesFile)
{
    nameUserDirectories("# a comment\n"
                        "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                        "  XDG_DOWNLOAD_DIR = \"/disk/down \\\"loads\\\"/\" \n");
    EXPECT_EQ(desktopDirectory(), FileURL::directory(home_.path("Schreibtisch")));
    EXPECT_EQ(downloadsDirectory(), FileURL::directory("/disk/down \"loads\""));
}

TEST_F(KnownFolders, findTheUserDirectoriesFileInTheConfigurationDirectory)
{
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", home_.path("elsewhere"));
    (void)home_.fileWith("elsewhere/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Bureau\"");
    EXPECT_EQ(desktopDirectory(), FileURL::directory(home_.path("Bureau")));
}

TEST_F(KnownFolders, theDesktopMayBeTheHomeAndDownloadsTurnedOff)
{
    for (const char* value : {"$HOME", "$HOME/", "$HOME/."}) {
        nameUserDirectories("XDG_DESKTOP_DIR=\"" + std::string(value) + "\"\nXDG_DOWNLOAD_DIR=\""
                            + value + "\"\n");
        EXPECT_EQ(desktopDirectory().standardized().path(), home_.path()) << value;
        EXPECT_EQ(downloadsDirectory(), std::nullopt) << value;
    }
    nameUserDirectories("XDG_DOWNLOAD_DIR=\"" + home_.path() + "\"\n");
    EXPECT_EQ(downloadsDirectory(), std::nullopt);
}

TEST_F(KnownFolders, theLastLineCounts)
{
    nameUserDirectories("XDG_DESKTOP_DIR=\"$HOME/One\"\nXDG_DESKTOP_DIR=\"$HOME/Two\"\n");
    EXPECT_EQ(desktopDirectory(), FileURL::directory(home_.path("Two")));
}

TEST_F(KnownFolders, linesOfAnyOtherFormAreIgnored)
{
    nameUserDirectories("XDG_DESKTOP_DIR=\"relative\"\nXDG_DESKTOP_DIR=$HOME/bare\n"
                        "XDG_DESKTOP_DIR=\"$HOMEWARD/x\"\nXDG_DESKTOP_DIRS=\"/x\"\n"
                        "#XDG_DESKTOP_DIR=\"/x\"\nXDG_DESKTOP_DIR=\"\"\nXDG_DESKTOP_DIR\n");
    EXPECT_EQ(desktopDirectory(), FileURL::directory(home_.path("Desktop")));
}

TEST_F(KnownFolders, keepTheBytesOfAName)
{
    nameUserDirectories("XDG_DESKTOP_DIR=\"$HOME/caf\xE9\"\n");
    EXPECT_EQ(desktopDirectory().path(), home_.path("caf\xE9"));
}

}  // namespace

}  // namespace gruk
