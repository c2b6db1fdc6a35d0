#pragma once
// What the frame must know of an add-in.

#include <cstdint>
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

/// A compiled help file, below the library's folder.
struct HelpFileInFolder {
  std::uint32_t primary_language;
  std::u16string_view file;
};

/// Views of data that lasts as long as the library is loaded.
struct AddIn {
  /// The name used in the log, in failures to open and in registry keys: "ZavrelFuncs".
  std::u16string_view name;
  /// The name that Excel's list of add-ins shows: "Zavrel Functions".
  std::u16string_view title = name;
  /// The help for functions whose companion and installation name none: that of the session's
  /// language, otherwise the first, if the file exists.
  std::span<const HelpFileInFolder> help_files = {};
  /// In the order of registration.
  std::span<const FunctionTable> tables;
};

/// The add-in in this library. Each add-in defines it beside its functions.
AddIn ThisAddIn();

}  // namespace zavrel
