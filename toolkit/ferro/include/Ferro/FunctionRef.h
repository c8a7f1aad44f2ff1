// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <type_traits>
#include <utility>

namespace Ferro {

template <class Signature>
class FunctionRef;

/// A parameter that takes anything callable, for the time of one call: a progress callback, a visitor. It owns nothing and
/// allocates nothing, so it must not outlive what it was made from; for a callable that is kept there is std::function.
template <class Result, class... Arguments>
class FunctionRef<Result(Arguments...)> {
 public:
  /// Nothing to call: false.
  FunctionRef() = default;

  template <class Callable, class = std::enable_if_t<!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef> &&
                                                     std::is_invocable_r_v<Result, Callable&, Arguments...>>>
  FunctionRef(Callable&& callable) noexcept {
    using Target = std::remove_reference_t<Callable>;
    if constexpr (std::is_function_v<Target>)
      m_Target.Function = reinterpret_cast<void (*)()>(&callable);
    else
      m_Target.Object = &callable;
    m_Call = [](Place target, Arguments... arguments) -> Result {
      if constexpr (std::is_function_v<Target>)
        return reinterpret_cast<Target*>(target.Function)(std::forward<Arguments>(arguments)...);
      else
        return (*static_cast<Target*>(const_cast<void*>(target.Object)))(std::forward<Arguments>(arguments)...);
    };
  }

  explicit operator bool() const noexcept { return m_Call != nullptr; }

  Result operator()(Arguments... arguments) const { return m_Call(m_Target, std::forward<Arguments>(arguments)...); }

 private:
  union Place {
    const void* Object = nullptr;
    void (*Function)();
  };

  Place m_Target = {};
  Result (*m_Call)(Place, Arguments...) = nullptr;
};

}  // namespace Ferro
