#pragma once
// What an add-in tells the frame of itself.

#include <span>
#include <string_view>

#include "frame/registration_row.h"

namespace zavrel {

/// Functions that are registered together, in this order.
struct FunctionTable {
  std::span<const RegistrationRow> rows;
  /// Whether all is there that these functions need. Asked only when one of them is wanted; null
  /// where nothing can be missing.
  bool (*is_available)() = nullptr;
};

/// What both refer to lasts as long as the library is loaded.
struct AddIn {
  /// Names the log, the failures to open and the registry keys: "ZavrelFuncs".
  std::u16string_view name;
  /// In the order of registration.
  std::span<const FunctionTable> tables;
};

/// The add-in whose library this is. Each add-in defines it, beside its functions.
AddIn ThisAddIn();

}  // namespace zavrel
