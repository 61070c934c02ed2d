#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/tree_reader.h"

namespace gruk {

/// Asks for extended attributes of the children of one open directory after another, by the
/// cheapest way that the kernel at hand has. One thread.
class AttributeLister {
public:
    /// `probe` is any open directory, to find out what the kernel can do.
    AttributeLister(std::vector<std::string> names, TreeReader::AttributeAccess access, int probe);
    ~AttributeLister();
    AttributeLister(const AttributeLister&) = delete;
    AttributeLister& operator=(const AttributeLister&) = delete;

    [[nodiscard]] bool isNeeded() const { return !names_.empty(); }

    /// The directory whose children are asked about from now on; it stays open meanwhile.
    void enter(int directory);

    /// Bit i is set when `child` carries the i-th attribute. Mostly one system call.
    [[nodiscard]] std::uint32_t list(const char* child);

    /// The value of the i-th attribute; none when it cannot be read whole.
    [[nodiscard]] std::optional<std::string> read(const char* child, std::size_t index);

private:
    enum class Way { relative, workingDirectory, descriptorPath };

    [[nodiscard]] bool takeOwnWorkingDirectory();
    [[nodiscard]] std::string descriptorPath(const char* child) const;
    [[nodiscard]] long listNames(const char* child, std::size_t size);
    [[nodiscard]] std::uint32_t matches(const char* list, std::size_t length) const;
    [[nodiscard]] long readValue(const char* child, const char* name, char* value,
                                 std::size_t size) const;

    /// With the prefix under which the user's attributes are kept.
    std::vector<std::string> names_;
    Way way_ = Way::descriptorPath;
    int directory_ = -1;
    bool expectsSome_ = false;
    /// Where the thread stood before, to go back to.
    int formerWorkingDirectory_ = -1;
    std::vector<char> buffer_;
};

}  // namespace gruk
