#pragma once

/// Broken invariants stop the program, in release builds too: a wrong number shown as right, or a
/// move based on one, is worse than an end with a message.

namespace gruk {

/// Prints `message` with its place to the error stream and aborts. Never returns.
[[noreturn]] void stopProgram(const char* message, const char* file, int line) noexcept;

}  // namespace gruk

/// Stops the program with `message` unless `condition` holds. For programming errors only; input
/// that may be wrong is answered with an exception or a result.
#define GRUK_REQUIRE(condition, message)                                                           \
    do {                                                                                           \
        if (!(condition)) [[unlikely]] {                                                           \
            ::gruk::stopProgram((message), __FILE__, __LINE__);                                    \
        }                                                                                          \
    } while (false)
