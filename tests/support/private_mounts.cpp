#include "tests/support/private_mounts.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <exception>
#include <system_error>

namespace gruk::test {

namespace {

constexpr int notPermitted = 77;

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

bool takeOwnMounts()
{
    return ::unshare(CLONE_NEWNS) == 0
           && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

std::string complaintOf(const std::function<std::string()>& body)
{
    try {
        return body();
    } catch (const std::exception& error) {
        return std::string("thrown: ") + error.what();
    }
}

[[noreturn]] void runChild(const std::function<std::string()>& body, int output)
{
    if (!takeOwnMounts()) {
        ::_exit(notPermitted);
    }
    const std::string complaint = complaintOf(body);
    const bool isWritten = ::write(output, complaint.data(), complaint.size())
                           == static_cast<ssize_t>(complaint.size());
    ::_exit(complaint.empty() && isWritten ? 0 : 1);
}

}  // namespace

MountedRun runWithPrivateMounts(const std::function<std::string()>& body)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        fail("pipe");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        runChild(body, ends[1]);
    }
    ::close(ends[1]);
    MountedRun run;
    std::array<char, 4'096> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
        run.complaint.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    run.isPermitted = !WIFEXITED(status) || WEXITSTATUS(status) != notPermitted;
    if (run.isPermitted && run.complaint.empty() && status != 0) {
        run.complaint = "the child ended with status " + std::to_string(status);
    }
    return run;
}

void mountMemory(const std::string& path, std::size_t bytes)
{
    const std::string options = bytes == 0 ? "" : "size=" + std::to_string(bytes);
    if (::mount("tmpfs", path.c_str(), "tmpfs", 0, options.c_str()) != 0) {
        fail("mount at " + path);
    }
}

void mountAgain(const std::string& shown, const std::string& path)
{
    if (::mount(shown.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        fail("mount at " + path);
    }
}

void mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
                  const std::string& path)
{
    // Else an overlay may hide which layer a file is in.
    const std::string options =
        "xino=off,lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work;
    if (::mount("overlay", path.c_str(), "overlay", 0, options.c_str()) != 0) {
        fail("mount at " + path);
    }
}

void unmount(const std::string& path)
{
    if (::umount2(path.c_str(), 0) != 0) {
        fail("unmount " + path);
    }
}

void detach(const std::string& path)
{
    if (::umount2(path.c_str(), MNT_DETACH) != 0) {
        fail("detach " + path);
    }
}

}  // namespace gruk::test
