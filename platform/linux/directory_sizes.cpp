#include "platform/linux/directory_sizes.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <utility>
#include <vector>

#include "platform/files/metadata.h"
#include "platform/files/tree_reader.h"
#include "platform/foundation/errors.h"
#include "platform/linux/persistently.h"
#include "platform/linux/small_file.h"
#include "platform/linux/trash_info.h"

namespace gruk {

namespace {

const std::string fileName = "directorysizes";
constexpr std::size_t longestFile = 4'194'304;

std::string pathThrough(const Descriptor& directory, const std::string& name)
{
    return "/proc/self/fd/" + std::to_string(directory.number()) + "/" + name;
}

/// One walk over a folder, that stops where it grows too long.
class SizeWalk {
public:
    SizeWalk(const FileURL& folder, const WalkLimits& limits)
        : reader_(folder), limits_(limits), end_(std::chrono::steady_clock::now() + limits.time)
    {
    }

    /// Everything below the folder. Throws `FileError`, and `CutShort`.
    Bytes run()
    {
        std::vector<std::pair<std::size_t, std::string>> open{{0, std::string()}};
        while (!open.empty()) {
            const auto [depth, name] = std::move(open.back());
            open.pop_back();
            reader_.list(depth, name, [&, below = depth + 1](const ListedChild& child) {
                if (count(child)) {
                    open.emplace_back(below, child.name);
                }
            });
            requireTime();
        }
        return total_;
    }

    /// Thrown, also in the middle of a folder, when the walk has grown too long.
    struct CutShort {};

private:
    void requireTime() const
    {
        if (items_ > limits_.items || std::chrono::steady_clock::now() > end_) {
            throw CutShort();
        }
    }

    /// Adds the child; whether it is a folder to walk.
    bool count(const ListedChild& child)
    {
        constexpr std::size_t betweenLooks = 256;
        if (++items_ % betweenLooks == 0 || items_ > limits_.items) {
            requireTime();
        }
        if (!child.facts) {
            // A link, for the most part, which takes no room of its own or next to none.
            return false;
        }
        const bool isDirectory = child.facts->type == ItemType::directory;
        if (isDirectory || child.facts->linkCount == 1
            || seen_.emplace(child.facts->deviceID, child.facts->inode).second) {
            total_ = checkedAdd(total_, child.facts->allocatedSize);
        }
        return isDirectory;
    }

    TreeReader reader_;
    WalkLimits limits_;
    std::chrono::steady_clock::time_point end_;
    std::size_t items_ = 0;
    Bytes total_ = 0;
    std::set<std::pair<std::int32_t, std::uint64_t>> seen_;
};

/// What the file says, nothing when there is none; none when it cannot be told, and then it is not
/// to be replaced.
std::optional<std::string> formerText(const Descriptor& base, const MoveCalls& calls)
{
    if (auto file = readSmallFile(base.number(), fileName, longestFile, calls)) {
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

std::optional<Bytes> sizeOnDisk(const FileURL& folder, const WalkLimits& limits)
{
    try {
        const Bytes own = itemFacts(folder).allocatedSize;
        return checkedAdd(own, SizeWalk(folder, limits).run());
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const SizeWalk::CutShort&) {
        return std::nullopt;
    }
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

void noteDirectorySize(const Descriptor& base, const Descriptor& files, const std::string& name,
                       std::int64_t written, const MoveCalls& calls)
{
    const std::optional<Bytes> size =
        sizeOnDisk(FileURL::directory(pathThrough(files, name)), WalkLimits());
    const std::optional<std::string> former = formerText(base, calls);
    if (!former) {
        return;
    }
    if (std::string text = withSizeOf(*former, name, size, written); text != *former) {
        replace(base, text, calls);
    }
}

void dropDirectorySize(const Descriptor& base, const std::string& name, const MoveCalls& calls)
{
    const std::optional<std::string> former = formerText(base, calls);
    if (!former) {
        return;
    }
    if (std::string text = withSizeOf(*former, name, std::nullopt, 0); text != *former) {
        replace(base, text, calls);
    }
}

}  // namespace gruk
