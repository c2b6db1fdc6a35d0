#pragma once
// What the frame must know of an add-in.

#include <span>
#include <string_view>

#include "frame/registration_row.h"

namespace zavrel {

/// Functions that are registered together, in this order.
struct FunctionTable {
  std::span<const RegistrationRow> rows;
  /// True when everything that these functions need is present. Called only if one of them is
  /// wanted; null if nothing can be missing.
  bool (*is_available)() = nullptr;
};

/// Views of data that lasts as long as the library is loaded.
struct AddIn {
  /// The name used in the log, in failures to open and in registry keys: "ZavrelFuncs".
  std::u16string_view name;
  /// The name that Excel's list of add-ins shows: "Zavrel Functions".
  std::u16string_view title = name;
  /// In the order of registration.
  std::span<const FunctionTable> tables;
};

/// The add-in in this library. Each add-in defines it beside its functions.
AddIn ThisAddIn();

}  // namespace zavrel
