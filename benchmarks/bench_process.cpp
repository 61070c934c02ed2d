#include "benchmarks/bench_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace gruk::benchmarks {

namespace {

/// Starts `command`, its output going to `output`; none when there is no such program.
std::optional<pid_t> start(const std::vector<std::string>& command, int output)
{
    std::vector<std::string> texts = command;
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = 0;
    const int error = ::posix_spawnp(&child, command.front().c_str(), &actions, nullptr,
                                     arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error == ENOENT) {
        return std::nullopt;
    }
    if (error != 0) {
        throw std::runtime_error(command.front() + ": " + std::strerror(error));
    }
    return child;
}

void waitFor(pid_t child, const std::vector<std::string>& command)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::string text;
        for (const std::string& argument : command) {
            text += argument + " ";
        }
        throw std::runtime_error(text + "failed");
    }
}

std::string readAll(int descriptor)
{
    std::string text;
    std::array<char, 4'096> buffer{};
    while (true) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

}  // namespace

Figures runSide(const std::vector<std::string>& arguments)
{
    std::vector<std::string> command = {"/proc/self/exe", "--side"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    const std::optional<pid_t> child = start(command, ends[1]);
    ::close(ends[1]);
    const std::string text = readAll(ends[0]);
    ::close(ends[0]);
    if (!child) {
        throw std::runtime_error("this program cannot be started again");
    }
    waitFor(*child, command);
    Figures figures;
    std::istringstream in(text);
    std::string name;
    for (double value = 0; in >> name >> value;) {
        figures[name] = value;
    }
    return figures;
}

std::optional<double> runPeer(const std::vector<std::string>& command)
{
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    const double began = monotonicSeconds();
    const std::optional<pid_t> child = start(command, nowhere);
    ::close(nowhere);
    if (!child) {
        return std::nullopt;
    }
    waitFor(*child, command);
    return monotonicSeconds() - began;
}

void printFigures(const Figures& figures)
{
    for (const auto& [name, value] : figures) {
        std::printf("%s %.9f\n", name.c_str(), value);
    }
}

double monotonicSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace gruk::benchmarks
