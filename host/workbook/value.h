#pragma once
// The contents of cells and the results of formulas: values, arrays and references.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "formula/a1_reference.h"
#include "host/workbook/text.h"

namespace zavhost {

/// Error values by their codes in the C API.
enum class ErrorCode : std::int32_t {
  kNull = 0,
  kDiv0 = 7,
  kValue = 15,
  kRef = 23,
  kName = 29,
  kNum = 36,
  kNA = 42,
  kGettingData = 43,
  kSpill = 45,
  kConnect = 46,
  kBlocked = 47,
  kUnknown = 48,
  kField = 49,
  kCalc = 50,
};

/// "#DIV/0!" and so on; a code outside the list is shown as "#UNKNOWN!".
std::u16string_view ErrorText(ErrorCode code);
/// The error that a text spells, in any letter case.
std::optional<ErrorCode> ErrorFromText(std::u16string_view text);

/// The maximum number of code units of a cell's text.
inline constexpr std::size_t kLongestText = 32'767;

/// Shared immutable text, so that a million cells with the same label store it once.
using Text = std::shared_ptr<const std::u16string>;
Text MakeText(std::u16string_view text);

struct Blank {
  bool operator==(const Blank&) const = default;
};

/// One cell's value. Equality compares texts by content.
class Value {
 public:
  Value() = default;
  // NOLINTBEGIN(google-explicit-constructor): what a cell can hold is a value.
  Value(double number) : content_(number) {}
  Value(bool boolean) : content_(boolean) {}
  Value(ErrorCode error) : content_(error) {}
  Value(Text text) : content_(std::move(text)) {}
  // Without this one a literal would become a boolean.
  Value(const char16_t* text) : content_(MakeText(text)) {}
  // NOLINTEND(google-explicit-constructor)
  explicit Value(std::u16string_view text) : content_(MakeText(text)) {}

  bool IsBlank() const { return std::holds_alternative<Blank>(content_); }
  const double* number() const { return std::get_if<double>(&content_); }
  const bool* boolean() const { return std::get_if<bool>(&content_); }
  const ErrorCode* error() const { return std::get_if<ErrorCode>(&content_); }
  /// The text, or null if the value is not text.
  const std::u16string* text() const {
    const Text* held = std::get_if<Text>(&content_);
    return held == nullptr ? nullptr : held->get();
  }
  const Text* shared_text() const { return std::get_if<Text>(&content_); }

  friend bool operator==(const Value& a, const Value& b);

 private:
  std::variant<Blank, double, bool, ErrorCode, Text> content_;
};

/// A rectangle of cells, zero-based, both corners included.
struct CellRange {
  std::int32_t first_row = 0;
  std::int32_t first_column = 0;
  std::int32_t last_row = 0;
  std::int32_t last_column = 0;

  std::int32_t rows() const { return last_row - first_row + 1; }
  std::int32_t columns() const { return last_column - first_column + 1; }
  bool HasAllRows() const { return first_row == 0 && last_row == formula::kSheetRows - 1; }
  bool HasAllColumns() const {
    return first_column == 0 && last_column == formula::kSheetColumns - 1;
  }
  bool IsSingleCell() const { return first_row == last_row && first_column == last_column; }
  bool Contains(std::int32_t row, std::int32_t column) const {
    return row >= first_row && row <= last_row && column >= first_column && column <= last_column;
  }
  bool operator==(const CellRange&) const = default;
};

/// One cell of one sheet; `sheet` is the index into Workbook::sheets.
struct CellAddress {
  std::uint32_t sheet = 0;
  std::int32_t row = 0;
  std::int32_t column = 0;
  auto operator<=>(const CellAddress&) const = default;
};

/// A reference: one or more areas, all on one sheet, as in Excel.
struct Reference {
  std::uint32_t sheet = 0;
  std::vector<CellRange> areas;
  bool operator==(const Reference&) const = default;
};

/// A rectangular array of values, row by row; rows and columns are at least 1.
struct Array {
  std::int32_t rows = 1;
  std::int32_t columns = 1;
  std::vector<Value> values;

  const Value& At(std::int32_t row, std::int32_t column) const {
    return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                  static_cast<std::size_t>(column)];
  }
};
using ArrayPtr = std::shared_ptr<const Array>;

struct MissingArgument {
  bool operator==(const MissingArgument&) const = default;
};

/// The result of an expression during evaluation of a formula.
using Operand = std::variant<Value, ArrayPtr, Reference, MissingArgument>;

/// The General number format: the text that Excel shows for a number in a wide cell without a
/// format, rounded to at most 15 significant digits, with an exponent from 1E+20 up and below
/// 0.0001 ("1E+20", "0.1", "123456789012", "1.23E-05"). A number that is not finite gives "#NUM!".
std::u16string GeneralText(double number);
/// The number that a text would give as a cell entry ("1.5", " -2e3 ", "50%", "1,234.5", in US
/// form); nothing for other text, and if the number is too large or too small for a double.
std::optional<double> NumberFromText(std::u16string_view text);

}  // namespace zavhost
