#include "tests/promises/random_user.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

#include <gtest/gtest.h>

#include "platform/files/moves.h"

namespace gruk::test {

namespace {

namespace fs = std::filesystem;

constexpr std::array names = {"a.png",
                              "b.png",
                              "Screenshot 1.png",
                              "n.txt",
                              "x.pdf",
                              "s.mov",
                              "z.zip",
                              "Images",
                              "dir",
                              "Documents",
                              "link",
                              "\xFF bad",
                              ".dot",
                              "kept Hoard \xE2\x80\x94 x",
                              "App.app"};

bool stands(const std::string& path)
{
    struct stat facts {};
    return ::lstat(path.c_str(), &facts) == 0;
}

/// Where what stood at `path` must stand after the moves, of which none lies inside another.
std::string placeAfter(const std::string& path,
                       const std::vector<std::pair<std::string, std::string>>& moves)
{
    for (const auto& [from, to] : moves) {
        if (pathIsAtOrBelow(path, from)) {
            return to + path.substr(from.size());
        }
    }
    return path;
}

std::vector<std::pair<std::string, std::string>> movesOf(const std::vector<StashedItem>& items)
{
    std::vector<std::pair<std::string, std::string>> moves;
    for (const StashedItem& item : items) {
        moves.emplace_back(item.originalURL.path(), item.stashedURL.path());
    }
    return moves;
}

}  // namespace

RandomUser::RandomUser(const MovesHouse& house, std::uint64_t seed, const MoveCalls& calls,
                       Around around)
    : house_(house), random_(seed), around_(std::move(around)), trash_(calls), stash_(calls),
      organise_(calls)
{
}

void RandomUser::furnish()
{
    const std::size_t count = 3 + pick(8);
    for (std::size_t i = 0; i < count; ++i) {
        make(anyFolder() + "/" + anyName());
    }
}

void RandomUser::act()
{
    switch (pick(11)) {
    case 0:
    case 1:
        return trash();
    case 2:
        return undoTrash();
    case 3:
        return stash();
    case 4:
        return undoMoves(lastStash_);
    case 5:
        return organise(false);
    case 6:
        return undoMoves(lastOrganise_);
    case 7:
        return organise(true);
    default:
        return edit();
    }
}

std::size_t RandomUser::pick(std::size_t count)
{
    return static_cast<std::size_t>(random_() % count);
}

std::string RandomUser::anyName()
{
    return names[pick(names.size())];
}

std::optional<std::string> RandomUser::anyItem()
{
    const auto items = MovesHouse::itemsBelow(house_.realm().path());
    return items.empty() ? std::nullopt : std::optional(items[pick(items.size())]);
}

std::string RandomUser::anyFolder()
{
    const auto item = anyItem();
    struct stat facts {};
    return item && chance(2) && ::lstat(item->c_str(), &facts) == 0 && S_ISDIR(facts.st_mode)
               ? *item
               : house_.realm().path();
}

void RandomUser::make(const std::string& path)
{
    if (stands(path)) {
        return;
    }
    std::error_code error;
    switch (pick(6)) {
    case 0:
        fs::create_directory(path, error);
        ++made_;
        std::ofstream(path + "/inside " + std::to_string(made_)) << made_;
        break;
    case 1:
        // One that leads nowhere, one that leads out of the realm, one to itself.
        fs::create_symlink(std::array<std::string, 3>{"nowhere", "../outside", path}[pick(3)], path,
                           error);
        break;
    default:
        std::ofstream(path) << "content " << ++made_;
        (void)::chmod(path.c_str(), static_cast<mode_t>(0600 + pick(0100)));
        (void)::setxattr(path.c_str(), "user.mark", "mark", 4, 0);
    }
}

void RandomUser::edit()
{
    ++counts_.edits;
    const auto item = anyItem();
    if (!item || chance(2)) {
        return make(anyFolder() + "/" + anyName());
    }
    std::error_code error;
    switch (pick(4)) {
    case 0:
        if (const std::string to = anyFolder() + "/" + anyName(); !stands(to)) {
            fs::rename(*item, to, error);
        }
        break;
    case 1:
        fs::remove_all(*item, error);
        break;
    case 2:
        if (fs::is_regular_file(fs::symlink_status(*item))) {
            std::ofstream(*item, std::ios::app) << " and more " << ++made_;
        }
        break;
    default: {
        // Takes something out of the Trash by hand.
        const auto trashed = MovesHouse::itemsBelow(house_.home().path(".local/share/Trash/files"));
        if (!trashed.empty()) {
            const std::string& path = trashed[pick(trashed.size())];
            fs::remove_all(path, error);
            takeNameInTrash(path);
        }
    }
    }
}

std::map<std::string, std::uint64_t> RandomUser::numbers() const
{
    std::map<std::string, std::uint64_t> found;
    for (const std::string& folder :
         {house_.realm().path(), house_.home().path(".local/share/Trash/files")}) {
        for (const std::string& path : MovesHouse::itemsBelow(folder)) {
            struct stat facts {};
            if (::lstat(path.c_str(), &facts) == 0) {
                constexpr std::uint64_t roomForMode = 1U << 16U;
                found[path] = facts.st_ino * roomForMode + facts.st_mode;
            }
        }
    }
    return found;
}

void RandomUser::run(const std::string& name, const std::function<std::vector<Move>()>& operate)
{
    const std::map<std::string, std::uint64_t> before = numbers();
    std::vector<Move> moves;
    around_(name, [&] { moves = operate(); });
    const std::map<std::string, std::uint64_t> after = numbers();
    for (const auto& [path, number] : before) {
        const auto now = after.find(placeAfter(path, moves));
        EXPECT_TRUE(now != after.end() && now->second == number)
            << name << ": " << path << " is not where the service said";
    }
}

void RandomUser::takeNameInTrash(const std::string& path)
{
    const fs::path place(path);
    const fs::path trash = house_.home().path(".local/share/Trash");
    if (place.parent_path() != trash / "files" || chance(2)) {
        return;
    }
    std::ofstream(path) << "of another program " << ++made_;
    std::ofstream(trash / "info" / (place.filename().string() + ".trashinfo"))
        << "[Trash Info]\nPath=/elsewhere/item\nDeletionDate=2026-11-21T00:00:00\n";
}

void RandomUser::count(std::size_t moved, std::size_t refused)
{
    ++counts_.operations;
    counts_.moved += moved;
    counts_.refused += refused;
}

void RandomUser::trash()
{
    std::vector<TrashRequest> requests;
    for (std::size_t i = 0, many = 1 + pick(3); i < many; ++i) {
        if (const auto item = anyItem()) {
            const FileURL url(*item);
            FileIdentity identity = TrashService::currentIdentity(url).value_or(FileIdentity());
            if (chance(8)) {
                ++identity.inode;
            }
            requests.push_back({url, 1, identity});
        }
    }
    TrashOperation operation;
    run("trash", [&] {
        operation = trash_.moveToTrash(requests, house_.realm());
        std::vector<Move> moves;
        for (const TrashedItem& item : operation.moved) {
            moves.emplace_back(item.originalURL.path(), item.trashURL.path());
        }
        // An item inside one that followed it went first.
        return moves;
    });
    for (const TrashedItem& item : operation.moved) {
        EXPECT_TRUE(stands(item.trashURL.path()));
        EXPECT_FALSE(stands(item.originalURL.path()));
    }
    count(operation.moved.size(), operation.failures.size());
    if (!operation.moved.empty()) {
        lastTrash_ = std::move(operation);
    }
}

void RandomUser::undoTrash()
{
    if (!lastTrash_) {
        return;
    }
    RestoreOperation operation;
    run("undo of trash", [&] {
        operation = trash_.restore(lastTrash_->moved, house_.realm());
        std::vector<Move> moves;
        for (const TrashedItem& item : operation.restored) {
            moves.emplace_back(item.trashURL.path(), item.originalURL.path());
        }
        return moves;
    });
    count(0, operation.failures.size());
    counts_.putBack += operation.restored.size();
    for (const TrashedItem& item : operation.restored) {
        EXPECT_TRUE(stands(item.originalURL.path()));
        EXPECT_FALSE(stands(item.trashURL.path()));
    }
    lastTrash_.reset();
}

void RandomUser::stash()
{
    StashOperation operation;
    run("stash", [&] {
        operation = stash_.stashDesktop(house_.realm(), house_.realm());
        return movesOf(operation.moved);
    });
    count(operation.moved.size(), operation.failures.size());
    lastStash_ = std::move(operation);
}

void RandomUser::organise(bool byRules)
{
    std::vector<RealmRule> rules;
    for (std::size_t i = 0, many = pick(3); i < many; ++i) {
        rules.push_back({UUID::random(), allFileKinds[pick(allFileKinds.size())], anyName(), true});
    }
    StashOperation operation;
    run(byRules ? "filing" : "organise", [&] {
        auto plan = std::optional(organise_.planOrganise(house_.realm(), house_.realm(),
                                                         RealmRules::folderOverrides(rules)));
        if (byRules) {
            plan = RealmRules::filingPlan(*std::move(plan), rules);
        }
        if (plan) {
            operation = organise_.applyPlan(*plan, house_.realm());
        }
        return movesOf(operation.moved);
    });
    count(operation.moved.size(), operation.failures.size());
    lastOrganise_ = std::move(operation);
}

void RandomUser::undoMoves(std::optional<StashOperation>& slot)
{
    if (!slot) {
        return;
    }
    StashRestoreOperation operation;
    run("undo of moves", [&] {
        operation = stash_.restore(slot->moved, house_.realm());
        std::vector<Move> moves = movesOf(operation.restored);
        for (Move& move : moves) {
            std::swap(move.first, move.second);
        }
        return moves;
    });
    count(0, operation.failures.size());
    counts_.putBack += operation.restored.size();
    slot.reset();
}

}  // namespace gruk::test
