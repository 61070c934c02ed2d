#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/actions/grant_store.h"

namespace gruk::test {

/// Bookmarks that need no disk, and a record of what was done with them. Outlives the store that
/// uses its `calls`.
class FakeBookmarks {
public:
    /// What was called, in order: "make /a", "resolve /a", "start /a", "stop /a".
    std::vector<std::string> record;
    /// Where a directory is now, by the place that its bookmark was made of.
    std::map<std::string, std::string> movedTo;
    bool makingFails = false;
    bool resolvingFails = false;
    bool startingIsRefused = false;

    [[nodiscard]] BookmarkCalls calls()
    {
        return {[this](const FileURL& url) { return make(url); },
                [this](std::string_view bookmark) { return resolve(bookmark); },
                [this](const FileURL& url) {
                    record.push_back("start " + url.path());
                    return !startingIsRefused;
                },
                [this](const FileURL& url) { record.push_back("stop " + url.path()); }};
    }

    /// The bookmark that the n-th call of `make` gave for a place; with bytes that are no text.
    [[nodiscard]] static std::string bookmark(const std::string& path, int n)
    {
        return std::string("\xff\0", 2) + std::to_string(n) + ":" + path;
    }

private:
    std::string make(const FileURL& url)
    {
        record.push_back("make " + url.path());
        if (makingFails) {
            throw std::runtime_error("no bookmark");
        }
        return bookmark(url.path(), ++made_);
    }

    FileURL resolve(std::string_view bookmark)
    {
        const std::string path(bookmark.substr(bookmark.find(':') + 1));
        record.push_back("resolve " + path);
        if (resolvingFails) {
            throw std::runtime_error("not there");
        }
        const auto moved = movedTo.find(path);
        return FileURL::directory(moved == movedTo.end() ? path : moved->second);
    }

    int made_ = 0;
};

}  // namespace gruk::test
