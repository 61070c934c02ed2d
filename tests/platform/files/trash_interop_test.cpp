#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/trash.h"
#include "tests/support/trash_house.h"

// Other programs of the desktop see what is in the Trash and put it back, and the other way round.

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::EnvironmentVariable;
using test::stands;
using test::TrashHouse;
using test::TreeRecord;
using test::treeRecord;

bool isInstalled(const std::string& program)
{
    const char* path = std::getenv("PATH");
    std::string rest = path == nullptr ? "" : path;
    while (!rest.empty()) {
        const std::string folder = rest.substr(0, rest.find(':'));
        rest.erase(0, folder.size() + 1);
        if (::access((folder + "/" + program).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

/// Runs a program in a folder with `input` to read; what it wrote. A failure of it is the test's.
std::string run(const std::string& folder, std::vector<std::string> command,
                const std::string& input = "")
{
    const test::TemporaryDirectory pipes;
    pipes.fileWith("input", input);
    pipes.file("output");
    std::vector<char*> arguments;
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int in = ::open(pipes.path("input").c_str(), O_RDONLY);
        const int out = ::open(pipes.path("output").c_str(), O_WRONLY);
        if (::chdir(folder.c_str()) == 0 && ::dup2(in, 0) == 0 && ::dup2(out, 1) == 1
            && ::dup2(out, 2) == 2) {
            ::execvp(arguments[0], arguments.data());
        }
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << command[0] << ": " << pipes.read("output");
    return pipes.read("output");
}

/// A program on a session bus of its own, which the desktop's file systems talk over.
std::string runOnBus(const TrashHouse& house, std::vector<std::string> command)
{
    command.insert(command.begin(), {"dbus-run-session", "--"});
    return run(house.path("home"), std::move(command));
}

/// A name that is no text. Programs that handle names as text stop at it.
const std::string unreadable = "\xff\xfe";

/// A house with items of every sort in "home"; their names.
class Items {
public:
    Items()
    {
        const auto& directory = house_.directory();
        for (const std::string& name : names()) {
            directory.fileWith("home/" + name, "content of " + name);
        }
        directory.fileWith("home/folder/inner", "inner");
        directory.symbolicLink("home/link", "nowhere");
        fs::create_directory(directory.path("runtime"));
        fs::permissions(directory.path("runtime"), fs::perms::owner_all);
        before_ = treeRecord(house_.path("home"));
    }

    [[nodiscard]] static std::vector<std::string> names()
    {
        return {"plain", "a b.txt", "%41 ?#", "\xc3\xa4\xe2\x82\xac", unreadable};
    }
    [[nodiscard]] static std::vector<std::string> all()
    {
        std::vector<std::string> result = names();
        result.insert(result.end(), {"folder", "link"});
        return result;
    }
    [[nodiscard]] const TrashHouse& house() const { return house_; }
    [[nodiscard]] FileURL url(const std::string& name) const { return house_.url("home/" + name); }

    [[nodiscard]] bool areBack() const { return treeRecord(house_.path("home")) == before_; }
    [[nodiscard]] bool isTrashEmpty() const
    {
        return fs::is_empty(house_.trash("files")) && fs::is_empty(house_.trash("info"));
    }

private:
    TrashHouse house_;
    EnvironmentVariable runtime_{"XDG_RUNTIME_DIR", house_.path("runtime")};
    EnvironmentVariable language_{"LC_ALL", "C.UTF-8"};
    TreeRecord before_;
};

std::string trashURLText(const std::string& name)
{
    return "trash:///" + FileURL("/" + name).fileURLText().substr(std::string("file:///").size());
}

#define SKIP_UNLESS_INSTALLED(program, package)                                                    \
    do {                                                                                           \
        if (!isInstalled(program)) {                                                               \
            GTEST_SKIP() << program " (package " package ") is not installed";                     \
        }                                                                                          \
    } while (false)

TEST(TrashInterop, theDesktopsLibrarySeesAndPutsBackWhatWasTrashed)
{
    SKIP_UNLESS_INSTALLED("gio", "libglib2.0-bin");
    SKIP_UNLESS_INSTALLED("dbus-run-session", "dbus-daemon");
    const Items items;
    for (const std::string& name : Items::all()) {
        (void)trashItem(items.url(name));
    }
    const std::string list = runOnBus(items.house(), {"gio", "trash", "--list"});
    for (const std::string& name : Items::all()) {
        EXPECT_NE(list.find(trashURLText(name)), std::string::npos) << name << " in\n" << list;
        if (std::any_of(name.begin(), name.end(),
                        [](char c) { return static_cast<unsigned char>(c) > '~'; })) {
            // The command of glib 2.74 puts a name with bytes beyond ASCII back as "\xc3…", its own
            // as well: it takes the text for the eye for the path.
            restoreTrashedItem(FileURL(items.house().trash("files/" + name)), items.url(name));
            continue;
        }
        runOnBus(items.house(), {"gio", "trash", "--restore", trashURLText(name)});
        EXPECT_TRUE(stands(items.url(name).path())) << name;
    }
    EXPECT_TRUE(items.areBack());
    EXPECT_TRUE(items.isTrashEmpty());
}

TEST(TrashInterop, whatTheDesktopsLibraryTrashedComesBack)
{
    SKIP_UNLESS_INSTALLED("gio", "libglib2.0-bin");
    SKIP_UNLESS_INSTALLED("dbus-run-session", "dbus-daemon");
    const Items items;
    for (const std::string& name : Items::all()) {
        runOnBus(items.house(), {"gio", "trash", items.url(name).path()});
        EXPECT_FALSE(stands(items.url(name).path())) << name;
        restoreTrashedItem(FileURL(items.house().trash("files/" + name)), items.url(name));
    }
    EXPECT_TRUE(items.areBack());
    EXPECT_TRUE(items.isTrashEmpty());
}

TEST(TrashInterop, theCommandLinesTrashSeesAndPutsBackWhatWasTrashed)
{
    SKIP_UNLESS_INSTALLED("trash-restore", "trash-cli");
    const Items items;
    for (const std::string& name : Items::all()) {
        if (name == unreadable) {
            continue;
        }
        (void)trashItem(items.url(name));
        const std::string list = run(items.house().path("home"), {"trash-list"});
        EXPECT_NE(list.find(items.url(name).path() + "\n"), std::string::npos) << list;
        run(items.house().path("home"), {"trash-restore"}, "0\n");
        EXPECT_TRUE(stands(items.url(name).path())) << name;
    }
    EXPECT_TRUE(items.areBack());
    EXPECT_TRUE(items.isTrashEmpty());
}

TEST(TrashInterop, whatTheCommandLinesTrashTookComesBack)
{
    SKIP_UNLESS_INSTALLED("trash-put", "trash-cli");
    const Items items;
    for (const std::string& name : Items::all()) {
        if (name == unreadable) {
            continue;
        }
        run(items.house().path("home"), {"trash-put", "--", name});
        EXPECT_FALSE(stands(items.url(name).path())) << name;
        restoreTrashedItem(FileURL(items.house().trash("files/" + name)), items.url(name));
    }
    EXPECT_TRUE(items.areBack());
    EXPECT_TRUE(items.isTrashEmpty());
}

}  // namespace

}  // namespace gruk
