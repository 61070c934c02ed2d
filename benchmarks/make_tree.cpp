#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "benchmarks/tree_names.h"

// make_tree DIR COUNT: the same tree for the same count, on every machine.

namespace gruk::benchmarks {

namespace {

constexpr std::uint64_t seed = 20'261'120;
constexpr std::uint64_t topLevel = 40;
constexpr std::size_t deepestFolder = 12;
/// Dates lie in the six years before 2026-01-01.
constexpr std::int64_t newestDate = 1'767'225'600;
constexpr std::uint64_t dateRange = std::uint64_t{6} * 365 * 86'400;

[[noreturn]] void fail(const std::string& path)
{
    throw std::runtime_error(path + ": " + std::strerror(errno));
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { ::close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

int openFolder(int parent, const std::string& path)
{
    const int folder = ::openat(parent, path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        fail(path);
    }
    return folder;
}

struct Counts {
    std::uint64_t folders = 0;
    std::uint64_t files = 0;
    std::uint64_t hardLinks = 0;
    std::uint64_t symbolicLinks = 0;

    [[nodiscard]] std::uint64_t all() const { return folders + files + hardLinks + symbolicLinks; }
};

/// Fills one folder after the other until there are enough items.
class TreeMaker {
public:
    TreeMaker(int root, std::uint64_t count) : root_(root), wanted_(count), generator_(seed) {}

    Counts make()
    {
        pending_.push_back({".", 0});
        while (made_.all() < wanted_) {
            fill(takePending());
        }
        return made_;
    }

private:
    struct Folder {
        std::string path;
        std::size_t depth = 0;
    };

    /// One time in four the newest, which makes the tree deep here and there; else the shallower
    /// of two, which keeps it broad.
    Folder takePending()
    {
        if (generator_.bounded(4) != 0) {
            std::size_t chosen = generator_.bounded(pending_.size());
            const std::size_t other = generator_.bounded(pending_.size());
            if (pending_[other].depth < pending_[chosen].depth) {
                chosen = other;
            }
            std::swap(pending_.back(), pending_[chosen]);
        }
        Folder folder = std::move(pending_.back());
        pending_.pop_back();
        return folder;
    }

    std::uint64_t childCount()
    {
        if (generator_.bounded(2'000) == 0) {
            return 2'000 + generator_.bounded(6'000);
        }
        // The smallest of three draws: most folders hold few, a dozen on average, as on the disks
        // of real systems and in source trees.
        return 2
               + std::min({generator_.bounded(40), generator_.bounded(40), generator_.bounded(40)});
    }

    void fill(const Folder& folder)
    {
        const Descriptor at(openFolder(root_, folder.path));
        const std::uint64_t children = folder.depth == 0 ? topLevel : childCount();
        for (std::uint64_t i = 0; i < children && made_.all() < wanted_; ++i) {
            addChild(at.number(), folder, pending_.size() < 2);
        }
        setDate(at.number(), folder.path);
    }

    void addChild(int at, const Folder& folder, bool mustBeFolder)
    {
        const std::uint64_t lot = generator_.bounded(1'000);
        const std::uint64_t folders = folder.depth == 0 ? 300 : 80;
        if (mustBeFolder || (lot < folders && folder.depth < deepestFolder)) {
            addFolder(at, folder);
        } else if (lot >= 990 && !linkable_.empty()) {
            addHardLink(at);
        } else if (lot >= 970) {
            addSymbolicLink(at);
        } else {
            addFile(at, folder);
        }
    }

    /// Makes one item by `make`, under another name as long as the name is taken.
    std::string makeUnder(const std::string& wantedName,
                          const std::function<int(const char* name)>& make)
    {
        std::string name = wantedName;
        for (unsigned number = 2; make(name.c_str()) < 0; ++number) {
            if (errno != EEXIST) {
                fail(name);
            }
            name = numbered(wantedName, number);
        }
        return name;
    }

    void addFolder(int at, const Folder& folder)
    {
        const std::string name = makeUnder(folderName(generator_),
                                           [&](const char* n) { return ::mkdirat(at, n, 0755); });
        setDateOf(at, name);
        // When only the deepest folders are left, the tree goes on at the root.
        const bool tooDeep = folder.depth >= deepestFolder;
        pending_.push_back(tooDeep ? Folder{".", 0}
                                   : Folder{folder.path + "/" + name, folder.depth + 1});
        ++made_.folders;
    }

    void addFile(int at, const Folder& folder)
    {
        int number = -1;
        const std::string name = makeUnder(fileName(generator_), [&](const char* n) {
            number = ::openat(at, n, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
            return number;
        });
        const Descriptor file(number);
        giveContent(number, name);
        setDate(number, name);
        remember(folder.path + "/" + name);
        ++made_.files;
    }

    /// Two in five are empty, one in twenty holds a few blocks, the others only a length.
    void giveContent(int file, const std::string& name)
    {
        static constexpr std::array<char, 4'096> block{};
        const std::uint64_t lot = generator_.bounded(100);
        if (lot < 40) {
            return;
        }
        if (lot < 95) {
            const std::uint64_t length =
                generator_.bounded(std::uint64_t{1} << (1 + generator_.bounded(22)));
            if (::ftruncate(file, static_cast<off_t>(length)) != 0) {
                fail(name);
            }
            return;
        }
        for (std::uint64_t blocks = 1 + generator_.bounded(4); blocks > 0; --blocks) {
            if (::write(file, block.data(), block.size()) != static_cast<ssize_t>(block.size())) {
                fail(name);
            }
        }
    }

    void addHardLink(int at)
    {
        const std::string& existing = linkable_[generator_.bounded(linkable_.size())];
        const std::size_t nameStart = existing.rfind('/') + 1;
        makeUnder(existing.substr(nameStart),
                  [&](const char* n) { return ::linkat(root_, existing.c_str(), at, n, 0); });
        ++made_.hardLinks;
    }

    /// Where it leads does not matter: most dangle, some name a neighbour.
    void addSymbolicLink(int at)
    {
        std::string target = generator_.bounded(2) == 0 ? "../" : "";
        target += fileName(generator_);
        const std::string name = makeUnder(fileName(generator_), [&](const char* n) {
            return ::symlinkat(target.c_str(), at, n);
        });
        setDateOf(at, name);
        ++made_.symbolicLinks;
    }

    /// Keeps some files that later ones may be links to.
    void remember(std::string path)
    {
        constexpr std::size_t kept = 512;
        if (linkable_.size() < kept) {
            linkable_.push_back(std::move(path));
        } else if (generator_.bounded(8) == 0) {
            linkable_[generator_.bounded(kept)] = std::move(path);
        }
    }

    std::array<timespec, 2> drawDates()
    {
        const auto back = static_cast<std::int64_t>(generator_.bounded(dateRange));
        const timespec date{newestDate - back, 0};
        return {date, date};
    }

    void setDate(int item, const std::string& name)
    {
        if (::futimens(item, drawDates().data()) != 0) {
            fail(name);
        }
    }

    void setDateOf(int at, const std::string& name)
    {
        if (::utimensat(at, name.c_str(), drawDates().data(), AT_SYMLINK_NOFOLLOW) != 0) {
            fail(name);
        }
    }

    int root_;
    std::uint64_t wanted_;
    SeededGenerator generator_;
    std::vector<Folder> pending_;
    std::vector<std::string> linkable_;
    Counts made_;
};

bool isEmpty(int folder)
{
    DIR* listing = ::fdopendir(::dup(folder));
    if (listing == nullptr) {
        fail("the folder");
    }
    bool empty = true;
    while (const dirent* child = ::readdir(listing)) {
        const std::string_view name = child->d_name;
        empty = empty && (name == "." || name == "..");
    }
    ::closedir(listing);
    return empty;
}

std::optional<std::uint64_t> parseCount(std::string_view text)
{
    std::uint64_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || end != text.data() + text.size() || count == 0) {
        return std::nullopt;
    }
    return count;
}

int run(const std::string& path, std::uint64_t count)
{
    if (::mkdir(path.c_str(), 0755) != 0 && errno != EEXIST) {
        fail(path);
    }
    const Descriptor root(openFolder(AT_FDCWD, path));
    if (!isEmpty(root.number())) {
        std::fprintf(stderr, "make_tree: %s is not empty; name a new or an empty folder\n",
                     path.c_str());
        return 1;
    }
    const auto began = std::chrono::steady_clock::now();
    const Counts made = TreeMaker(root.number(), count).make();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - began;
    std::printf("%llu items in %.1f s: %llu folders, %llu files, %llu hard links, "
                "%llu symbolic links\n",
                static_cast<unsigned long long>(made.all()), seconds.count(),
                static_cast<unsigned long long>(made.folders),
                static_cast<unsigned long long>(made.files),
                static_cast<unsigned long long>(made.hardLinks),
                static_cast<unsigned long long>(made.symbolicLinks));
    return 0;
}

}  // namespace

}  // namespace gruk::benchmarks

int main(int argc, char** argv)
{
    const auto count = argc == 3 ? gruk::benchmarks::parseCount(argv[2]) : std::nullopt;
    if (!count) {
        std::fprintf(stderr, "usage: make_tree DIR COUNT\n");
        return 2;
    }
    try {
        return gruk::benchmarks::run(argv[1], *count);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_tree: %s\n", error.what());
        return 1;
    }
}
