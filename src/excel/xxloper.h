#pragma once
// One Excel value, shared and read-only, with its owner's way of letting go.

#include <bit>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "excel/xloper12.h"

namespace zavrel {

/// Type bits of a record without the memory flags.
constexpr std::uint32_t TypeOf(const XLOPER12& record) { return record.xltype & xltypeMask; }
/// The counted text of a string record; empty for every other type or a null pointer.
std::u16string_view TextIn(const XLOPER12& record);
/// The elements of an array record, row by row; empty for every other type, a null pointer or
/// dimensions that no worksheet has.
std::span<const XLOPER12> ElementsIn(const XLOPER12& record);
/// Excel's code of a value that is an error, or of the first error in an array.
std::optional<std::int32_t> FirstError(const XLOPER12& record);

/// Deleter of a record that Excel filled as the result of a C API call: frees what Excel attached
/// to it through Excel, then the record itself. A record with nothing attached goes the same way:
/// what that would save, some 15 ns of the 500 of a call with its result, is not worth a second
/// rule.
struct CallExcelToFree {
  void operator()(const XLOPER12* record) const noexcept;
};

/// Deleter of a record that Excel passed in as an argument: lets go and does nothing.
struct ExcelOwnsItSoDoNotFree {
  void operator()(const XLOPER12*) const noexcept {}
};

/// The errors that the library can return, by Excel's codes.
enum class ExcelError : std::int32_t {
  kDiv0 = xlerrDiv0,
  kValue = xlerrValue,
  kRef = xlerrRef,
  kName = xlerrName,
  kNum = xlerrNum,
  kNA = xlerrNA,
  kGettingData = xlerrGettingData,
  kSpill = xlerrSpill,
  kConnect = xlerrConnect,
  kBlocked = xlerrBlocked,
  kUnknown = xlerrUnknown,
  kField = xlerrField,
  kCalc = xlerrCalc,
};

/// Wraps one XLOPER12 in shared ownership. Copies share the record. The record is never written to
/// once it is wrapped.
class XXloper {
 public:
  /// The shared missing value.
  XXloper() noexcept;

  /// Wraps an argument that Excel passed in, or any record that outlives the wrapper. A null
  /// pointer counts as an omitted argument. Allocates nothing.
  static XXloper FromArgument(const XLOPER12* argument);
  /// Takes over a record that Excel filled; the last holder frees it through Excel.
  static XXloper FromExcelResult(std::unique_ptr<XLOPER12> record);

  /// The number as it is; ToExcelValue (error_double.h) makes a value of a computed double.
  static XXloper Number(double number);
  static XXloper Integer(std::int32_t integer);
  static XXloper Boolean(bool boolean) noexcept;
  /// A text of the library's own; longer than a cell can hold is cut to 32,767 code units (no
  /// surrogate pair is split).
  static XXloper Text(std::u16string_view text);
  /// These stand for records that the library has from the start, and so does Boolean: they
  /// allocate nothing, whenever they are first asked for.
  static XXloper Missing() noexcept;
  static XXloper Nil() noexcept;
  static XXloper EmptyText() noexcept;
  /// The shared immutable value of an error.
  static XXloper Error(ExcelError error) noexcept;
  /// The shared value of Excel's error code; a code that has none (#NULL! among them) gives a fresh
  /// value with that very code.
  static XXloper ErrorByCode(std::int32_t code);

  /// Type bits without the memory flags.
  std::uint32_t type() const { return TypeOf(*record_); }
  /// True when the type is one of these. A record of a compound or unknown type is none of them.
  bool Is(std::uint32_t types) const {
    return std::has_single_bit(type()) && (type() & types) != 0;
  }
  bool IsMissing() const { return type() == xltypeMissing; }
  const XLOPER12& record() const { return *record_; }

  std::u16string_view text() const { return TextIn(*record_); }
  std::span<const XLOPER12> elements() const { return ElementsIn(*record_); }

  /// An element of an array as a value that keeps the array alive; the missing value past the end.
  XXloper Element(std::size_t index) const;

  /// A value whose record is the library's own and carries no memory flags: this one, or a copy of
  /// what belongs to the caller of a worksheet function and may go before the result is read, or of
  /// what only Excel can free, which a thread that ends must not ask it for.
  XXloper Owned() const;

 private:
  explicit XXloper(std::shared_ptr<const XLOPER12> record) noexcept : record_(std::move(record)) {}
  friend class XXloperArray;

  std::shared_ptr<const XLOPER12> record_;
};

/// Builds an array result in one allocation for its elements and one for each of its texts. An
/// element's type bits never carry memory flags. An index past the end throws std::out_of_range.
class XXloperArray {
 public:
  /// Rows and columns are brought into the size of a worksheet, at least 1 each. Every element
  /// starts as `fill`. Throws std::bad_alloc.
  XXloperArray(std::int32_t rows, std::int32_t columns, ExcelError fill = ExcelError::kNA);
  XXloperArray(XXloperArray&&) noexcept = default;
  XXloperArray& operator=(XXloperArray&&) noexcept = default;
  ~XXloperArray();

  /// A number that is not finite, which Excel could not show, becomes #NUM!.
  void SetNumber(std::size_t index, double number);
  /// Longer than a cell can hold is cut, as XXloper::Text does.
  void SetText(std::size_t index, std::u16string_view text);
  void SetBoolean(std::size_t index, bool boolean);
  void SetError(std::size_t index, std::int32_t code);
  void SetError(std::size_t index, ExcelError error) {
    SetError(index, static_cast<std::int32_t>(error));
  }
  void SetEmpty(std::size_t index);
  /// By value; an omitted value is empty, references, arrays and unknown types become #VALUE!.
  void Set(std::size_t index, const XLOPER12& value);
  std::size_t size() const;
  /// The finished value; the builder is empty afterwards.
  XXloper Finish() &&;

 private:
  struct Storage;
  XLOPER12& At(std::size_t index);

  std::shared_ptr<Storage> storage_;
};

}  // namespace zavrel
