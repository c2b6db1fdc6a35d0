#pragma once
// The one frame around everything that the add-in exports: worksheet functions and the entry points
// of a macro add-in. Nothing that happens inside a body crosses into Excel.
//
//   ZAV_EXPORT XLOPER12* ZavrelLn(const XLOPER12* x) {
//     return WorksheetFunction("ZavrelLn", [&] { return ...; });
//   }

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>

#include "excel/xxloper.h"

namespace zavrel {

namespace frame {

/// A body without its type. Run leaves its result in a place the body's wrapper knows.
struct Body {
  void* object;
  void (*run)(void* object);
};

/// Runs a worksheet function's body between its traces and follows it with the cache upkeep. False
/// when the body threw, whatever it was, or when the add-in is not open (the body did not run
/// then).
bool RunWorksheetBody(const char* name, Body body) noexcept;

/// What a macro gets for a failure that could not even be recorded, memory being exhausted: a
/// number that explains nothing, but is no success.
inline constexpr std::uint32_t kUnrecordedFailure = 0xFFFFFFFF;

/// Runs a macro entry point's body between its traces. Gives 0, or the number under which what it
/// threw is now in the failure store; without a store 0 as well, since nobody could redeem a
/// number.
std::uint32_t RunMacroBody(const char* name, Body body) noexcept;

/// Runs a macro entry point's body between its traces; false when it threw.
bool RunStatusBody(const char* name, Body body) noexcept;

/// Runs the body of an entry point that traces its work itself; false when it threw.
bool RunUntracedBody(Body body) noexcept;

/// Keeps a narrow result, at most 255 bytes, until this thread's next one.
const char* KeepText(const std::string& text) noexcept;

/// The value frame: runs the body, which fills `result`, and hands the result to Excel.
XLOPER12* RunValueBody(const char* name, Body body, XXloper& result) noexcept;

template <class Callable>
Body Erase(Callable& callable) {
  return {&callable, [](void* object) { (*static_cast<Callable*>(object))(); }};
}

}  // namespace frame

/// A worksheet function with a value result (P). The body returns an XXloper;
/// whatever it throws, the cell shows #N/A. The record stays valid until this thread's next result.
template <class Callable>
XLOPER12* WorksheetFunction(const char* name, Callable&& body) noexcept {
  XXloper result = XXloper::Error(ExcelError::kNA);
  auto store = [&] { result = body(); };
  return frame::RunValueBody(name, frame::Erase(store), result);
}

/// A worksheet function with a plain result (J, B): the body's, or `failure` when it throws.
template <class Number, class Callable>
Number PlainFunction(const char* name, Number failure, Callable&& body) noexcept {
  static_assert(std::is_arithmetic_v<Number>);
  Number result = failure;
  auto store = [&] { result = body(); };
  return frame::RunWorksheetBody(name, frame::Erase(store)) ? result : failure;
}

/// A worksheet function with a narrow text as its result (C): UTF-8 of at most 255 bytes, in a
/// buffer that lives until this thread's next such result; a null pointer, which Excel shows as
/// #NUM!, when the body gives none or throws.
template <class Callable>
const char* TextFunction(const char* name, Callable&& body) noexcept {
  const char* kept = nullptr;
  auto store = [&] {
    const std::optional<std::string> text = body();
    if (text) kept = frame::KeepText(*text);
  };
  return frame::RunWorksheetBody(name, frame::Erase(store)) ? kept : nullptr;
}

/// A macro add-in's entry point that reports by failure number: 0 when the body returns; when it
/// throws, the number that ZavrelGetExceptionInfoVB explains.
template <class Callable>
std::uint32_t MacroCall(const char* name, Callable&& body) noexcept {
  return frame::RunMacroBody(name, frame::Erase(body));
}

/// A macro add-in's entry point that reports by a result of its own: the body's, or `failure` when
/// it throws.
template <class Status, class Callable>
Status MacroStatus(const char* name, Status failure, Callable&& body) noexcept {
  Status status = failure;
  auto store = [&] { status = body(); };
  return frame::RunStatusBody(name, frame::Erase(store)) ? status : failure;
}

/// An entry point without a result whose work is traced further in. Whatever it throws ends here.
template <class Callable>
void UntracedCall(Callable&& body) noexcept {
  frame::RunUntracedBody(frame::Erase(body));
}

// The parameters of a function with 30 value or reference arguments, and the arguments as an array.
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
