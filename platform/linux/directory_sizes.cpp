#include "platform/linux/directory_sizes.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <utility>
#include <vector>

#include "platform/foundation/errors.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/persistently.h"
#include "platform/linux/small_file.h"
#include "platform/linux/trash_info.h"

namespace gruk {

namespace {

const std::string fileName = "directorysizes";
constexpr std::size_t longestSizesFile = 4'194'304;

std::string pathThrough(const Descriptor& directory, const std::string& name)
{
    return "/proc/self/fd/" + std::to_string(directory.number()) + "/" + name;
}

/// Throws what a failed call says.
int require(int result, const std::string& name)
{
    if (result < 0) {
        throwErrno(-result, "measure", name);
    }
    return result;
}

/// One walk over a folder, that stops where it grows too long.
class SizeWalk {
public:
    SizeWalk(const WalkLimits& limits, std::chrono::steady_clock::time_point end,
             const MoveCalls& calls)
        : limits_(limits), end_(end), calls_(calls)
    {
    }

    /// The folder and everything below it. Throws `FileError`, and `CutShort`.
    Bytes run(int directory, const std::string& name)
    {
        total_ = factsIn(directory, name).item.allocatedSize;
        enter(directory, name);
        while (!way_.empty()) {
            Level& level = way_.back();
            if (level.folders.empty()) {
                way_.pop_back();
                continue;
            }
            const std::string next = std::move(level.folders.back());
            level.folders.pop_back();
            enter(level.directory.number(), next);
        }
        return total_;
    }

    /// How many items were looked at.
    [[nodiscard]] std::size_t items() const { return items_; }

    /// Thrown, also in the middle of a folder, when the walk has grown too long.
    struct CutShort {};

private:
    /// An open folder, and those in it that are still to be walked.
    struct Level {
        Descriptor directory;
        std::vector<std::string> folders;
    };

    void requireTime() const
    {
        if (items_ > limits_.items || std::chrono::steady_clock::now() > end_) {
            throw CutShort();
        }
    }

    PlaceFacts factsIn(int directory, const std::string& name) const
    {
        PlaceFacts facts;
        require(persistently([&] {
                    return calls_.facts(directory, name.c_str(), LastLink::refused, facts);
                }),
                name);
        return facts;
    }

    void enter(int directory, const std::string& name)
    {
        if (way_.size() == limits_.depth) {
            throw CutShort();
        }
        OpenedDirectory opened = openDirectoryIn(directory, name, LastLink::refused, calls_);
        require(-opened.error, name);
        Level level{std::move(opened.directory), {}};
        require(calls_.list(level.directory.number(),
                            [&](const ListedName& child) { visit(level, child); }),
                name);
        way_.push_back(std::move(level));
        requireTime();
    }

    void visit(Level& level, const ListedName& child)
    {
        constexpr std::size_t betweenLooks = 256;
        if (++items_ % betweenLooks == 0 || items_ > limits_.items) {
            requireTime();
        }
        if (child.type == ItemType::symbolicLink) {
            // It takes no room of its own or next to none.
            return;
        }
        std::string name(child.name);
        const ItemFacts facts = factsIn(level.directory.number(), name).item;
        const bool isDirectory = facts.type == ItemType::directory;
        if (facts.type != ItemType::symbolicLink
            && (isDirectory || facts.linkCount == 1
                || seen_.emplace(facts.deviceID, facts.inode).second)) {
            total_ = checkedAdd(total_, facts.allocatedSize);
        }
        if (isDirectory) {
            level.folders.push_back(std::move(name));
        }
    }

    const WalkLimits& limits_;
    std::chrono::steady_clock::time_point end_;
    const MoveCalls& calls_;
    std::vector<Level> way_;
    std::size_t items_ = 0;
    Bytes total_ = 0;
    std::set<std::pair<std::int32_t, std::uint64_t>> seen_;
};

/// Walks one folder after the other under one set of limits.
class SizeWalks {
public:
    SizeWalks(const WalkLimits& limits, const MoveCalls& calls)
        : limits_(limits), calls_(calls), end_(std::chrono::steady_clock::now() + limits.time)
    {
    }

    std::optional<Bytes> sizeOf(int directory, const std::string& name)
    {
        SizeWalk walk(limits_, end_, calls_);
        std::optional<Bytes> size;
        try {
            size = walk.run(directory, name);
        } catch (const FileError&) {
            size.reset();
        } catch (const SizeWalk::CutShort&) {
            size.reset();
        }
        limits_.items -= std::min(limits_.items, walk.items());
        return size;
    }

private:
    WalkLimits limits_;
    const MoveCalls& calls_;
    std::chrono::steady_clock::time_point end_;
};

/// What the file says, nothing when there is none; none when it cannot be told, and then it is not
/// to be replaced.
std::optional<std::string> formerText(const Descriptor& base, const MoveCalls& calls)
{
    if (auto file = readSmallFile(base.number(), fileName, longestSizesFile, calls)) {
        return std::move(file->text);
    }
    PlaceFacts facts;
    const int result = persistently(
        [&] { return calls.facts(base.number(), fileName.c_str(), LastLink::refused, facts); });
    return result == -ENOENT ? std::optional<std::string>(std::string()) : std::nullopt;
}

/// Puts the text in the place of the file's; failures are not told.
void replace(const Descriptor& base, std::string_view text, const MoveCalls& calls)
{
    try {
        AtomicFile file(FileURL(pathThrough(base, fileName)), calls.files,
                        AtomicFile::TargetLink::replaced);
        file.write(text);
        file.commit();
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the item has moved already
    }
}

}  // namespace

std::optional<Bytes> sizeOnDisk(int directory, const std::string& name, const WalkLimits& limits,
                                const MoveCalls& calls)
{
    return SizeWalks(limits, calls).sizeOf(directory, name);
}

std::string withSizeOf(std::string_view text, std::string_view name, std::optional<Bytes> size,
                       std::int64_t written)
{
    const std::string encoded = percentEncodedPath(name);
    std::string result;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        const std::string_view whole = text.substr(0, std::min(line.size() + 1, text.size()));
        text.remove_prefix(whole.size());
        const std::size_t blank = line.rfind(' ');
        if (blank == std::string_view::npos || line.substr(blank + 1) != encoded) {
            result += whole;
        }
    }
    if (size) {
        result.append(result.empty() || result.ends_with('\n') ? "" : "\n")
            .append(std::to_string(*size) + " " + std::to_string(written) + " " + encoded + "\n");
    }
    return result;
}

void noteDirectorySizes(const Descriptor& base, const Descriptor& files,
                        const std::vector<SizeNote>& notes, const MoveCalls& calls)
{
    const std::optional<std::string> former =
        notes.empty() ? std::nullopt : formerText(base, calls);
    if (!former) {
        return;
    }
    SizeWalks walks(WalkLimits(), calls);
    std::string text = *former;
    for (const SizeNote& note : notes) {
        const std::optional<Bytes> size =
            note.written ? walks.sizeOf(files.number(), note.name) : std::nullopt;
        text = withSizeOf(text, note.name, size, note.written.value_or(0));
    }
    if (text != *former) {
        replace(base, text, calls);
    }
}

}  // namespace gruk
