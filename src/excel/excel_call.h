#pragma once
// The library calls the Excel C API only through this file.

#include <initializer_list>
#include <span>

#include "excel/xxloper.h"

namespace zavrel {

/// Sets the callback once it is found. Without one (null) there is no host, and every call fails
/// with #VALUE!.
void SetExcelCallback(Excel12Callback callback);
Excel12Callback ExcelCallback();

/// The outcome of a call: the value, and the callback's return code (0 success).
struct ExcelResult {
  XXloper value;
  int return_code = xlretSuccess;

  bool ok() const { return return_code == xlretSuccess; }
};

/// Calls the function with the number `function`, with the host's messages enabled around this one
/// call. A failed call does not throw: its value is #VALUE!, with the return code in the 32-bit
/// word after the error code. A text or an array without memory is a failed call too. Throws
/// std::bad_alloc before Excel is called, and not after it.
ExcelResult CallExcel(int function, std::span<const XXloper> arguments);
ExcelResult CallExcel(int function, std::initializer_list<XXloper> arguments = {});

/// Calls the function with one argument, whatever comes of it. Takes no memory.
void CallExcelForNothing(int function, const XXloper& argument) noexcept;

/// The most arguments that a call can have; a call with more fails without reaching Excel.
inline constexpr std::size_t kMostCallArguments = 255;

/// Has Excel free the memory that it attached to the record, with the messages enabled around the
/// call. Does nothing without a callback.
void FreeThroughExcel(XLOPER12* record) noexcept;

}  // namespace zavrel
