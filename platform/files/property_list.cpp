#include "platform/files/property_list.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include <plist/plist.h>

#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

/// No attribute of a file is longer.
constexpr std::size_t longestPropertyList = 65'536;
/// What the texts of one list may come to when each use of a shared one is counted.
constexpr std::uint64_t longestExpansion = 67'108'864;
/// How deep the elements of an XML list may nest before it is not looked at: the library walks
/// them by recursion.
constexpr std::size_t deepestNesting = 64;

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t trailerLength = 32;

struct ListDeleter {
    void operator()(void* list) const noexcept { plist_free(list); }
};
using List = std::unique_ptr<void, ListDeleter>;

/// The big-endian number of up to eight bytes.
std::uint64_t numberAt(std::string_view bytes, std::size_t at, std::size_t length)
{
    std::uint64_t value = 0;
    for (const char c : bytes.substr(at, length)) {
        value = value << 8U | static_cast<unsigned char>(c);
    }
    return value;
}

/// What the last 32 bytes of a binary list say about the rest.
struct Trailer {
    std::size_t offsetLength;
    std::uint64_t objectCount;
    std::uint64_t rootIndex;
    std::uint64_t tableStart;
};

Trailer trailerOf(std::string_view bytes)
{
    const std::size_t start = bytes.size() - trailerLength;
    return {static_cast<unsigned char>(bytes[start + 6]), numberAt(bytes, start + 8, 8),
            numberAt(bytes, start + 16, 8), numberAt(bytes, start + 24, 8)};
}

bool isContainer(char marker)
{
    const unsigned kind = static_cast<unsigned char>(marker) >> 4U;
    return kind >= 0xA && kind <= 0xD;
}

/// Whether a binary list is flat and small enough to be read. An element may be named any number of
/// times, and the library copies it each time: a few hundred bytes of arrays in arrays would fill
/// the memory. What Gruk reads has one level, so nothing but the root may hold others.
bool isFlat(std::string_view bytes)
{
    if (bytes.size() < binaryMagic.size() + trailerLength) {
        return false;
    }
    const Trailer trailer = trailerOf(bytes);
    const std::uint64_t body = bytes.size() - trailerLength;
    if (trailer.offsetLength < 1 || trailer.offsetLength > 8 || trailer.tableStart > body
        || trailer.objectCount > (body - trailer.tableStart) / trailer.offsetLength
        || trailer.rootIndex >= trailer.objectCount) {
        return false;
    }
    for (std::uint64_t i = 0; i < trailer.objectCount; ++i) {
        const std::uint64_t offset =
            numberAt(bytes, trailer.tableStart + i * trailer.offsetLength, trailer.offsetLength);
        if (offset >= body || (i != trailer.rootIndex && isContainer(bytes[offset]))) {
            return false;
        }
    }
    return true;
}

/// The most that the elements of a flat binary list can come to: the root has fewer references
/// than there are bytes, but each may be to the same long text.
bool isSmallWhenExpanded(std::string_view bytes)
{
    const Trailer trailer = trailerOf(bytes);
    const std::uint64_t root = numberAt(
        bytes, trailer.tableStart + trailer.rootIndex * trailer.offsetLength, trailer.offsetLength);
    if (!isContainer(bytes[root])) {
        return true;
    }
    std::uint64_t count = static_cast<unsigned char>(bytes[root]) & 0x0FU;
    if (count == 0x0F && root + 1 < bytes.size()) {
        // A longer count follows as an integer: its marker has the logarithm of its length.
        const std::size_t length = std::size_t{1}
                                   << (static_cast<unsigned char>(bytes[root + 1]) & 0x03U);
        count = numberAt(bytes, std::min(root + 2, std::uint64_t{bytes.size()}), length);
    }
    return count <= longestExpansion / bytes.size();
}

/// Whether an XML list is shallow enough to be read.
bool isShallow(std::string_view bytes)
{
    std::size_t depth = 0;
    for (const std::string_view opening : {std::string_view("<array"), std::string_view("<dict")}) {
        for (std::size_t at = bytes.find(opening); at != std::string_view::npos;
             at = bytes.find(opening, at + 1)) {
            ++depth;
        }
    }
    return depth <= deepestNesting;
}

/// The parsed list; none when the bytes are not one.
List parsedList(std::string_view bytes)
{
    plist_t list = nullptr;
    if (bytes.size() > longestPropertyList) {
        return nullptr;
    }
    const auto length = static_cast<std::uint32_t>(bytes.size());
    if (bytes.starts_with(binaryMagic)) {
        if (isFlat(bytes) && isSmallWhenExpanded(bytes)) {
            plist_from_bin(bytes.data(), length, &list);
        }
    } else if (isShallow(bytes)) {
        plist_from_xml(bytes.data(), length, &list);
    }
    return List(list);
}

}  // namespace

std::optional<bool> propertyListBoolean(std::string_view bytes)
{
    const List list = parsedList(bytes);
    if (!list || plist_get_node_type(list.get()) != PLIST_BOOLEAN) {
        return std::nullopt;
    }
    std::uint8_t value = 0;
    plist_get_bool_val(list.get(), &value);
    return value != 0;
}

std::optional<std::vector<std::string>> propertyListTexts(std::string_view bytes)
{
    const List list = parsedList(bytes);
    if (!list || plist_get_node_type(list.get()) != PLIST_ARRAY) {
        return std::nullopt;
    }
    const std::uint32_t count = plist_array_get_size(list.get());
    std::vector<std::string> texts;
    texts.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const plist_t element = plist_array_get_item(list.get(), i);
        std::uint64_t length = 0;
        const char* text = element != nullptr && plist_get_node_type(element) == PLIST_STRING
                               ? plist_get_string_ptr(element, &length)
                               : nullptr;
        if (text == nullptr || !isValidUTF8({text, length})) {
            return std::nullopt;
        }
        texts.emplace_back(text, length);
    }
    return texts;
}

}  // namespace gruk
