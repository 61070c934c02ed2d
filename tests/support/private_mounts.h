#pragma once

#include <functional>
#include <string>

namespace gruk::test {

/// How a body that may mount came out.
struct MountedRun {
    /// False when this process may not mount anything: the body did not run.
    bool isPermitted = false;
    /// What went wrong; empty when all went well.
    std::string complaint;
};

/// Runs `body` in a child process with a table of mounts of its own, so that what it mounts is
/// seen by nobody else and gone with it. `body` returns what went wrong, or nothing; an exception
/// counts as a complaint too.
[[nodiscard]] MountedRun runWithPrivateMounts(const std::function<std::string()>& body);

/// Mounts an empty file system in memory at `path`, with room for `bytes` (0: the usual). Throws.
void mountMemory(const std::string& path, std::size_t bytes = 0);

/// Shows the directory `shown` at `path`, too, as a mount of its own. Throws.
void mountAgain(const std::string& shown, const std::string& path);

/// Shows the directory `upper` over `lower` at `path`; changes go to `upper`, and `work` is an
/// empty directory on its disk. Throws.
void mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
                  const std::string& path);

/// Takes away what is mounted at `path`. Throws.
void unmount(const std::string& path);

/// Takes away what is mounted at `path`, also while something in it is open: as a disk goes that
/// is pulled out. What is open stays so. Throws.
void detach(const std::string& path);

}  // namespace gruk::test
