#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace gruk {

/// An open descriptor that closes itself, or none. Moves; one thread at a time.
class Descriptor {
public:
    Descriptor() = default;
    /// Takes over `number`; a negative one is none.
    explicit Descriptor(int number) noexcept : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }
    [[nodiscard]] int number() const noexcept { return number_; }

    /// Closes it now. `errno` stays as it was.
    void reset() noexcept
    {
        if (number_ >= 0) {
            const int former = errno;
            ::close(std::exchange(number_, -1));
            errno = former;
        }
    }

private:
    int number_ = -1;
};

}  // namespace gruk
