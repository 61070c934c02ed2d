#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/settings/user_defaults.h"

/// A process of its own that works with settings, for tests of what several processes do to one
/// file. Ends with 0 when all went well.
///
///     gruk_settings_process FILE store              stores a value of each type
///     gruk_settings_process FILE check              looks for just those
///     gruk_settings_process FILE count NAME NUMBER  sets the keys NAME0 to NAME(NUMBER - 1)

namespace {

using gruk::UserDefaults;

const std::string everyByte = [] {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}();

const gruk::TextDictionary folders = {{"image", "Bilder/ö \xff"}, {"$data", "AAAA"}, {"", ""}};

void store(UserDefaults& settings)
{
    settings.setBoolean("Gruk.reviewOnlyMode", false);
    settings.setText("cadence.X", "weekly");
    settings.setData("realmRules./a/b", everyByte);
    settings.setTextDictionary("organise.overrides./\xff", folders);
}

bool holdsWhatWasStored(const UserDefaults& settings)
{
    return settings.boolean("Gruk.reviewOnlyMode") == false
           && settings.text("cadence.X") == "weekly"
           && settings.data("realmRules./a/b") == everyByte
           && settings.textDictionary("organise.overrides./\xff") == folders;
}

bool run(UserDefaults& settings, std::string_view command, std::string_view name, int number)
{
    if (command == "store") {
        store(settings);
        return true;
    }
    if (command == "check") {
        return holdsWhatWasStored(settings);
    }
    for (int i = 0; i < number; ++i) {
        settings.setText(std::string(name) + std::to_string(i), std::to_string(i));
    }
    return command == "count";
}

}  // namespace

int main(int argc, char* argv[])
{
    if (argc < 3) {
        return EXIT_FAILURE;
    }
    try {
        UserDefaults settings{gruk::FileURL(argv[1])};
        const bool isCounting = argc == 5;
        const bool isWell =
            run(settings, argv[2], isCounting ? argv[3] : "", isCounting ? std::atoi(argv[4]) : 0);
        return isWell ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
