#pragma once

#include <memory>
#include <utility>

namespace gruk {

/// Tells a coroutine that was waiting whether the object that it belongs to is still whole. (A
/// `QPointer` tells so only once the object's own members are gone.) End it first thing in the
/// object's destructor.
class Lifetime {
public:
    /// Copied on any thread, asked on the object's own.
    class Watch {
    public:
        explicit Watch(std::weak_ptr<const char> token) : token_(std::move(token)) {}
        [[nodiscard]] explicit operator bool() const { return !token_.expired(); }

    private:
        std::weak_ptr<const char> token_;
    };

    [[nodiscard]] Watch watch() const { return Watch(token_); }
    void end() { token_.reset(); }

private:
    std::shared_ptr<const char> token_ = std::make_shared<const char>();
};

}  // namespace gruk
