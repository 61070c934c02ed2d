#include "tests/support/random_snapshot.h"

#include <algorithm>
#include <array>
#include <set>

namespace gruk::test {

namespace {

constexpr std::array<const char*, 44> names = {"a",
                                               "A",
                                               "á",
                                               "a\u0301",
                                               "ab",
                                               "a b",
                                               "a.b",
                                               "a-b",
                                               "b",
                                               "B",
                                               "_b",
                                               "file2",
                                               "file10",
                                               "File2",
                                               "file 02",
                                               "9",
                                               "10",
                                               "ß",
                                               "Ω",
                                               "日本",
                                               "\xff",
                                               "b\x80",
                                               "node_modules",
                                               ".build",
                                               "x.dmg",
                                               "x (1).dmg",
                                               "x (2).dmg",
                                               "x",
                                               "x (1)",
                                               "x (1) (2)",
                                               "x.tar.gz",
                                               "x (1).tar.gz",
                                               " (1)",
                                               "(1).txt",
                                               ".x",
                                               ".x (1)",
                                               "x\\node_modules",
                                               "p\\.build",
                                               "Library",
                                               "Caches",
                                               ".gradle",
                                               "caches",
                                               "x (1).",
                                               "~"};

/// Places that the rules know by their whole path.
constexpr std::array<const char*, 5> knownPlaces = {"Library/Caches", ".gradle/caches",
                                                    "Library/Developer/Xcode/DerivedData",
                                                    "b/node_modules", "a/.build"};

std::string randomName(SeededGenerator& draw)
{
    return names.at(draw.bounded(names.size()));
}

std::string randomPath(SeededGenerator& draw)
{
    std::string path =
        draw.bounded(6) == 0 ? std::string(knownPlaces.at(draw.bounded(5))) : randomName(draw);
    for (std::uint64_t depth = draw.bounded(4); depth > 0; --depth) {
        path += "/" + randomName(draw);
    }
    return path;
}

Bytes randomSize(SeededGenerator& draw)
{
    switch (draw.bounded(8)) {
    case 0:
        return 0;
    case 1:
        return 1'000'000'000 + static_cast<Bytes>(draw.bounded(3)) - 1;
    case 2:
        return static_cast<Bytes>(draw.bounded(1'000'000));
    default:
        return static_cast<Bytes>(draw.bounded(5));
    }
}

std::optional<Date> randomDate(SeededGenerator& draw)
{
    if (draw.bounded(5) == 0) {
        return std::nullopt;
    }
    return Date{1'700'000'000.0 + static_cast<double>(draw.bounded(80)) * 86'400.0};
}

SnapshotEntry randomEntry(SeededGenerator& draw, const std::string& path)
{
    const auto kind = allFileKinds.at(draw.bounded(allFileKinds.size()));
    return {path, randomSize(draw), randomDate(draw),
            draw.bounded(3) == 0 ? FileKind::installer : kind, draw.bounded(3) == 0};
}

/// Sometimes puts "x (3).y" of the same size beside the last entry, "x.y".
void addSecondDownload(SeededGenerator& draw, std::set<std::string>& paths,
                       std::vector<SnapshotEntry>& entries)
{
    if (draw.bounded(6) != 0) {
        return;
    }
    SnapshotEntry second = entries.back();
    std::string& path = second.relativePath;
    const std::size_t nameStart = path.rfind('/') + 1;
    const std::size_t dot = path.find('.', nameStart + 1);
    path.insert(std::min(dot, path.size()), " (" + std::to_string(draw.bounded(12)) + ")");
    if (paths.insert(path).second) {
        entries.push_back(second);
    }
}

}  // namespace

std::vector<SnapshotEntry> randomEntries(SeededGenerator& draw, std::size_t count)
{
    std::set<std::string> paths;
    std::vector<SnapshotEntry> entries;
    for (std::size_t i = 0; i < count; ++i) {
        // Often in or above what is there, so that the paths make trees.
        std::string path = randomPath(draw);
        if (!entries.empty() && draw.bounded(2) == 0) {
            const std::string other = entries.at(draw.bounded(entries.size())).relativePath;
            const std::size_t slash = other.rfind('/');
            path = draw.bounded(3) == 0 && slash != std::string::npos
                       ? other.substr(0, slash)
                       : other + "/" + randomName(draw);
        }
        if (paths.insert(path).second) {
            entries.push_back(randomEntry(draw, path));
            addSecondDownload(draw, paths, entries);
        }
    }
    return entries;
}

std::vector<SnapshotEntry> laterEntries(SeededGenerator& draw, std::vector<SnapshotEntry> entries)
{
    std::set<std::string> paths;
    std::vector<SnapshotEntry> later;
    for (SnapshotEntry& entry : entries) {
        paths.insert(entry.relativePath);
        switch (draw.bounded(6)) {
        case 0:
            continue;
        case 1:
            entry.allocatedSize = randomSize(draw);
            break;
        case 2:
            entry.modifiedAt = randomDate(draw);
            break;
        case 3:
            entry = randomEntry(draw, entry.relativePath);
            break;
        default:
            break;
        }
        later.push_back(entry);
    }
    for (const SnapshotEntry& entry : randomEntries(draw, 6)) {
        if (paths.insert(entry.relativePath).second) {
            later.push_back(entry);
        }
    }
    return later;
}

std::vector<ScanIssue> randomIssues(SeededGenerator& draw,
                                    const std::vector<SnapshotEntry>& entries)
{
    std::vector<ScanIssue> issues;
    for (std::uint64_t left = draw.bounded(4); left > 0; --left) {
        std::string path = randomPath(draw);
        if (!entries.empty() && draw.bounded(3) != 0) {
            path = entries.at(draw.bounded(entries.size())).relativePath;
            const std::size_t slash = path.rfind('/');
            switch (draw.bounded(3)) {
            case 0:
                path += "/" + randomName(draw);
                break;
            case 1:
                path = path.substr(0, slash);
                break;
            default:
                break;
            }
        }
        issues.push_back({path, static_cast<ScanIssue::Reason>(draw.bounded(4))});
    }
    return issues;
}

ScanSnapshot snapshotOf(const std::vector<SnapshotEntry>& entries, std::vector<ScanIssue> issues)
{
    ScanSnapshot snapshot;
    snapshot.id = UUID::random();
    snapshot.rootPath = "/realm";
    snapshot.capturedAt = Date{1'760'000'000};
    snapshot.entries = SnapshotEntries(entries);
    snapshot.issues = std::move(issues);
    snapshot.isComplete = true;
    return snapshot;
}

}  // namespace gruk::test
