#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/foundation/file_url.h"
#include "platform/foundation/require.h"

namespace gruk::fuzz {

/// A file in memory that is read by its path, filled anew for each input.
class MemoryFile {
public:
    explicit MemoryFile(const char* name);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Makes `bytes` its whole content.
    void fill(std::string_view bytes);
    [[nodiscard]] FileURL url() const;

private:
    int descriptor_;
};

[[nodiscard]] inline std::string_view asText(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace gruk::fuzz

/// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
