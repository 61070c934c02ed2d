#include "platform/settings/login_item.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/known_folders.h"
#include "platform/foundation/errors.h"
#include "platform/linux/desktop_entry.h"
#include "platform/linux/desktop_exec.h"

namespace gruk {

namespace {

constexpr std::string_view typeKey = "Type";
constexpr std::string_view nameKey = "Name";
constexpr std::string_view commentKey = "Comment";
constexpr std::string_view iconKey = "Icon";
constexpr std::string_view terminalKey = "Terminal";
constexpr std::string_view execKey = "Exec";
constexpr std::string_view tryExecKey = "TryExec";
constexpr std::string_view hiddenKey = "Hidden";
/// What the settings programs of several desktops switch in place of `Hidden`.
constexpr std::string_view switchKey = "X-GNOME-Autostart-enabled";

constexpr std::string_view applicationType = "Application";
constexpr std::string_view applicationID = "io.github.gruk.Gruk";
/// Tells the program that it was not the user who started it.
constexpr std::string_view backgroundOption = "--background";

FileURL entryURL()
{
    return configurationDirectory().appending("autostart/" + std::string(applicationID)
                                              + ".desktop");
}

/// The entry that is there; none when there is none, or none that a desktop would take.
std::optional<DesktopEntry> readEntry(const FileURL& url)
{
    try {
        return DesktopEntry::parse(readFile(url));
    } catch (const FileError& error) {
        if (meaning(error) == ErrorMeaning::noSuchItem) {
            return std::nullopt;
        }
        throw;
    }
}

DesktopEntry newEntry()
{
    DesktopEntry entry;
    entry.setText(typeKey, applicationType);
    entry.setText(nameKey, "Gruk");
    entry.setText(commentKey, "Maps your folders, remembers them, and shows what changed");
    entry.setText(iconKey, applicationID);
    entry.setBoolean(terminalKey, false);
    return entry;
}

bool isExecutableFile(const std::string& path)
{
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode)
           && ::eaccess(path.c_str(), X_OK) == 0;
}

/// Whether `program`, a path or a name that is looked for where programs are, can be started.
bool canBeStarted(const std::string& program)
{
    if (program.find('/') != std::string::npos) {
        return program.starts_with('/') && isExecutableFile(program);
    }
    const char* const path = std::getenv("PATH");
    std::string_view rest = path == nullptr ? "" : path;
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        if (folder.starts_with('/') && isExecutableFile(std::string(folder) + "/" + program)) {
            return true;
        }
    }
    return false;
}

bool starts(const DesktopEntry& entry)
{
    const std::optional<std::string> exec = entry.text(execKey);
    const std::optional<std::string> program = exec ? programOfExec(*exec) : std::nullopt;
    const std::optional<std::string> tried = entry.text(tryExecKey);
    return entry.text(typeKey) == applicationType && !entry.boolean(hiddenKey).value_or(false)
           && entry.boolean(switchKey).value_or(true) && program && canBeStarted(*program)
           && (!tried || canBeStarted(*tried));
}

}  // namespace

LoginItem::LoginItem(FileCalls calls) : calls_(std::move(calls)) {}

bool LoginItem::isEnabled() const
{
    try {
        const std::optional<DesktopEntry> entry = readEntry(entryURL());
        return entry && starts(*entry);
    } catch (const FileError&) {
        return false;
    }
}

void LoginItem::enable(const FileURL& program)
{
    const std::optional<std::string> exec = execValue(program.path());
    if (!exec) {
        throw FileError(std::make_error_code(std::errc::invalid_argument), "register",
                        program.path(), "The desktop cannot start a program at this place.");
    }
    const FileURL url = entryURL();
    DesktopEntry entry = readEntry(url).value_or(newEntry());
    entry.setText(typeKey, applicationType);
    entry.setText(execKey, *exec + " " + std::string(backgroundOption));
    entry.remove(tryExecKey);
    entry.remove(hiddenKey);
    if (entry.text(switchKey)) {
        entry.setBoolean(switchKey, true);
    }
    replaceFile(url, entry.fileText(), calls_);
}

void LoginItem::disable()
{
    const FileURL url = entryURL();
    std::optional<DesktopEntry> entry = readEntry(url);
    if (!entry || entry->boolean(hiddenKey) == true) {
        return;
    }
    entry->setBoolean(hiddenKey, true);
    replaceFile(url, entry->fileText(), calls_);
}

}  // namespace gruk
