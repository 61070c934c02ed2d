#pragma once

#include <vector>

#include "platform/foundation/file_url.h"

namespace gruk {

/// The folders that Gruk keeps for itself: its application folder and its settings folder. They are
/// no part of what it watches, judges or moves.
///
/// A plain value; any thread. Empty by default: nothing is Gruk's own.
class OwnFolders {
public:
    OwnFolders() = default;
    /// As they are given; nothing is looked up.
    explicit OwnFolders(std::vector<FileURL> folders);
    /// The same folders, and where links on the way to them lead, so that a realm which is reached
    /// by another path knows them too. Reads the disk; a folder that is not there yet is taken for
    /// what it will be.
    static OwnFolders resolved(const std::vector<FileURL>& folders);

    /// Standardised, without repetition.
    [[nodiscard]] const std::vector<FileURL>& folders() const noexcept { return folders_; }
    /// Whether `url` is one of the folders or lies below one. Compares paths alone.
    [[nodiscard]] bool contains(const FileURL& url) const;

    friend bool operator==(const OwnFolders&, const OwnFolders&) = default;

private:
    std::vector<FileURL> folders_;
};

}  // namespace gruk
