#pragma once
// The one frame around every worksheet function. It reads the arguments, traces, catches whatever a
// body throws, keeps up the caches and hands the result to Excel. The frame for entry points that
// macros call is frame/macro_call.h.
//
//   ZAV_EXPORT XLOPER12* ZavrelPairCount(const XLOPER12* first, const XLOPER12* second) {
//     return WorksheetFunction("ZavrelPairCount", kPairs, {first, second},
//                              [](const Parameters& read) {
//                                return CountPairs(read.numbers(0), read.numbers(1));
//                              });
//   }

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <type_traits>

#include "excel/arguments.h"
#include "frame/cell_result.h"
#include "frame/macro_call.h"
#include "frame/reading.h"
#include "platform/function_ref.h"

namespace zavrel {

/// A worksheet function with a value result (P). The body gets the arguments that were read. A
/// failure of the reading or of the body shows its error. Anything thrown shows #N/A, unless the
/// reading says otherwise; so does a call while the add-in is not open. The record stays valid
/// until this thread's next result.
XLOPER12* WorksheetFunction(const char* name, const Reading& reading, Arguments arguments,
                            FunctionRef<CellResult(const Parameters& read)> body) noexcept;
inline XLOPER12* WorksheetFunction(const char* name, const Reading& reading,
                                   std::initializer_list<const XLOPER12*> arguments,
                                   FunctionRef<CellResult(const Parameters& read)> body) noexcept {
  return WorksheetFunction(name, reading, Arguments(arguments.begin(), arguments.size()), body);
}
/// One without arguments, or whose body reads them itself.
XLOPER12* WorksheetFunction(const char* name, FunctionRef<CellResult()> body) noexcept;

namespace frame {

/// Runs a worksheet function's body between its traces, then the cache upkeep. False when the body
/// threw anything, or when the add-in is not open and the body did not run.
bool RunWorksheetBody(const char* name, FunctionRef<void()> body, ResultText result) noexcept;

/// Keeps a narrow result, at most 255 bytes, until the next one. Excel's main thread only.
const char* KeepText(const std::string& text) noexcept;
/// A narrow result, which may be null, as the log shows it.
std::string KeptText(const char* text);

}  // namespace frame

/// A worksheet function with a plain result (J, B): the body's, or `failure` when the body throws.
template <class Number>
Number PlainFunction(const char* name, Number failure,
                     FunctionRef<std::type_identity_t<Number>()> body) noexcept {
  static_assert(std::is_arithmetic_v<Number>);
  Number result = failure;
  const auto run = [&] { result = body(); };
  frame::RunWorksheetBody(name, run, [&] { return frame::PlainResultText(result); });
  return result;
}
/// The same with arguments that the frame reads: `failure` also if the reading or the body fails.
template <class Number>
Number PlainFunction(
    const char* name, Number failure, const Reading& reading,
    std::initializer_list<const XLOPER12*> arguments,
    FunctionRef<OrFailure<std::type_identity_t<Number>>(const Parameters& read)> body) noexcept {
  return PlainFunction(name, failure, [&]() -> Number {
    const auto read = reading.Read(Arguments(arguments.begin(), arguments.size()));
    if (!read.ok()) return failure;
    const OrFailure<Number> result = body(*read);
    return result.ok() ? *result : failure;
  });
}

/// A worksheet function with a narrow text as its result (C): UTF-8 of at most 255 bytes, in a
/// buffer that lives until the next such result. A null pointer, which Excel shows as
/// #NUM!, if the body has no text or throws.
inline const char* TextFunction(const char* name,
                                FunctionRef<std::optional<std::string>()> body) noexcept {
  const char* kept = nullptr;
  const auto keep = [&] {
    if (const auto text = body()) kept = frame::KeepText(*text);
  };
  return frame::RunWorksheetBody(name, keep, [&] { return frame::KeptText(kept); }) ? kept
                                                                                    : nullptr;
}

// The parameters of a function with 30 value or reference arguments, and these arguments as a list.
#define ZAV_THIRTY_PARAMETERS                                                             \
  const XLOPER12 *a1, const XLOPER12 *a2, const XLOPER12 *a3, const XLOPER12 *a4,         \
      const XLOPER12 *a5, const XLOPER12 *a6, const XLOPER12 *a7, const XLOPER12 *a8,     \
      const XLOPER12 *a9, const XLOPER12 *a10, const XLOPER12 *a11, const XLOPER12 *a12,  \
      const XLOPER12 *a13, const XLOPER12 *a14, const XLOPER12 *a15, const XLOPER12 *a16, \
      const XLOPER12 *a17, const XLOPER12 *a18, const XLOPER12 *a19, const XLOPER12 *a20, \
      const XLOPER12 *a21, const XLOPER12 *a22, const XLOPER12 *a23, const XLOPER12 *a24, \
      const XLOPER12 *a25, const XLOPER12 *a26, const XLOPER12 *a27, const XLOPER12 *a28, \
      const XLOPER12 *a29, const XLOPER12 *a30
#define ZAV_THIRTY_ARGUMENTS                                                                   \
  std::array<const XLOPER12*, 30> {                                                            \
    a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, a16, a17, a18, a19, a20, \
        a21, a22, a23, a24, a25, a26, a27, a28, a29, a30                                       \
  }

}  // namespace zavrel
