#include "platform/foundation/require.h"

#include <cstdio>
#include <cstdlib>

namespace gruk {

void stopProgram(const char* message, const char* file, int line) noexcept
{
    std::fprintf(stderr, "Gruk: stopped at %s:%d: %s\n", file, line, message);
    std::abort();
}

}  // namespace gruk
