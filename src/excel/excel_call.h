#pragma once
// The only way in which the library calls the Excel C API.

#include <initializer_list>
#include <span>

#include "excel/xxloper.h"

namespace zavrel {

/// Sets the callback once it is found (null: no host, every call fails with #VALUE!).
void SetExcelCallback(Excel12Callback callback);
Excel12Callback ExcelCallback();

/// The outcome of a call: the value, and the callback's return code (0 success).
struct ExcelResult {
  XXloper value;
  int return_code = xlretSuccess;

  bool ok() const { return return_code == xlretSuccess; }
};

/// Calls function number `function`, with the host's messages enabled around this one call. A call
/// that fails never throws: its value is #VALUE! with the return code in the 32-bit word that
/// follows the error code.
ExcelResult CallExcel(int function, std::span<const XXloper> arguments);
ExcelResult CallExcel(int function, std::initializer_list<XXloper> arguments = {});

/// The most arguments that a call can have; with more it fails without reaching Excel.
inline constexpr std::size_t kMostCallArguments = 255;

/// Frees through Excel what Excel attached to the record, with the messages enabled around the
/// call. Without a callback it does nothing.
void FreeThroughExcel(XLOPER12* record) noexcept;

}  // namespace zavrel
