#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files/atomic_file.h"
#include "platform/files/file_reader.h"
#include "platform/foundation/file_url.h"
#include "platform/foundation/mutex.h"
#include "platform/settings/settings_json.h"

namespace gruk {

/// The user's settings: typed values by key, in one file that all processes of the user share.
///
/// Keys and texts hold any bytes but NUL, so that a key can have a path in it. A value comes back
/// as the type that it was stored with; to a reader of another type it is absent. A reader sees
/// what other processes have written, and a write keeps what they have, also what this program
/// does not know. A process that ends at any moment leaves the settings before the write or after.
///
/// A file that makes no sense reads as empty and is never lost: the first write moves it aside, to
/// "{name}.damaged", or "{name}.damaged.2" and so on when that is taken. One that cannot be read at
/// all is not written over.
///
/// Any thread.
class UserDefaults {
public:
    /// Those of the program: `standardFile`.
    UserDefaults();
    /// Those in `file`, which need not be there yet, nor its folder.
    explicit UserDefaults(FileURL file, FileCalls calls = FileCalls::live());
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    /// "Gruk/settings.json" in the folder for configurations.
    [[nodiscard]] static FileURL standardFile();

    // The value of a key; none when there is none or it is of another type. They never throw; while
    // the file cannot be read, what was last known of it holds.
    [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const;
    /// Any bytes.
    [[nodiscard]] std::optional<std::string> data(std::string_view key) const;
    /// A dictionary of which every value is text.
    [[nodiscard]] std::optional<TextDictionary> textDictionary(std::string_view key) const;

    // Each stores one value, in place of one of any type, and makes it durable. They throw
    // `FileError`: `invalid_argument` for a NUL where none may be, and nothing is changed;
    // otherwise when the file cannot be written, and the value then holds until the end of this
    // object and is written by the next call that succeeds.
    void setBoolean(std::string_view key, bool value);
    void setText(std::string_view key, std::string_view value);
    void setData(std::string_view key, std::string_view bytes);
    void setTextDictionary(std::string_view key, const TextDictionary& value);
    /// Takes the value away, of whatever type; fails as the others do.
    void remove(std::string_view key);

    /// A value's new key, by its old one.
    using Move = std::pair<std::string, std::string>;
    /// Gives values of whatever type other keys, and takes that of `gone` away, all in one write.
    /// A key without a value leaves the other one's as it is. Throws as the others do, but nothing
    /// has changed then, also not for this object.
    void move(const std::vector<Move>& moves, std::string_view gone);

private:
    /// Changes that are not in the file yet; none takes the value away.
    using Changes = std::map<std::string, std::optional<std::string>>;

    /// What was last read of the file. It is held open, so that no other file can pass for it.
    struct Seen {
        std::optional<FileReader> file;
        FileStamp stamp;
        SettingsValues values;
        bool isDamaged = false;
    };

    [[nodiscard]] std::optional<std::string> json(std::string_view key) const;
    void change(std::string_view key, std::optional<std::string> json);
    void requireNoNull(std::string_view text) const;
    void refresh() const GRUK_REQUIRES(mutex_);
    void write() GRUK_REQUIRES(mutex_);
    [[nodiscard]] SettingsValues wanted() const GRUK_REQUIRES(mutex_);

    const FileURL file_;
    const FileCalls calls_;

    mutable Mutex mutex_;
    mutable Seen seen_ GRUK_GUARDED_BY(mutex_);
    Changes unsaved_ GRUK_GUARDED_BY(mutex_);
};

}  // namespace gruk
