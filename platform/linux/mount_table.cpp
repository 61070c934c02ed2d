#include "platform/linux/mount_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "platform/files/atomic_file.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

constexpr const char* tablePath = "/proc/self/mountinfo";

std::string_view takeField(std::string_view& line)
{
    const std::string_view field = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    return field;
}

bool isOctal(char c)
{
    return c >= '0' && c <= '7';
}

/// A field with the kernel's "\040" for a blank and its like taken back.
std::string unescapedField(std::string_view field)
{
    std::string bytes;
    bytes.reserve(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && field.size() - i > 3 && isOctal(field[i + 1])
            && isOctal(field[i + 2]) && isOctal(field[i + 3])) {
            bytes += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8
                                       + (field[i + 3] - '0'));
            i += 3;
        } else {
            bytes += field[i];
        }
    }
    return bytes;
}

/// One line, "id parent major:minor root point options [optional…] - type source options".
std::optional<Mount> mountOfLine(std::string_view line)
{
    Mount mount;
    const std::string_view id = takeField(line);
    if (std::from_chars(id.data(), id.data() + id.size(), mount.id).ec != std::errc()) {
        return std::nullopt;
    }
    takeField(line);  // the parent's id
    takeField(line);  // the device
    takeField(line);  // the root within the file system
    mount.point = unescapedField(takeField(line));
    const std::size_t mark = line.find(" - ");
    if (mark == std::string_view::npos) {
        return std::nullopt;
    }
    line.remove_prefix(mark + 3);
    mount.type = unescapedField(takeField(line));
    mount.source = unescapedField(takeField(line));
    return mount;
}

}  // namespace

std::vector<Mount> mountTable()
{
    try {
        return readMountTable();
    } catch (const FileError&) {
        return {};
    }
}

std::vector<Mount> readMountTable()
{
    return parseMountTable(readFile(FileURL(tablePath)));
}

std::vector<Mount> parseMountTable(std::string_view text)
{
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (auto mount = mountOfLine(line)) {
            mounts.push_back(std::move(*mount));
        }
    }
    return mounts;
}

bool isNetworkType(const std::string& type)
{
    static constexpr std::array<std::string_view, 16> types{
        "9p",          "afs",        "ceph",      "cifs",          "coda",     "davfs",
        "nfs",         "nfs4",       "smb3",      "smbfs",         "virtiofs", "fuse.sshfs",
        "fuse.rclone", "fuse.davfs", "fuse.s3fs", "fuse.glusterfs"};
    return std::find(types.begin(), types.end(), type) != types.end();
}

}  // namespace gruk
