#include "platform/files/tree_reader.h"

#include <cerrno>
#include <cstring>
#include <limits>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/foundation/require.h"
#include "platform/linux/attribute_lister.h"
#include "platform/linux/directory_chain.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/statx_facts.h"

namespace gruk {

namespace {

/// What one call of `getdents64` fills; larger gains nothing.
constexpr std::size_t listingBuffer = 65'536;

/// The fixed part of the kernel's `struct linux_dirent64`; the name follows, ended by a NUL.
struct DirectoryRecord {
    std::uint64_t inode;
    std::int64_t next;
    std::uint16_t length;
    std::uint8_t type;
};
constexpr std::size_t nameOffset = 19;

/// Behind this place nothing can stand. File systems that hash names (ext4, btrfs) give it as the
/// place behind their last entry, which saves asking once more for nothing in every directory.
constexpr std::int64_t lastPlace = std::numeric_limits<std::int64_t>::max();

bool isDotOrDotDot(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

class TreeReader::Impl {
public:
    Impl(const FileURL& root, std::vector<std::string> attributeNames, AttributeAccess access)
        : chain_(root), attributes_(std::move(attributeNames), access, chain_.open(0, {}))
    {
        struct statx answer {};
        if (::statx(chain_.open(0, {}), "", statxFlags | AT_EMPTY_PATH, statxMask, &answer) == 0) {
            device_ = factsFrom(answer).deviceID;
        }
    }

    void list(std::size_t depth, std::string_view name, Visitor visit)
    {
        directory_ = chain_.open(depth, name);
        if (attributes_.isNeeded()) {
            attributes_.enter(directory_);
        }
        for (;;) {
            const long length =
                ::syscall(SYS_getdents64, directory_, buffer_.data(), buffer_.size());
            if (length < 0 && errno == EINTR) {
                continue;
            }
            if (length < 0) {
                throwErrno(errno, "list", chain_.relativePath());
            }
            if (length == 0 || visitRecords(static_cast<std::size_t>(length), visit) == lastPlace) {
                return;
            }
        }
    }

    std::optional<std::string> attribute(const ListedChild& child, std::size_t index)
    {
        // The name stands in the buffer with the NUL behind it.
        return attributes_.read(child.name.data(), index);
    }

private:
    /// Returns the place in the directory behind the last record.
    std::int64_t visitRecords(std::size_t length, Visitor visit)
    {
        DirectoryRecord record{};
        for (std::size_t at = 0; at < length;) {
            std::memcpy(&record, buffer_.data() + at, nameOffset);
            const char* name = buffer_.data() + at + nameOffset;
            at += record.length;
            if (!isDotOrDotDot(name)) {
                visit(describe(name, record.type));
            }
        }
        return record.next;
    }

    ListedChild describe(const char* name, std::uint8_t type)
    {
        ListedChild child;
        child.name = name;
        if (type == DT_LNK) {
            child.isSymbolicLink = true;
            return child;
        }
        struct statx answer {};
        if (::statx(directory_, name, statxFlags, statxMask, &answer) != 0) {
            return child;
        }
        child.facts = factsFrom(answer);
        child.isSymbolicLink = child.facts->type == ItemType::symbolicLink;
        // Only files and directories can carry attributes of the user's; and what is mounted here
        // from elsewhere is not touched more than it must be.
        if (attributes_.isNeeded() && child.facts->deviceID == device_
            && (child.facts->type == ItemType::regularFile
                || child.facts->type == ItemType::directory)) {
            child.attributes = attributes_.list(name);
        }
        return child;
    }

    DirectoryChain chain_;
    AttributeLister attributes_;
    int directory_ = -1;
    std::int32_t device_ = 0;
    std::vector<char> buffer_ = std::vector<char>(listingBuffer);
};

TreeReader::TreeReader(const FileURL& root, std::vector<std::string> attributeNames,
                       AttributeAccess access)
{
    GRUK_REQUIRE(attributeNames.size() <= 32, "more attributes than a listing can mark");
    impl_ = std::make_unique<Impl>(root, std::move(attributeNames), access);
}

TreeReader::~TreeReader() = default;

void TreeReader::list(std::size_t depth, std::string_view name, Visitor visit)
{
    impl_->list(depth, name, visit);
}

std::optional<std::string> TreeReader::attribute(const ListedChild& child, std::size_t index)
{
    return impl_->attribute(child, index);
}

}  // namespace gruk
