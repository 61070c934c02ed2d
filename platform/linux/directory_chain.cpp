#include "platform/linux/directory_chain.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/foundation/require.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/long_path.h"
#include "platform/linux/quiet_open.h"

namespace gruk {

namespace {

int openSubdirectory(int parent, const char* name)
{
    return openQuietly(parent, name, O_NOFOLLOW);
}

/// A directory at a path of any length; throws `FileError`.
int openAtPath(const std::string& path)
{
    int descriptor = openQuietly(AT_FDCWD, path.c_str());
    if (descriptor < 0 && errno == ENAMETOOLONG) {
        const OpenedParent parent = openParent(path, "open");
        descriptor = openQuietly(parent.directory.number(), parent.name.c_str());
    }
    if (descriptor < 0) {
        throwErrno(errno, "open", path);
    }
    return descriptor;
}

}  // namespace

DirectoryChain::DirectoryChain(const FileURL& root) : rootPath_(root.path())
{
    levels_.push_back({std::string(), openAtPath(rootPath_), 0, 0});
}

DirectoryChain::~DirectoryChain()
{
    for (Level& level : levels_) {
        if (level.descriptor >= 0) {
            ::close(level.descriptor);
        }
    }
}

int DirectoryChain::open(std::size_t depth, std::string_view name)
{
    GRUK_REQUIRE(depth <= levels_.size(), "a directory whose parent was not listed before");
    if (depth == 0) {
        truncate(1);
        if (::lseek(levels_[0].descriptor, 0, SEEK_SET) < 0) {
            fail(errno, {});
        }
        return levels_[0].descriptor;
    }
    truncate(depth);
    const int parent = descriptorAt(depth - 1);
    Level level{std::string(name), -1, 0, 0};
    level.descriptor = openSubdirectory(parent, level.name.c_str());
    if (level.descriptor < 0) {
        fail(errno, name);
    }
    levels_.push_back(std::move(level));
    if (depth > heldOpen) {
        release(levels_[depth - heldOpen]);
    }
    return levels_.back().descriptor;
}

std::string DirectoryChain::relativePath() const
{
    std::string path;
    for (std::size_t i = 1; i < levels_.size(); ++i) {
        path.append(path.empty() ? "" : "/").append(levels_[i].name);
    }
    return path;
}

void DirectoryChain::truncate(std::size_t depth)
{
    while (levels_.size() > depth) {
        if (levels_.back().descriptor >= 0) {
            ::close(levels_.back().descriptor);
        }
        levels_.pop_back();
    }
}

/// Closes a directory, and remembers which one it was.
void DirectoryChain::release(Level& level)
{
    if (level.descriptor < 0) {
        return;
    }
    struct stat facts {};
    if (::fstat(level.descriptor, &facts) == 0) {
        level.device = facts.st_dev;
        level.inode = facts.st_ino;
    }
    ::close(level.descriptor);
    level.descriptor = -1;
}

/// Opens what was closed on the way down to `depth`, from the nearest ancestor that is open.
int DirectoryChain::descriptorAt(std::size_t depth)
{
    std::size_t at = depth;
    while (levels_[at].descriptor < 0) {
        --at;  // The root is always open.
    }
    for (; at < depth; ++at) {
        Level& next = levels_[at + 1];
        const int descriptor = openSubdirectory(levels_[at].descriptor, next.name.c_str());
        if (descriptor < 0) {
            fail(errno, next.name);
        }
        next.descriptor = descriptor;
        struct stat facts {};
        if (::fstat(descriptor, &facts) != 0 || facts.st_dev != next.device
            || facts.st_ino != next.inode) {
            // Another directory took its place; what was in the first is not to be found here.
            release(next);
            fail(ENOENT, next.name);
        }
        if (at > 0 && at + heldOpen < depth) {
            release(levels_[at]);
        }
    }
    return levels_[depth].descriptor;
}

void DirectoryChain::fail(int error, std::string_view name) const
{
    std::string path = rootPath_ + "/" + relativePath();
    if (!name.empty()) {
        path.append(path.back() == '/' ? "" : "/").append(name);
    }
    throwErrno(error, "open", path);
}

}  // namespace gruk
