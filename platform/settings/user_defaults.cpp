#include "platform/settings/user_defaults.h"

#include <array>
#include <utility>

#include "platform/files/damaged_file.h"
#include "platform/files/file_lock.h"
#include "platform/files/known_folders.h"
#include "platform/foundation/errors.h"
#include "platform/foundation/json_path.h"

namespace gruk {

namespace {

/// Settings are a few kilobytes; what is longer than this was never written by this program, and
/// must not be taken into memory.
constexpr std::int64_t longestSettingsFile = std::int64_t{64} << 20;

FileURL beside(const FileURL& file, std::string_view suffix)
{
    return FileURL(file.path() + std::string(suffix));
}

std::string wholeContent(FileReader& file)
{
    std::string content;
    std::array<char, 16'384> buffer{};
    while (const std::size_t count = file.read(buffer.data(), buffer.size())) {
        content.append(buffer.data(), count);
    }
    return content;
}

/// Makes the folder, and those missing above it, for the user alone. Throws `FileError`.
void makeFolder(const FileURL& folder, const FileCalls& calls)
{
    const auto make = [&] { return calls.makeDirectory(folder.path().c_str()); };
    int result = make();
    if (const FileURL above = folder.deletingLastPathComponent(); result < 0 && above != folder) {
        makeFolder(above, calls);
        result = make();
    }
    if (result < 0) {
        throw FileError(std::error_code(-result, std::generic_category()), "make directory",
                        folder.path());
    }
}

/// The lock that every writer of `file` takes.
FileLock writersLock(const FileURL& file, const FileCalls& calls)
{
    const FileURL lock = beside(file, ".lock");
    try {
        return FileLock(lock);
    } catch (const FileError& error) {
        if (meaning(error) != ErrorMeaning::noSuchItem) {
            throw;
        }
    }
    makeFolder(file.deletingLastPathComponent(), calls);
    return FileLock(lock);
}

}  // namespace

UserDefaults::UserDefaults() : UserDefaults(standardFile()) {}

UserDefaults::UserDefaults(FileURL file, FileCalls calls)
    : file_(std::move(file)), calls_(std::move(calls))
{
}

FileURL UserDefaults::standardFile()
{
    return configurationDirectory().appending("Gruk/settings.json");
}

std::optional<bool> UserDefaults::boolean(std::string_view key) const
{
    const std::optional<std::string> value = json(key);
    return value ? booleanFromJSON(*value) : std::nullopt;
}

std::optional<std::string> UserDefaults::text(std::string_view key) const
{
    const std::optional<std::string> value = json(key);
    return value ? textFromJSON(*value) : std::nullopt;
}

std::optional<std::string> UserDefaults::data(std::string_view key) const
{
    const std::optional<std::string> value = json(key);
    return value ? dataFromJSON(*value) : std::nullopt;
}

std::optional<TextDictionary> UserDefaults::textDictionary(std::string_view key) const
{
    const std::optional<std::string> value = json(key);
    return value ? textDictionaryFromJSON(*value) : std::nullopt;
}

void UserDefaults::setBoolean(std::string_view key, bool value)
{
    change(key, booleanJSON(value));
}

void UserDefaults::setText(std::string_view key, std::string_view value)
{
    requireNoNull(value);
    change(key, textJSON(value));
}

void UserDefaults::setData(std::string_view key, std::string_view bytes)
{
    change(key, dataJSON(bytes));
}

void UserDefaults::setTextDictionary(std::string_view key, const TextDictionary& value)
{
    for (const auto& [name, text] : value) {
        requireNoNull(name);
        requireNoNull(text);
    }
    change(key, textDictionaryJSON(value));
}

void UserDefaults::remove(std::string_view key)
{
    change(key, std::nullopt);
}

void UserDefaults::move(const std::vector<Move>& moves, std::string_view gone)
{
    Changes changes;
    for (const auto& [from, to] : moves) {
        requireNoNull(from);
        requireNoNull(to);
        std::optional<std::string> value = json(from);
        if (value && from != to) {
            changes.insert_or_assign(jsonPathText(to), *std::move(value));
            changes.insert_or_assign(jsonPathText(from), std::nullopt);
        }
    }
    requireNoNull(gone);
    changes.insert_or_assign(jsonPathText(gone), std::nullopt);

    const MutexLock lock(mutex_);
    const Changes former = unsaved_;
    for (auto& [key, value] : changes) {
        unsaved_.insert_or_assign(key, std::move(value));
    }
    try {
        write();
    } catch (...) {
        unsaved_ = former;
        throw;
    }
}

std::optional<std::string> UserDefaults::json(std::string_view key) const
{
    if (key.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    const std::string name = jsonPathText(key);
    const MutexLock lock(mutex_);
    if (const auto change = unsaved_.find(name); change != unsaved_.end()) {
        return change->second;
    }
    try {
        refresh();
    } catch (const FileError&) {
        // What was last known holds.
    }
    const auto value = seen_.values.find(name);
    return value == seen_.values.end() ? std::nullopt : std::optional(value->second);
}

void UserDefaults::change(std::string_view key, std::optional<std::string> json)
{
    requireNoNull(key);
    const MutexLock lock(mutex_);
    unsaved_.insert_or_assign(jsonPathText(key), std::move(json));
    write();
}

void UserDefaults::requireNoNull(std::string_view text) const
{
    if (text.find('\0') != std::string_view::npos) {
        throw FileError(std::make_error_code(std::errc::invalid_argument), "write", file_.path(),
                        "A setting holds a character that no text can hold.");
    }
}

/// Reads the file, unless it is the one last read and untouched since.
void UserDefaults::refresh() const
{
    std::optional<FileReader> file = FileReader::open(file_);
    if (!file) {
        seen_ = {};
        return;
    }
    const FileStamp stamp = file->stamp();
    if (seen_.file && seen_.stamp == stamp) {
        return;
    }
    std::optional<SettingsValues> values;
    if (stamp.size <= longestSettingsFile) {
        values = settingsFromJSON(wholeContent(*file));
    }
    const bool isDamaged = !values;
    seen_ = {std::move(file), stamp, std::move(values).value_or(SettingsValues()), isDamaged};
}

void UserDefaults::write()
{
    refresh();
    if (wanted() == seen_.values) {
        unsaved_.clear();
        return;
    }
    const FileLock lock = writersLock(file_, calls_);
    refresh();
    if (seen_.isDamaged) {
        setDamagedFileAside(file_);
    }
    SettingsValues values = wanted();
    replaceFile(file_, settingsJSON(values), calls_);
    unsaved_.clear();
    seen_ = {std::nullopt, {}, std::move(values), false};
}

/// What the file holds, with the changes that are not in it yet.
SettingsValues UserDefaults::wanted() const
{
    SettingsValues values = seen_.values;
    for (const auto& [key, value] : unsaved_) {
        if (value) {
            values.insert_or_assign(key, *value);
        } else {
            values.erase(key);
        }
    }
    return values;
}

}  // namespace gruk
