#include "benchmarks/bench_floor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace gruk::benchmarks {

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
/// A call that the C library does not know yet; the number is the same on every machine but Alpha.
constexpr long listxattrat = 465;
constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;

/// A directory whose subfolders are still to be entered, by the names behind one another.
struct Level {
    int descriptor = -1;
    std::vector<char> subfolders;
    std::size_t next = 0;
};

class BareWalk {
public:
    BareWalk(int root, Asking asking) : asksAttributes_(asking == Asking::factsAndAttributes)
    {
        char none = 0;
        if (asksAttributes_ && ::syscall(listxattrat, root, "", AT_EMPTY_PATH, &none, 0) < 0
            && errno == ENOSYS) {
            throw std::runtime_error("this system cannot list attributes within a directory");
        }
        struct statx facts {};
        ::statx(root, "", AT_EMPTY_PATH, wanted, &facts);
        deviceMajor_ = facts.stx_dev_major;
        deviceMinor_ = facts.stx_dev_minor;
        enter(root);
    }

    std::uint64_t run()
    {
        while (depth_ > 0) {
            Level& level = levels_[depth_ - 1];
            if (level.next == level.subfolders.size()) {
                ::close(level.descriptor);
                --depth_;
                continue;
            }
            const char* name = level.subfolders.data() + level.next;
            level.next += std::strlen(name) + 1;
            const int folder = ::openat(level.descriptor, name, openFlags);
            if (folder >= 0) {
                enter(folder);
            }
        }
        return items_;
    }

private:
    static constexpr std::size_t bufferSize = 65'536;

    void enter(int descriptor)
    {
        if (depth_ == levels_.size()) {
            levels_.emplace_back();
        }
        Level& level = levels_[depth_++];
        level.descriptor = descriptor;
        level.subfolders.clear();
        level.next = 0;
        while (true) {
            const long count = ::syscall(SYS_getdents64, descriptor, buffer_.data(), bufferSize);
            if (count <= 0) {
                return;
            }
            for (long at = 0; at < count;) {
                const auto* child = reinterpret_cast<const dirent64*>(buffer_.data() + at);
                at += child->d_reclen;
                visit(level, static_cast<const char*>(child->d_name));
            }
        }
    }

    void visit(Level& level, const char* name)
    {
        const std::string_view text = name;
        if (text == "." || text == "..") {
            return;
        }
        ++items_;
        struct statx facts {};
        constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
        if (::statx(level.descriptor, name, flags, wanted, &facts) != 0) {
            return;
        }
        if (asksAttributes_ && (S_ISREG(facts.stx_mode) || S_ISDIR(facts.stx_mode))) {
            char none = 0;
            ::syscall(listxattrat, level.descriptor, name, AT_SYMLINK_NOFOLLOW, &none, 0);
        }
        if (!S_ISDIR(facts.stx_mode) || facts.stx_dev_major != deviceMajor_
            || facts.stx_dev_minor != deviceMinor_) {
            return;
        }
        level.subfolders.insert(level.subfolders.end(), name, name + text.size() + 1);
    }

    bool asksAttributes_;
    std::vector<Level> levels_;
    std::size_t depth_ = 0;
    std::vector<char> buffer_ = std::vector<char>(bufferSize);
    std::uint64_t items_ = 0;
    std::uint32_t deviceMajor_ = 0;
    std::uint32_t deviceMinor_ = 0;
};

}  // namespace

std::uint64_t bareWalk(const std::string& root, Asking asking)
{
    // It holds one directory open for each level, which may be thousands.
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    const int descriptor = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        throw std::runtime_error(root + ": " + std::strerror(errno));
    }
    return BareWalk(descriptor, asking).run();
}

}  // namespace gruk::benchmarks
