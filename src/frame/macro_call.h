#pragma once
// The one frame around every entry point that a macro add-in calls: it traces, and catches whatever
// the body throws. No exception crosses into Excel.

#include <cstdint>
#include <type_traits>

#include "platform/function_ref.h"

namespace zavrel {

namespace frame {

/// Runs an entry point's body between its traces; false when it threw.
bool RunTracedBody(const char* name, FunctionRef<void()> body) noexcept;

}  // namespace frame

/// An entry point that returns a failure number: 0 when the body returns. When the body throws, the
/// failure store keeps the failure, and the number is the key by which ZavrelGetExceptionInfoVB
/// explains it. Without a session there is no store, and the number is 0.
std::uint32_t MacroCall(const char* name, FunctionRef<void()> body) noexcept;

/// Returned for a failure that could not be recorded because memory was exhausted: it explains
/// nothing, but it is not a success.
inline constexpr std::uint32_t kUnrecordedFailure = 0xFFFFFFFF;

/// An entry point that returns the body's result, or `failure` when the body throws.
template <class Status>
Status MacroStatus(const char* name, Status failure,
                   FunctionRef<std::type_identity_t<Status>()> body) noexcept {
  Status status = failure;
  return frame::RunTracedBody(name, [&] { status = body(); }) ? status : failure;
}

/// An entry point without a result, which traces for itself. Catches whatever the body throws.
void UntracedCall(FunctionRef<void()> body) noexcept;

}  // namespace zavrel
