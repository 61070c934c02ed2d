#include "tests/support/moves_house.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "core/realm/stable_hash.h"
#include "platform/linux/trash_info.h"

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

/// What the services write for themselves, beside what they move.
bool isOwnRecord(const fs::path& path)
{
    const std::string name = path.filename().string();
    return name == ".gruk-stash.json" || name == ".gruk-organise.json" || name == "directorysizes"
           || name.ends_with(".trashinfo") || name.ends_with(".gruk-new");
}

std::string attributesOf(const std::string& path)
{
    std::array<char, 1'024> names{};
    const ssize_t length = ::llistxattr(path.c_str(), names.data(), names.size());
    std::map<std::string, std::string> found;
    for (ssize_t at = 0; at < length;) {
        const std::string name(names.data() + at);
        std::array<char, 256> value{};
        const ssize_t size = ::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
        found[name] = size > 0 ? std::string(value.data(), static_cast<std::size_t>(size)) : "";
        at += static_cast<ssize_t>(name.size()) + 1;
    }
    std::string text;
    for (const auto& [name, value] : found) {
        text.append(name).append("=").append(value).append(";");
    }
    return text;
}

std::string contentOf(const std::string& path, const struct stat& facts)
{
    if (S_ISLNK(facts.st_mode)) {
        return "-> " + fs::read_symlink(path).string();
    }
    if (!S_ISREG(facts.st_mode)) {
        return "special";
    }
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return std::to_string(stableHash(bytes.str()));
}

std::string line(const std::string& path)
{
    struct stat facts {};
    if (::lstat(path.c_str(), &facts) != 0) {
        return "unreadable " + path;
    }
    std::ostringstream text;
    text << contentOf(path, facts) << " mode " << std::oct << facts.st_mode << std::dec
         << " modified " << facts.st_mtim.tv_sec << "." << facts.st_mtim.tv_nsec << " of "
         << facts.st_uid << " " << attributesOf(path);
    return text.str();
}

/// Long before any test; a folder that is listed now has another date of access.
constexpr time_t longAgo = 978'307'200;  // 2001

/// The names in a folder, listed without a trace.
std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    const int opened = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOATIME | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opened < 0 ? nullptr : ::fdopendir(opened),
                                                      ::closedir);
    while (const dirent* item = listing ? ::readdir(listing.get()) : nullptr) {
        const std::string name = item->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    return names;
}

/// Calls `visit` for everything below `folder`; nothing is followed.
template <typename Visitor>
void walk(const std::string& folder, Visitor visit)
{
    for (const std::string& name : namesIn(folder)) {
        const fs::path item = fs::path(folder) / name;
        if (isOwnRecord(item)) {
            continue;
        }
        const bool isFolder = fs::is_directory(fs::symlink_status(item));
        visit(item.string(), isFolder);
        if (isFolder) {
            walk(item.string(), visit);
        }
    }
}

/// Whether a folder was last opened when `ageFolders` said so.
bool isUnopened(const std::string& folder)
{
    struct stat facts {};
    return ::lstat(folder.c_str(), &facts) == 0 && facts.st_atim.tv_sec == longAgo;
}

}  // namespace

MovesHouse::MovesHouse()
    : homeVariable_("HOME", home_.path()),
      dataVariable_("XDG_DATA_HOME", home_.path(".local/share"))
{
    home_.folder("realm");
    home_.folder("outside");
}

std::multiset<std::string> MovesHouse::census() const
{
    std::multiset<std::string> lines;
    const auto add = [&](const std::string& path, bool isFolder) {
        if (!isFolder) {
            lines.insert(line(path));
        } else if (isUnopened(path)) {
            lines.insert("a folder that nobody opened");
        }
    };
    add(home_.path("realm"), true);
    walk(home_.path("realm"), add);
    walk(home_.path(".local/share/Trash"), add);
    const auto unknown = itemsWithoutInfo();
    lines.insert(unknown.begin(), unknown.end());
    return lines;
}

std::multiset<std::string> MovesHouse::itemsWithoutInfo() const
{
    std::multiset<std::string> lines;
    const fs::path trash = home_.path(".local/share/Trash");
    for (const std::string& name : namesIn(trash / "files")) {
        std::ifstream info(trash / "info" / (name + ".trashinfo"));
        std::ostringstream text;
        text << info.rdbuf();
        if (!parseTrashInfo(text.str())) {
            lines.insert("in the Trash without an info file: " + name);
        }
    }
    return lines;
}

void MovesHouse::ageFolders() const
{
    const auto age = [](const std::string& path, bool isFolder) {
        const timespec times[2] = {{longAgo, 0}, {0, UTIME_OMIT}};
        if (isFolder) {
            ::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
        }
    };
    age(home_.path("realm"), true);
    walk(home_.path("realm"), age);
    walk(home_.path(".local/share/Trash"), age);
}

std::multiset<std::string> MovesHouse::censusWithPaths(const std::string& folder)
{
    std::multiset<std::string> lines;
    walk(folder, [&](const std::string& path, bool isFolder) {
        lines.insert(path + " " + (isFolder ? "folder" : line(path)));
    });
    return lines;
}

std::vector<std::string> MovesHouse::itemsBelow(const std::string& folder)
{
    std::vector<std::string> paths;
    walk(folder, [&](const std::string& path, bool) { paths.push_back(path); });
    return paths;
}

MoveCalls withoutWaiting()
{
    MoveCalls calls = MoveCalls::live();
    calls.startWriting = [](int) { return 0; };
    calls.synchronize = [](int) { return 0; };
    calls.synchronizeDirectory = [](int) { return 0; };
    calls.files.synchronize = [](int) { return 0; };
    calls.files.synchronizeDirectory = [](const char*) { return 0; };
    return calls;
}

void reportPromise(const std::string& name, const std::string& figures)
{
    std::printf("%s: %s\n", name.c_str(), figures.c_str());
    if (const char* folder = std::getenv("GRUK_PROMISES")) {
        fs::create_directories(folder);
        std::ofstream(std::string(folder) + "/" + name + ".txt") << name << ": " << figures << "\n";
    }
}

}  // namespace gruk::test
