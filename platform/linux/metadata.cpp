#include "platform/files/metadata.h"

#include <cerrno>

#include <sys/xattr.h>

#include "platform/linux/errno_error.h"
#include "platform/linux/long_path.h"
#include "platform/linux/statx_facts.h"

namespace gruk {

namespace {

/// Under which the system keeps the attributes that belong to the user.
constexpr const char* attributePrefix = "user.";

/// The value at a path that the system takes, or at a link to it; none also when it is empty. Sets
/// `errno` when it is none.
std::optional<std::string> attributeAt(const std::string& path, const std::string& name)
{
    errno = 0;
    const ssize_t size = ::lgetxattr(path.c_str(), name.c_str(), nullptr, 0);
    if (size < 1) {
        return std::nullopt;
    }
    std::string value(static_cast<std::size_t>(size), '\0');
    if (::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size()) != size) {
        return std::nullopt;
    }
    return value;
}

/// The same for a path that is too long for the call: by way of its open parent.
std::optional<std::string> attributeAtLongPath(const std::string& path, const std::string& name)
{
    try {
        const OpenedParent parent = openParent(path, "read attribute");
        return attributeAt(
            "/proc/self/fd/" + std::to_string(parent.directory.number()) + "/" + parent.name, name);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

}  // namespace

ItemFacts itemFacts(const FileURL& url)
{
    struct statx answer {};
    if (::statx(AT_FDCWD, url.path().c_str(), statxFlags, statxMask, &answer) == 0) {
        return factsFrom(answer);
    }
    if (errno == ENAMETOOLONG) {
        const OpenedParent parent = openParent(url.path(), "examine");
        if (::statx(parent.directory.number(), parent.name.c_str(), statxFlags, statxMask, &answer)
            == 0) {
            return factsFrom(answer);
        }
    }
    throwErrno(errno, "examine", url.path());
}

std::optional<std::string> extendedAttribute(const FileURL& url, const std::string& name)
{
    const std::string fullName = attributePrefix + name;
    std::optional<std::string> value = attributeAt(url.path(), fullName);
    if (!value && errno == ENAMETOOLONG) {
        value = attributeAtLongPath(url.path(), fullName);
    }
    return value;
}

}  // namespace gruk
