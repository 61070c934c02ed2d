#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace gruk::test {

/// Sets one environment variable (or takes it away) and puts back what it was at the end. One
/// thread: the environment belongs to the whole process.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::optional<std::string>& value)
        : name_(std::move(name))
    {
        if (const char* former = std::getenv(name_.c_str())) {
            former_ = former;
        }
        set(value);
    }
    ~EnvironmentVariable() { set(former_); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    void set(const std::optional<std::string>& value)
    {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> former_;
};

/// Puts temporary directories into memory as long as it lives, where there is room: for tests that
/// set up and take down thousands of them.
[[nodiscard]] inline EnvironmentVariable temporaryFilesInMemory()
{
    return {"TMPDIR", std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp"};
}

}  // namespace gruk::test
