#include "fuzz/fuzz_support.h"

#include <sys/mman.h>
#include <unistd.h>

#include "platform/foundation/require.h"

namespace gruk::fuzz {

MemoryFile::MemoryFile(const char* name) : descriptor_(::memfd_create(name, MFD_CLOEXEC))
{
    GRUK_REQUIRE(descriptor_ >= 0, "no file in memory");
}

MemoryFile::~MemoryFile()
{
    ::close(descriptor_);
}

void MemoryFile::fill(std::string_view bytes)
{
    GRUK_REQUIRE(::ftruncate(descriptor_, 0) == 0, "the file in memory cannot be emptied");
    const ssize_t count = ::pwrite(descriptor_, bytes.data(), bytes.size(), 0);
    GRUK_REQUIRE(count == static_cast<ssize_t>(bytes.size()), "the file in memory is full");
}

FileURL MemoryFile::url() const
{
    return FileURL("/proc/self/fd/" + std::to_string(descriptor_));
}

}  // namespace gruk::fuzz
