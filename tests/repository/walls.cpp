#include "tests/repository/walls.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <string_view>

namespace gruk::repository {

namespace {

/// A rule about includes: in which files it holds, what it forbids there, and the wall in words.
struct Wall {
    std::function<bool(const SourceFile&)> holdsIn;
    std::function<bool(const std::string& include)> forbids;
    std::string sentence;
};

bool isSystemHeader(std::string_view name)
{
    constexpr std::array folders = {"sys/", "linux/",   "asm/",  "asm-generic/", "bits/",
                                    "net/", "netinet/", "arpa/", "mach/",        "CoreFoundation/"};
    constexpr std::array headers = {
        "unistd.h",  "fcntl.h",   "dirent.h", "poll.h",   "pwd.h",     "grp.h",       "mntent.h",
        "sched.h",   "signal.h",  "syslog.h", "fstab.h",  "termios.h", "dlfcn.h",     "fts.h",
        "ftw.h",     "glob.h",    "spawn.h",  "wait.h",   "paths.h",   "pthread.h",   "utime.h",
        "strings.h", "fnmatch.h", "libgen.h", "iconv.h",  "utmp.h",    "semaphore.h", "ucontext.h",
        "aio.h",     "err.h",     "error.h",  "getopt.h", "windows.h", "malloc.h"};
    return std::ranges::any_of(folders, [&](auto folder) { return name.starts_with(folder); })
           || std::ranges::find(headers, name) != headers.end();
}

bool isToolkitHeader(std::string_view name)
{
    if (name.size() < 2) {
        return false;
    }
    const bool upper = std::isupper(static_cast<unsigned char>(name[1])) != 0;
    const bool lower = std::islower(static_cast<unsigned char>(name[1])) != 0;
    return (name[0] == 'Q' && (upper || name.starts_with("Qt")))
           || (name[0] == 'q' && lower && name.ends_with(".h")
               && name.find('/') == std::string_view::npos);
}

/// What only the entries' own code knows, and the two halves of the store's file format.
bool isCoreInternal(std::string_view name)
{
    constexpr std::array internals = {"core/patrol/snapshot_table.h",
                                      "core/patrol/snapshot_decoder.h",
                                      "core/patrol/snapshot_encoder.h"};
    return std::ranges::find(internals, name) != internals.end();
}

bool readsFiles(std::string_view name)
{
    constexpr std::array headers = {"filesystem", "fstream",   "QFile",       "QDir",
                                    "QSaveFile",  "QFileInfo", "QDirIterator"};
    return std::ranges::find(headers, name) != headers.end()
           || name == "platform/files/atomic_file.h" || name == "platform/files/tree_reader.h";
}

auto in(std::string folder)
{
    return [folder = std::move(folder)](const SourceFile& file) { return file.isIn(folder); };
}

auto startsWith(std::string prefix)
{
    return
        [prefix = std::move(prefix)](const std::string& name) { return name.starts_with(prefix); };
}

bool isSharedPlatform(const SourceFile& file)
{
    return file.isIn("platform") && !file.isIn("platform/linux");
}

std::vector<Wall> platformWalls()
{
    return {
        {isSharedPlatform, isSystemHeader,
         "platform/ outside its system folder includes no header of an operating system"},
        {in("platform"), isToolkitHeader, "platform/ includes nothing of the toolkit"},
        {in("platform"), startsWith("core/"), "platform/ includes nothing of core/"},
        {in("platform"), startsWith("app/"), "platform/ includes nothing of app/"},
        {[](const SourceFile& file) {
             return !file.isIn("platform/linux") && !file.isIn("tests") && !file.isIn("fuzz");
         },
         startsWith("platform/linux/"),
         "nothing outside platform/linux/ includes its headers, but for tests and fuzzers"},
    };
}

std::vector<Wall> upperWalls(const std::set<std::string>& widgetHeaders)
{
    const auto isWidgetHeader = [widgetHeaders](const std::string& name) {
        constexpr std::string_view module = "QtWidgets/";
        return name == "QtWidgets" || name.starts_with(module) || widgetHeaders.contains(name);
    };
    return {
        {in("core"), isSystemHeader, "core/ includes no header of an operating system"},
        {in("core"), isToolkitHeader, "core/ includes nothing of the toolkit"},
        {in("core"), startsWith("app/"), "core/ includes nothing of app/"},
        {in("app/model"), isWidgetHeader, "app/model/ knows no widget"},
        {in("app/model"), startsWith("app/screens/"), "app/model/ includes no screen"},
        {in("app/model"), startsWith("app/theme/"), "app/model/ includes nothing of the theme"},
        {in("app"), isCoreInternal, "app/ includes no internals of the core"},
        {in("app/screens"), readsFiles, "app/screens/ reaches no file"},
        {in("app/screens"), isSystemHeader, "app/screens/ includes no header of a system"},
    };
}

void addIncludeBreaches(const SourceFile& file, const std::vector<Wall>& walls,
                        std::vector<Breach>& found)
{
    for (const Wall& wall : walls) {
        if (!wall.holdsIn(file)) {
            continue;
        }
        for (const Include& include : file.includes) {
            if (wall.forbids(include.name)) {
                found.push_back(
                    {file.path, include.line, wall.sentence + " (" + include.name + ")"});
            }
        }
    }
}

/// Whether `word` stands in `line` with no letter, digit or "_" at either side, in any case.
bool mentions(std::string_view line, std::string_view word)
{
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == b;
    };
    const auto isWordCharacter = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
    };
    auto from = line.begin();
    while (true) {
        const auto at = std::search(from, line.end(), word.begin(), word.end(), same);
        if (at == line.end()) {
            return false;
        }
        const auto end = at + static_cast<std::ptrdiff_t>(word.size());
        if ((at == line.begin() || !isWordCharacter(*(at - 1)))
            && (end == line.end() || !isWordCharacter(*end))) {
            return true;
        }
        from = at + 1;
    }
}

void addSystemWords(const SourceFile& file, std::vector<Breach>& found)
{
    constexpr std::array words = {"linux",    "unix",    "posix",    "gnu",      "macos",
                                  "darwin",   "win32",   "inotify",  "epoll",    "statx",
                                  "getdents", "openat",  "fsevents", "getxattr", "lstat",
                                  "ioctl",    "mkdirat", "renameat", "renameat2"};
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
        for (const char* word : words) {
            if (mentions(file.lines[i], word)) {
                found.push_back({file.path, i + 1,
                                 std::string("headers of platform/ outside its system folder speak "
                                             "of no operating system (")
                                     + word + ")"});
            }
        }
    }
}

}  // namespace

std::vector<Breach> breaches(const std::vector<SourceFile>& files,
                             const std::set<std::string>& widgetHeaders)
{
    const std::vector<Wall> platform = platformWalls();
    const std::vector<Wall> upper = upperWalls(widgetHeaders);
    std::vector<Breach> found;
    for (const SourceFile& file : files) {
        addIncludeBreaches(file, platform, found);
        addIncludeBreaches(file, upper, found);
        if (isSharedPlatform(file) && file.isHeader()) {
            addSystemWords(file, found);
        }
        if (file.lines.size() > longestSource) {
            found.push_back({file.path, file.lines.size(),
                             "a source has at most " + std::to_string(longestSource)
                                 + " lines; split it by concept"});
        }
    }
    return found;
}

std::set<std::string> headerNames(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(folder)) {
        if (item.is_regular_file()) {
            names.insert(item.path().filename().string());
        }
    }
    return names;
}

}  // namespace gruk::repository
