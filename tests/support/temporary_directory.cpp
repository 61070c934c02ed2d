#include "tests/support/temporary_directory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void makeParents(const std::string& path)
{
    fs::create_directories(fs::path(path).parent_path());
}

}  // namespace

TemporaryDirectory::TemporaryDirectory()
{
    std::string pattern = (fs::canonical(fs::temp_directory_path()) / "gruk-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        fail(pattern);
    }
    path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code error;
    fs::remove_all(path_, error);
    if (!error) {
        return;
    }
    // The tool copes with any depth; the library's own removal holds each level open.
    const pid_t child = ::fork();
    if (child == 0) {
        ::execlp("rm", "rm", "-rf", "--", path_.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    if (child > 0) {
        ::waitpid(child, &status, 0);
    }
}

std::string TemporaryDirectory::path(std::string_view relative) const
{
    return path_ + "/" + std::string(relative);
}

std::string TemporaryDirectory::folder(std::string_view relative) const
{
    const std::string at = path(relative);
    fs::create_directories(at);
    return at;
}

std::string TemporaryDirectory::file(std::string_view relative, std::size_t size) const
{
    return fileWith(relative, std::string(size, 'x'));
}

std::string TemporaryDirectory::fileWith(std::string_view relative, std::string_view content) const
{
    const std::string at = path(relative);
    makeParents(at);
    std::ofstream out(at, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out.close();
    if (!out) {
        fail(at);
    }
    return at;
}

std::string TemporaryDirectory::symbolicLink(std::string_view relative,
                                             const std::string& target) const
{
    const std::string at = path(relative);
    makeParents(at);
    if (::symlink(target.c_str(), at.c_str()) != 0) {
        fail(at);
    }
    return at;
}

std::string TemporaryDirectory::hardLink(std::string_view relative, std::string_view existing) const
{
    const std::string at = path(relative);
    makeParents(at);
    if (::link(path(existing).c_str(), at.c_str()) != 0) {
        fail(at);
    }
    return at;
}

std::string TemporaryDirectory::read(std::string_view relative) const
{
    std::ifstream in(path(relative), std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + path(relative));
    }
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

bool succeedsAsOrdinaryUser(const std::function<bool(const TemporaryDirectory&)>& body,
                            const TemporaryDirectory& directory)
{
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && ::chown(directory.path().c_str(), nobody, nobody) != 0) {
        fail(directory.path());
    }
    const pid_t child = ::fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
            ::_exit(2);
        }
        bool succeeded = false;
        try {
            succeeded = body(directory);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "as an ordinary user: %s\n", error.what());
        }
        std::fflush(nullptr);
        ::_exit(succeeded ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace gruk::test
