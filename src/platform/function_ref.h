#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace zavrel {

/// A reference to a callable, which its owner keeps alive during the call. As a parameter, it
/// accepts any lambda without copying it and without making the function a template.
template <class Signature>
class FunctionRef;

template <class Result, class... Arguments>
class FunctionRef<Result(Arguments...)> {
  template <class Callable>
  static constexpr bool kTakes =
      std::is_object_v<Callable> && !std::is_same_v<std::remove_cv_t<Callable>, FunctionRef> &&
      std::is_invocable_r_v<Result, Callable&, Arguments...>;

 public:
  template <class Callable, class = std::enable_if_t<kTakes<std::remove_reference_t<Callable>>>>
  FunctionRef(Callable&& callable) noexcept  // NOLINT(google-explicit-constructor)
      : callable_(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
        call_(&Call<std::remove_reference_t<Callable>>) {}

  Result operator()(Arguments... arguments) const {
    return call_(callable_, std::forward<Arguments>(arguments)...);
  }

 private:
  template <class Callable>
  static Result Call(void* callable, Arguments... arguments) {
    return static_cast<Result>(
        (*static_cast<Callable*>(callable))(std::forward<Arguments>(arguments)...));
  }

  void* callable_;
  Result (*call_)(void* callable, Arguments... arguments);
};

}  // namespace zavrel
