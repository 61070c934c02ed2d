#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/fuzz_support.h"
#include "platform/settings/login_item.h"

namespace gruk::fuzz {

namespace {

namespace fs = std::filesystem;

/// A folder for the desktop's files, which goes with the process.
class Desktop {
public:
    Desktop()
    {
        std::string pattern = (fs::temp_directory_path() / "gruk-fuzz-XXXXXX").string();
        GRUK_REQUIRE(::mkdtemp(pattern.data()) != nullptr, "no folder for the desktop's files");
        folder_ = pattern;
        fs::create_directories(folder_ / "autostart");
        ::setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    }
    ~Desktop() { fs::remove_all(folder_); }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    void write(std::string_view entry) const
    {
        std::ofstream out(place(), std::ios::binary | std::ios::trunc);
        out.write(entry.data(), static_cast<std::streamsize>(entry.size()));
    }

    [[nodiscard]] std::string read() const
    {
        std::ifstream in(place(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

private:
    [[nodiscard]] fs::path place() const
    {
        return folder_ / "autostart" / "io.github.gruk.Gruk.desktop";
    }

    fs::path folder_;
};

/// Writing without waiting for the disk.
FileCalls quickCalls()
{
    FileCalls calls = FileCalls::live();
    calls.synchronize = [](int) { return 0; };
    calls.synchronizeDirectory = [](const char*) { return 0; };
    return calls;
}

void check(std::string_view bytes)
{
    static const Desktop desktop;
    LoginItem item(quickCalls());
    desktop.write(bytes);
    static_cast<void>(item.isEnabled());
    item.disable();
    GRUK_REQUIRE(!item.isEnabled(), "on after it was turned off");
    item.enable(FileURL("/bin/sh"));
    GRUK_REQUIRE(item.isEnabled(), "off after it was turned on");
    const std::string once = desktop.read();
    item.enable(FileURL("/bin/sh"));
    GRUK_REQUIRE(desktop.read() == once, "turning it on twice is not turning it on once");
    item.disable();
    GRUK_REQUIRE(!item.isEnabled(), "on after it was turned off");
}

}  // namespace

}  // namespace gruk::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gruk::fuzz::check(gruk::fuzz::asText(data, size));
    return 0;
}
