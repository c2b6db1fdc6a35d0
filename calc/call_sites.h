#pragma once
// The calls of the add-in's functions in a formula, read from the formula's text as Calc writes it.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calc/sheet_range.h"
#include "host/workbook/value.h"

namespace zavcalc {

struct SiteArgument {
  enum class Kind {
    kMissing,
    kNumber,
    kText,
    kBoolean,
    kReference,
    kSeveralSheets,  // a reference over several sheets, of which Calc passes the first
    kArray,          // written in the formula
    kRefused,        // a union of ranges: Calc fails before it calls
    kExpression,
  };
  Kind kind = Kind::kExpression;
  double number = 0;     // kNumber; 1 or 0 for kBoolean
  std::u16string text;   // kText
  zavhost::Array array;  // kArray
  SheetRange reference;  // kReference, and the part of the first sheet of kSeveralSheets
  /// Of an expression: no value in it can be a boolean or stem from a blank cell, if none of the
  /// `sources` holds any.
  bool is_plain = false;
  std::vector<SheetRange> sources;
};

/// The size of a range that an array formula fills.
struct FilledShape {
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  bool operator==(const FilledShape&) const = default;
};

struct CallSite {
  std::u16string function;  // in upper case
  std::vector<SiteArgument> arguments;
  std::optional<FilledShape> filled;  // where it matters and is known
};

struct FormulaCalls {
  std::vector<CallSite> calls;
  /// The formula's result is a number or a text, never a boolean or a blank cell's.
  bool is_plain = false;
};

/// What a formula's names mean.
struct NameScope {
  std::int32_t sheet = 0;  // the formula's own
  std::function<std::optional<std::int32_t>(std::u16string_view)> sheet_named;
  std::function<std::optional<SheetRange>(std::u16string_view)> range_named;
};

/// Nothing if the text cannot be read.
std::optional<FormulaCalls> ReadFormula(std::u16string_view text, const NameScope& scope);

/// The prefix of the functions' names in formulas.
inline constexpr std::u16string_view kPrefix = u"_XLL.";

}  // namespace zavcalc
