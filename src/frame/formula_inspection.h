#pragma once
// Inspects the formula that is being calculated.

#include <string_view>

namespace zavrel {

/// Detects formulas that pass the column count of a worksheet, 16384, to one of the library's
/// functions. Such a formula assumes the sheet size of one version of Excel; it gets a line in the
/// log and nothing else.
class CorrectedXloper {
 public:
  /// True when the literal number 16384 occurs anywhere within the parentheses of a function whose
  /// name begins with "Zav" (in any letter case), nested groups and functions included. Texts,
  /// references (A16384) and other numbers do not count. The "=" of the formula may be left out; a
  /// text that is not a formula gives false.
  static bool Is16384InFormula(std::u16string_view text);

  /// Writes one log line if the same is true of the calling cell's formula, which comes from
  /// `excel_application` (an automation object or null). Does nothing if the log is off.
  static void Is16384InCellFormula(void* excel_application) noexcept;
};

}  // namespace zavrel
