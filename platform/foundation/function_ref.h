#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace gruk {

template <typename Signature>
class FunctionRef;

/// A borrowed callable: two pointers, no allocation. For parameters that are called before the
/// function returns and never kept.
template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
public:
    template <typename Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef>
                 && std::is_invocable_r_v<Result, Callable&, Arguments...>)
    // Not explicit, for it is a parameter; the constraint keeps it from hiding the copy.
    // NOLINTNEXTLINE(google-explicit-constructor, bugprone-forwarding-reference-overload)
    FunctionRef(Callable&& callable) noexcept
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): `call_` puts the const back
        : object_(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
          call_([](void* object, Arguments... arguments) -> Result {
              return (*static_cast<std::remove_reference_t<Callable>*>(object))(
                  std::forward<Arguments>(arguments)...);
          })
    {
    }

    Result operator()(Arguments... arguments) const
    {
        return call_(object_, std::forward<Arguments>(arguments)...);
    }

private:
    void* object_;
    Result (*call_)(void*, Arguments...);
};

}  // namespace gruk
