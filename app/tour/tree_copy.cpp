#include "app/tour/tree_copy.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "app/tour/space.h"
#include "platform/files/metadata.h"

namespace gruk::tour {

namespace {

namespace fs = std::filesystem;

class Copier {
public:
    Copier(fs::path from, fs::path to) : from_(std::move(from)), to_(std::move(to))
    {
        constexpr std::uintmax_t shareOfFreeSpace = 4;
        fs::create_directories(to_);
        spaceLeft_ = fs::space(to_).available / shareOfFreeSpace;
    }

    TreeCopy run()
    {
        pending_.emplace_back();
        while (!pending_.empty()) {
            const fs::path folder = std::move(pending_.back());
            pending_.pop_back();
            copyFolder(folder);
        }
        return outcome_;
    }

private:
    void copyFolder(const fs::path& relative)
    {
        std::error_code error;
        fs::directory_iterator at(from_ / relative, error);
        for (const fs::directory_iterator end; !error && at != end; at.increment(error)) {
            try {
                copyItem(relative / at->path().filename());
                ++outcome_.copied;
            } catch (const std::exception&) {
                ++outcome_.skipped;
            }
        }
        if (error) {
            ++outcome_.skipped;
        }
    }

    void copyItem(const fs::path& relative)
    {
        const fs::path source = from_ / relative;
        const fs::path target = to_ / relative;
        const ItemFacts facts = itemFacts(FileURL(source.native()));
        switch (facts.type) {
        case ItemType::directory:
            if (fs::equivalent(source, to_)) {
                // It is somewhere below what is copied, and would never end.
                ++outcome_.skipped;
                return;
            }
            fs::create_directory(target);
            pending_.push_back(relative);
            return;
        case ItemType::symbolicLink:
            fs::copy_symlink(source, target);
            return;
        case ItemType::regularFile:
            copyFile(facts, source, target);
            return;
        case ItemType::other:
            ++outcome_.skipped;
            return;
        }
    }

    void copyFile(const ItemFacts& facts, const fs::path& source, const fs::path& target)
    {
        if (facts.linkCount > 1) {
            const auto [first, isNew] =
                firstNames_.try_emplace(std::pair(facts.deviceID, facts.inode), target);
            if (!isNew) {
                fs::create_hard_link(first->second, target);
                return;
            }
        }
        auto space = static_cast<std::uint64_t>(facts.allocatedSize);
        if (space > spaceLeft_) {
            outcome_.hasSpaceOfOriginal = false;
            space = 0;
        }
        spaceLeft_ -= space;
        makeFileOfSize(target, static_cast<std::uint64_t>(facts.logicalSize), space);
        fs::last_write_time(target, fs::last_write_time(source));
    }

    fs::path from_;
    fs::path to_;
    std::uintmax_t spaceLeft_ = 0;
    std::vector<fs::path> pending_;
    std::map<std::pair<std::int32_t, std::uint64_t>, fs::path> firstNames_;
    TreeCopy outcome_;
};

}  // namespace

TreeCopy copyTree(const fs::path& from, const fs::path& to)
{
    return Copier(from, to).run();
}

void changeCopy(const fs::path& root)
{
    fs::path largest;
    std::uintmax_t largestSize = 0;
    fs::path smallest;
    std::uintmax_t smallestSize = 0;
    std::error_code ignored;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator at(root, options, ignored), end; !ignored && at != end;
         at.increment(ignored)) {
        if (!at->is_regular_file() || at->is_symlink() || at->hard_link_count() > 1) {
            continue;
        }
        const std::uintmax_t size = at->file_size();
        if (size > largestSize) {
            largest = at->path();
            largestSize = size;
        }
        if (smallest.empty() || size < smallestSize) {
            smallest = at->path();
            smallestSize = size;
        }
    }
    if (!largest.empty()) {
        constexpr std::uint64_t mostGrowth = 200'000'000;
        const std::uint64_t size = largestSize + std::min<std::uint64_t>(largestSize, mostGrowth);
        makeFileOfSize(largest, size, size);
    }
    if (!smallest.empty() && smallest != largest) {
        fs::remove(smallest);
    }
    constexpr std::uint64_t newSize = 12'000'000;
    makeFileOfSize(root / "gruk-tour-new-file.bin", newSize, newSize);
}

}  // namespace gruk::tour
