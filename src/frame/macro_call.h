#pragma once
// The one frame around every entry point that a macro add-in calls: traces, and whatever a body
// throws ends here. Nothing crosses into Excel.

#include <cstdint>
#include <type_traits>

#include "platform/function_ref.h"

namespace zavrel {

namespace frame {

/// Runs an entry point's body between its traces; false when it threw.
bool RunTracedBody(const char* name, FunctionRef<void()> body) noexcept;

}  // namespace frame

/// An entry point that reports by failure number: 0 when the body returns; when it throws, the
/// number under which the failure store now has what it threw and which ZavrelGetExceptionInfoVB
/// explains. Without a store 0 as well, since nobody could redeem a number.
std::uint32_t MacroCall(const char* name, FunctionRef<void()> body) noexcept;

/// What a macro gets for a failure that could not even be recorded, memory being exhausted: a
/// number that explains nothing, but is no success.
inline constexpr std::uint32_t kUnrecordedFailure = 0xFFFFFFFF;

/// An entry point that reports by a result of its own: the body's, or `failure` when it throws.
template <class Status>
Status MacroStatus(const char* name, Status failure,
                   FunctionRef<std::type_identity_t<Status>()> body) noexcept {
  Status status = failure;
  return frame::RunTracedBody(name, [&] { status = body(); }) ? status : failure;
}

/// An entry point without a result whose work is traced further in. Whatever it throws ends here.
void UntracedCall(FunctionRef<void()> body) noexcept;

}  // namespace zavrel
