#pragma once
// Looks into the formula that is being calculated.

#include <string_view>

namespace zavrel {

/// Whether a formula names the column count of a worksheet, 16384, to one of the library's
/// functions. Such a formula was written with one version's sheet size in mind and is worth a line
/// in the log; nothing else follows from it.
class CorrectedXloper {
 public:
  /// True when the literal number 16384 stands anywhere within the parentheses of a function whose
  /// name begins with "Zav" (any letter case), nested groups and functions included. Texts,
  /// references (A16384) and other numbers do not count. Takes a formula with or without its "=";
  /// content that is no formula gives false.
  static bool Is16384InFormula(std::u16string_view text);

  /// The same for the calling cell, whose formula `excel_application` (an automation object, null
  /// for none) tells. Writes one log line when it is so, and does nothing at all when the log is
  /// off.
  static void Is16384InCellFormula(void* excel_application) noexcept;
};

}  // namespace zavrel
