#pragma once
// The contents of cells and the results of formulas: values, arrays and references.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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

/// Shared immutable text, one pointer wide, so that a million cells with the same label store it
/// once. A default one is null.
class Text {
 public:
  Text() = default;
  explicit Text(std::u16string text) : shared_(new Shared{{1}, std::move(text)}) {}
  Text(const Text& other) noexcept : shared_(other.shared_) {
    if (shared_ != nullptr) shared_->users.fetch_add(1, std::memory_order_relaxed);
  }
  Text(Text&& other) noexcept : shared_(std::exchange(other.shared_, nullptr)) {}
  Text& operator=(Text other) noexcept {
    std::swap(shared_, other.shared_);
    return *this;
  }
  ~Text() {
    if (shared_ != nullptr && shared_->users.fetch_sub(1, std::memory_order_acq_rel) == 1)
      delete shared_;
  }

  /// Whether another one has the same text.
  bool IsShared() const { return shared_->users.load(std::memory_order_relaxed) > 1; }
  const std::u16string* get() const { return &shared_->content; }
  const std::u16string& operator*() const { return shared_->content; }
  const std::u16string* operator->() const { return &shared_->content; }
  bool operator==(const Text& other) const { return shared_ == other.shared_ || **this == *other; }

 private:
  struct Shared {
    std::atomic<std::uint32_t> users;
    const std::u16string content;
  };

  Shared* shared_ = nullptr;
};

/// One cell's value. Equality compares texts by content. A sheet has millions of them, so it takes
/// no more than a number and a mark of its kind.
class Value {
 public:
  Value() noexcept : number_(0), kind_(Kind::kBlank) {}
  // NOLINTBEGIN(google-explicit-constructor): what a cell can hold is a value.
  Value(double number) noexcept : number_(number), kind_(Kind::kNumber) {}
  Value(bool boolean) noexcept : boolean_(boolean), kind_(Kind::kBoolean) {}
  Value(ErrorCode error) noexcept : error_(error), kind_(Kind::kError) {}
  Value(Text text) noexcept : text_(std::move(text)), kind_(Kind::kText) {}
  // Without this one a literal would become a boolean.
  Value(const char16_t* text) : Value(Text(text)) {}
  // NOLINTEND(google-explicit-constructor)
  explicit Value(std::u16string_view text) : Value(Text(std::u16string(text))) {}
  Value(const Value& other) noexcept { Take(other); }
  Value(Value&& other) noexcept { Take(std::move(other)); }
  Value& operator=(const Value& other) noexcept {
    if (this == &other) return *this;
    Drop();
    Take(other);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    if (this == &other) return *this;
    Drop();
    Take(std::move(other));
    return *this;
  }
  ~Value() { Drop(); }

  bool IsBlank() const { return kind_ == Kind::kBlank; }
  const double* number() const { return kind_ == Kind::kNumber ? &number_ : nullptr; }
  const bool* boolean() const { return kind_ == Kind::kBoolean ? &boolean_ : nullptr; }
  const ErrorCode* error() const { return kind_ == Kind::kError ? &error_ : nullptr; }
  /// The text, or null if the value is not text.
  const std::u16string* text() const { return kind_ == Kind::kText ? text_.get() : nullptr; }
  const Text* shared_text() const { return kind_ == Kind::kText ? &text_ : nullptr; }

  friend bool operator==(const Value& a, const Value& b);

 private:
  enum class Kind : std::uint8_t { kBlank, kNumber, kBoolean, kError, kText };

  /// Makes this one, which holds nothing, what the other one is.
  template <class Other>
  void Take(Other&& other) noexcept {
    kind_ = other.kind_;
    switch (kind_) {
      case Kind::kBlank:
      case Kind::kNumber:
        number_ = other.number_;
        break;
      case Kind::kBoolean:
        boolean_ = other.boolean_;
        break;
      case Kind::kError:
        error_ = other.error_;
        break;
      case Kind::kText:
        new (&text_) Text(std::forward<Other>(other).text_);
        break;
    }
  }
  void Drop() noexcept {
    if (kind_ == Kind::kText) text_.~Text();
  }

  // The smallest member last: what follows a value in a record may use the bytes behind it.
  union {
    double number_;
    bool boolean_;
    ErrorCode error_;
    Text text_;
  };
  Kind kind_;
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
/// What a cell in that format shows; nothing for a blank one.
std::u16string GeneralText(const Value& value);
/// How the dates in texts become numbers.
struct DateReading {
  bool date1904 = false;
  /// The year of dates without one; the year of the computer's clock if there is none here.
  std::optional<int> year;
};
/// The number that a text would give as a cell entry in US form: "1.5", " -2e3 ", "50%",
/// "1,234.5", "$5", "(5)" (negative), "1 1/2", and dates and times (date_text.h). Nothing for other
/// text, and if the number is too large or too small for a double.
std::optional<double> NumberFromText(std::u16string_view text, const DateReading& dates = {});

}  // namespace zavhost
