#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"

namespace gruk::test {

/// A disk in memory for the services that move things: items by path, refusals by path, and a
/// record of what was asked of it. One thread; outlives the calls that it hands out.
class FakeDisk {
public:
    struct Item {
        FileIdentity identity;
        Bytes size = 0;
        FileKind kind = FileKind::other;
    };

    /// A new item; everything above it counts as there.
    void add(const std::string& path, FileIdentity::Kind kind = FileIdentity::Kind::file)
    {
        const bool isFolder = kind == FileIdentity::Kind::directory;
        items_[path] = {{1, ++lastInode_, kind}, 0, isFolder ? FileKind::folder : FileKind::other};
    }
    void addFolder(const std::string& path) { add(path, FileIdentity::Kind::directory); }
    /// A file that an organise finds to be of that kind.
    void addFile(const std::string& path, FileKind kind, Bytes size = 0)
    {
        add(path);
        items_[path].kind = kind;
        items_[path].size = size;
    }

    [[nodiscard]] bool has(const std::string& path) const { return items_.contains(path); }
    [[nodiscard]] FileIdentity identity(const std::string& path) const
    {
        return items_.at(path).identity;
    }
    [[nodiscard]] const std::map<std::string, Item>& items() const { return items_; }

    /// What is thrown, in these words, when the path is listed, made or moved from.
    std::map<std::string, std::string> refusals;
    /// Left out of a listing that skips hidden items, whatever its name.
    std::vector<std::string> hidden;
    /// "move a -> b", "make a", "trash a", in order.
    std::vector<std::string> record;
    std::map<std::string, StashJournalFile> journals;
    std::optional<std::string> journalRefusal;
    Date now{1'794'700'800};  // 2026-11-15 00:00:00 UTC
    FileURL volumeRoot = FileURL::directory("/");

    TrashCalls trashCalls()
    {
        TrashCalls calls;
        calls.trashItem = [this](const FileURL& url) {
            record.push_back("trash " + url.path());
            refuse(url.path());
            const FileURL trashed("/trash/" + std::string(url.lastPathComponent()));
            rename(url.path(), trashed.path());
            return trashed;
        };
        calls.fileExists = [this](const FileURL& url) { return has(url.path()); };
        calls.moveItem = mover();
        calls.identityReader = [this](const FileURL& url) -> std::optional<FileIdentity> {
            const auto found = items_.find(url.path());
            return found == items_.end() ? std::nullopt : std::optional(found->second.identity);
        };
        calls.volumeRoot = [this](const FileURL&) { return volumeRoot; };
        return calls;
    }

    StashCalls stashCalls()
    {
        StashCalls calls;
        calls.contentsOfDirectory = [this](const FileURL& url) { return list(url, true); };
        calls.fileExists = [this](const FileURL& url) { return has(url.path()); };
        calls.createDirectory = maker();
        calls.moveItem = mover();
        calls.writeJournal = journalWriter();
        calls.readJournal = [this](const FileURL& url) -> std::optional<StashJournalFile> {
            const auto found = journals.find(url.path());
            return found == journals.end() ? std::nullopt : std::optional(found->second);
        };
        calls.now = [this] { return now; };
        calls.dateNamer = [](Date) { return std::string("15 Nov 2026"); };
        calls.volumeRoot = [this](const FileURL&) { return volumeRoot; };
        return calls;
    }

    OrganiseCalls organiseCalls()
    {
        OrganiseCalls calls;
        calls.contentsOfDirectory = [this](const FileURL& url) { return list(url, false); };
        calls.fileExists = [this](const FileURL& url) { return has(url.path()); };
        calls.createDirectory = maker();
        calls.moveItem = mover();
        calls.writeJournal = journalWriter();
        calls.kindOf = [this](const FileURL& url) { return items_.at(url.path()).kind; };
        calls.fileSize = [this](const FileURL& url) { return items_.at(url.path()).size; };
        calls.volumeRoot = [this](const FileURL&) { return volumeRoot; };
        calls.now = [this] { return now; };
        return calls;
    }

private:
    void refuse(const std::string& path) const
    {
        if (const auto found = refusals.find(path); found != refusals.end()) {
            throw std::runtime_error(found->second);
        }
    }

    std::function<void(const FileURL&, const FileURL&)> mover()
    {
        return [this](const FileURL& from, const FileURL& to) {
            record.push_back("move " + from.path() + " -> " + to.path());
            refuse(from.path());
            if (!has(from.path())) {
                throw std::runtime_error("no such item");
            }
            if (has(to.path())) {
                throw std::runtime_error("something stands there");
            }
            const auto parent = items_.find(to.deletingLastPathComponent().path());
            if (parent != items_.end()
                && parent->second.identity.kind != FileIdentity::Kind::directory) {
                throw std::runtime_error("not a folder");
            }
            rename(from.path(), to.path());
        };
    }

    std::function<void(const FileURL&)> maker()
    {
        return [this](const FileURL& url) {
            record.push_back("make " + url.path());
            refuse(url.path());
            if (has(url.path())) {
                throw std::runtime_error("something stands there");
            }
            addFolder(url.path());
        };
    }

    std::function<void(const StashJournalFile&, const FileURL&)> journalWriter()
    {
        return [this](const StashJournalFile& journal, const FileURL& folder) {
            if (journalRefusal) {
                throw std::runtime_error(*journalRefusal);
            }
            journals[folder.path()] = journal;
        };
    }

    [[nodiscard]] std::vector<FileURL> list(const FileURL& folder, bool skipsHidden) const
    {
        refuse(folder.path());
        std::vector<FileURL> urls;
        for (const auto& [path, item] : items_) {
            const FileURL url(path, item.identity.kind == FileIdentity::Kind::directory
                                        ? FileURL::Names::directory
                                        : FileURL::Names::item);
            const bool isHidden = url.lastPathComponent().starts_with('.')
                                  || std::find(hidden.begin(), hidden.end(), path) != hidden.end();
            if (url.deletingLastPathComponent().path() == folder.path() && path != "/"
                && !(skipsHidden && isHidden)) {
                urls.push_back(url);
            }
        }
        // As a disk lists them: in an order that nobody asked for.
        std::reverse(urls.begin(), urls.end());
        return urls;
    }

    /// Moves an item with everything below it.
    void rename(const std::string& from, const std::string& to)
    {
        std::map<std::string, Item> next;
        for (auto& [path, item] : items_) {
            const bool moves = pathIsAtOrBelow(path, from);
            next[moves ? to + path.substr(from.size()) : path] = item;
        }
        items_ = std::move(next);
        if (auto journal = journals.extract(from)) {
            journal.key() = to;
            journals.insert(std::move(journal));
        }
    }

    std::map<std::string, Item> items_;
    std::uint64_t lastInode_ = 100;
};

}  // namespace gruk::test
