#include "platform/linux/attribute_lister.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace gruk {

namespace {

// Calls of Linux 6.13 that the C library does not know yet; the numbers are the same on every
// machine but Alpha.
constexpr long getxattrat = 464;
constexpr long listxattrat = 465;

/// The kernel's `struct xattr_args`.
struct AttributeArguments {
    std::uint64_t value;
    std::uint32_t size;
    std::uint32_t flags;
};

/// What is offered for the list of one item's names. The kernel allocates what is offered at every
/// call, which for its limit of 64 KB takes as long as all the rest; few items have longer lists.
constexpr std::size_t usualList = 256;
constexpr std::size_t longestNameList = 65'536;
/// Attributes that Gruk reads hold a date, a flag or an address.
constexpr long longestValue = 1'048'576;

long listRelative(int directory, const char* child, char* list, std::size_t size)
{
    return ::syscall(listxattrat, directory, child, AT_SYMLINK_NOFOLLOW, list, size);
}

bool hasRelativeCalls(int directory)
{
    char list = 0;
    return ::syscall(listxattrat, directory, "", AT_EMPTY_PATH, &list, 0) >= 0 || errno == ENOTSUP
           || errno == EACCES;
}

}  // namespace

AttributeLister::AttributeLister(std::vector<std::string> names, TreeReader::AttributeAccess access,
                                 int probe)
    : names_(std::move(names))
{
    if (names_.empty()) {
        return;
    }
    for (std::string& name : names_) {
        name.insert(0, "user.");
    }
    buffer_.resize(longestNameList);
    using Access = TreeReader::AttributeAccess;
    if (access == Access::best && hasRelativeCalls(probe)) {
        way_ = Way::relative;
    } else if (access != Access::descriptorPath && takeOwnWorkingDirectory()) {
        way_ = Way::workingDirectory;
    }
}

AttributeLister::~AttributeLister()
{
    if (formerWorkingDirectory_ >= 0) {
        // Also, so that no folder of a disk stays in use and keeps it from being unmounted.
        if (::fchdir(formerWorkingDirectory_) != 0 && ::chdir("/") != 0) {
            // Nowhere to go back to; the thread stays where it is.
        }
        ::close(formerWorkingDirectory_);
    }
}

/// Parts this thread's working directory from that of the process. False where that is forbidden,
/// as in some sandboxes.
bool AttributeLister::takeOwnWorkingDirectory()
{
    if (::unshare(CLONE_FS) != 0) {
        return false;
    }
    formerWorkingDirectory_ = ::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (formerWorkingDirectory_ < 0) {
        formerWorkingDirectory_ = ::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
    }
    return formerWorkingDirectory_ >= 0;
}

void AttributeLister::enter(int directory)
{
    directory_ = directory;
    if (way_ == Way::workingDirectory && ::fchdir(directory) != 0) {
        // A directory that may be listed but not entered.
        way_ = Way::descriptorPath;
    }
}

std::uint32_t AttributeLister::list(const char* child)
{
    // Where items carry none, asking for the length alone is cheapest; where the one before had
    // some (as on systems that label every file), the list itself is asked for at once.
    if (!expectsSome_ && listNames(child, 0) <= 0) {
        return 0;
    }
    long length = listNames(child, usualList);
    if (length < 0 && errno == ERANGE) {
        length = listNames(child, longestNameList);
    }
    expectsSome_ = length > 0;
    return length > 0 ? matches(buffer_.data(), static_cast<std::size_t>(length)) : 0;
}

/// Asks for the names of the child's attributes with `size` bytes of room; returns their length.
long AttributeLister::listNames(const char* child, std::size_t size)
{
    switch (way_) {
    case Way::relative:
        return listRelative(directory_, child, buffer_.data(), size);
    case Way::workingDirectory:
        return ::llistxattr(child, buffer_.data(), size);
    case Way::descriptorPath:
        break;
    }
    return ::llistxattr(descriptorPath(child).c_str(), buffer_.data(), size);
}

std::optional<std::string> AttributeLister::read(const char* child, std::size_t index)
{
    const char* name = names_[index].c_str();
    const long size = readValue(child, name, nullptr, 0);
    if (size < 1 || size > longestValue) {
        return std::nullopt;
    }
    std::string value(static_cast<std::size_t>(size), '\0');
    if (readValue(child, name, value.data(), value.size()) != size) {
        return std::nullopt;
    }
    return value;
}

std::string AttributeLister::descriptorPath(const char* child) const
{
    return "/proc/self/fd/" + std::to_string(directory_) + "/" + child;
}

std::uint32_t AttributeLister::matches(const char* list, std::size_t length) const
{
    std::uint32_t found = 0;
    for (std::size_t at = 0; at < length;) {
        const std::string_view name(list + at, ::strnlen(list + at, length - at));
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (name == names_[i]) {
                found |= std::uint32_t{1} << i;
            }
        }
        at += name.size() + 1;
    }
    return found;
}

long AttributeLister::readValue(const char* child, const char* name, char* value,
                                std::size_t size) const
{
    switch (way_) {
    case Way::relative: {
        AttributeArguments arguments{reinterpret_cast<std::uintptr_t>(value),
                                     static_cast<std::uint32_t>(size), 0};
        return ::syscall(getxattrat, directory_, child, AT_SYMLINK_NOFOLLOW, name, &arguments,
                         sizeof arguments);
    }
    case Way::workingDirectory:
        return ::lgetxattr(child, name, value, size);
    case Way::descriptorPath:
        break;
    }
    return ::lgetxattr(descriptorPath(child).c_str(), name, value, size);
}

}  // namespace gruk
