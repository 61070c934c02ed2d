#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/moves_house.h"
#include "tests/support/temporary_directory.h"

/// Runs the random sequences under a tracer and looks at every system call that the services made
/// and that could lose a byte.

namespace gruk {

namespace {

constexpr const char* sequences = "200";

/// Calls that take a name or content away, or bring content in.
constexpr const char* traced =
    "unlink,unlinkat,rmdir,truncate,ftruncate,fallocate,creat,open,openat,openat2,link,linkat,"
    "mkdir,mkdirat,rename,renameat,renameat2,copy_file_range,sendfile,splice,access,faccessat,"
    "faccessat2";

/// Runs the command; returns how it ended, as `waitpid` tells.
int run(std::vector<std::string> words, const std::string& output)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("GRUK_SEQUENCES", sequences, 1);
        ::unsetenv("GRUK_PROMISES");
        // It runs the one test named, whatever part of the program this process is to run.
        ::unsetenv("GTEST_TOTAL_SHARDS");
        ::unsetenv("GTEST_SHARD_INDEX");
        // The search for leaks traces the process itself, and only one tracer can.
        const char* const options = std::getenv("ASAN_OPTIONS");
        ::setenv("ASAN_OPTIONS",
                 (std::string(options == nullptr ? "" : options) + ":detect_leaks=0").c_str(), 1);
        if (std::freopen(output.c_str(), "w", stdout) == nullptr
            || std::freopen(output.c_str(), "a", stderr) == nullptr) {
            ::_exit(126);
        }
        std::vector<char*> arguments;
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

std::string ownProgram()
{
    std::string path(4'096, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return path;
}

/// The last quoted text of a call, which is the name that it acts upon last.
std::string lastName(const std::string& call)
{
    const std::size_t end = call.rfind('"');
    const std::size_t begin = end == std::string::npos ? end : call.rfind('"', end - 1);
    return begin == std::string::npos ? "" : call.substr(begin + 1, end - begin - 1);
}

std::string firstName(const std::string& call)
{
    const std::size_t begin = call.find('"');
    const std::size_t end = begin == std::string::npos ? begin : call.find('"', begin + 1);
    return end == std::string::npos ? "" : call.substr(begin + 1, end - begin - 1);
}

bool isTemporary(const std::string& name)
{
    return name.ends_with(".gruk-new");
}

bool succeeded(const std::string& call)
{
    const std::size_t equals = call.rfind(" = ");
    return equals != std::string::npos && call[equals + 3] != '-';
}

/// A name that a call takes relative to a directory, with the number of that directory: the words
/// from the last number that stands before a quoted text.
std::string lastPlace(const std::string& call)
{
    const std::size_t end = call.rfind('"');
    const std::size_t begin = end == std::string::npos ? end : call.rfind('"', end - 1);
    if (begin == std::string::npos) {
        return "";
    }
    const std::size_t number = call.find_last_of("(,", begin - 3);
    const std::size_t first = call.find_first_not_of(" (,", number);
    return call.substr(first, end + 1 - first);
}

/// Looks at the calls of a service one after the other.
class Judge {
public:
    /// What is wrong with a call; none when it can lose nothing.
    std::optional<std::string> objection(const std::string& call)
    {
        const std::string name = call.substr(0, call.find('('));
        if (name == "access" || name == "faccessat" || name == "faccessat2") {
            return std::nullopt;
        }
        if (name == "mkdir" || name == "mkdirat") {
            return note(call);
        }
        if (name == "unlink" || name == "unlinkat") {
            return ofRemoval(call);
        }
        if (name == "open" || name == "openat" || name == "openat2") {
            return ofOpening(call);
        }
        if (name == "rename" || name == "renameat" || name == "renameat2") {
            return ofRename(call);
        }
        return "is not a call that a move makes";
    }

    [[nodiscard]] std::size_t movesOverPlaceHolders() const { return moves_; }

private:
    using Objection = std::optional<std::string>;

    /// What was just made where nothing stood is the services' own.
    Objection note(const std::string& call)
    {
        if (succeeded(call)) {
            made_ = lastPlace(call);
        }
        return std::nullopt;
    }

    Objection ofOpening(const std::string& call)
    {
        const bool writes =
            call.find("O_WRONLY") != std::string::npos || call.find("O_RDWR") != std::string::npos;
        const bool isNew = call.find("O_EXCL") != std::string::npos;
        if (isNew) {
            note(call);
        }
        return call.find("O_TRUNC") == std::string::npos && (!writes || isNew)
                   ? std::nullopt
                   : Objection("opens a file that exists for writing");
    }

    Objection ofRemoval(const std::string& call) const
    {
        const std::string file = lastName(call);
        const bool isOwn = isTemporary(file) || file.ends_with(".trashinfo");
        const bool isPlaceHolder = !made_.empty() && lastPlace(call) == made_;
        return isPlaceHolder || (isOwn && call.find("AT_REMOVEDIR") == std::string::npos)
                   ? std::nullopt
                   : Objection("removes " + file);
    }

    /// Only a temporary file, a move that refuses a taken name, and a move over the place-holder
    /// that was made right before it.
    Objection ofRename(const std::string& call)
    {
        if (call.find("RENAME_NOREPLACE") != std::string::npos || isTemporary(firstName(call))) {
            return std::nullopt;
        }
        const bool isOver = !made_.empty() && lastPlace(call) == made_;
        moves_ += isOver ? 1 : 0;
        made_.clear();
        return isOver ? std::nullopt : Objection("may replace something");
    }

    /// The file or folder that was made last where nothing stood.
    std::string made_;
    std::size_t moves_ = 0;
};

TEST(Promises, aTraceOfTheServicesShowsNoCallThatCouldLoseAFile)
{
    const test::TemporaryDirectory folder;
    const std::string trace = folder.path("trace");
    const int status =
        run({"strace", "-f", "-qq", "-s", "4096", "-e", std::string("trace=") + traced, "-o", trace,
             ownProgram(), "--gtest_filter=Promises.randomSequencesEndWithEveryFileAccountedFor"},
            folder.path("output"));
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) {
        GTEST_SKIP() << "strace is not installed";
    }
    if (folder.read("output").find("Operation not permitted") != std::string::npos) {
        GTEST_SKIP() << "this system lets no process be traced";
    }
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << folder.read("output");

    std::ifstream lines(trace);
    std::string line;
    std::size_t count = 0;
    std::map<std::string, std::size_t> byName;
    // The tests' own helper processes are traced, too; a service runs in one process.
    std::optional<std::string> process;
    Judge judge;
    while (std::getline(lines, line)) {
        const std::size_t blank = line.find(' ');
        const std::string id = line.substr(0, blank);
        const std::string call = line.substr(line.find_first_not_of(' ', blank));
        if (call.find("gruk-service-begins") != std::string::npos) {
            process = id;
        } else if (call.find("gruk-service-ends") != std::string::npos) {
            process.reset();
        } else if (process == id && call.find('(') != std::string::npos && !call.starts_with("---")
                   && !call.starts_with("+++")) {
            ++count;
            ++byName[call.substr(0, call.find('('))];
            if (const auto wrong = judge.objection(call)) {
                ADD_FAILURE() << call << ": " << *wrong;
            }
        }
    }
    EXPECT_GT(byName["renameat2"], 100U) << "the trace shows no moves";
    EXPECT_GT(judge.movesOverPlaceHolders(), 30U);
    std::string figures = std::to_string(count) + " system calls of the services looked at (";
    for (const auto& [name, many] : byName) {
        figures += name + " " + std::to_string(many) + ", ";
    }
    figures.resize(figures.size() - 2);
    test::reportPromise("system calls", figures + "); none could lose a file");
}

}  // namespace

}  // namespace gruk
