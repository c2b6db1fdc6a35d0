#pragma once
// The one frame around every entry point that a macro add-in calls: it traces, and catches whatever
// the body throws. No exception crosses into Excel.

#include <cstdint>
#include <string>
#include <type_traits>

#include "platform/function_ref.h"

namespace zavrel {

namespace frame {

/// What the exit trace shows as a call's result; an empty text for nothing.
using ResultText = FunctionRef<std::string()>;

/// A number as the log shows it.
std::string NumberText(double number);
std::string NumberText(std::int64_t number);
/// A call's plain result as the log shows it: nothing, if it is not a number.
template <class Result>
std::string PlainResultText(const Result& result) {
  if constexpr (std::is_floating_point_v<Result>)
    return NumberText(double{result});
  else if constexpr (std::is_integral_v<Result>)
    return NumberText(std::int64_t{result});
  else
    return {};
}

/// Runs an entry point's body between its traces; false when it threw. `result` is asked only if
/// the log is enabled.
bool RunTracedBody(const char* name, FunctionRef<void()> body, ResultText result) noexcept;

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
  const auto run = [&] { status = body(); };
  frame::RunTracedBody(name, run, [&] { return frame::PlainResultText(status); });
  return status;
}

/// An entry point without a result, which traces for itself. Catches whatever the body throws.
void UntracedCall(FunctionRef<void()> body) noexcept;

}  // namespace zavrel
