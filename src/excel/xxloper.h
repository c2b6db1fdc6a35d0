#pragma once
// One Excel value, shared and read-only, released in the way that its owner requires.

#include <bit>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "excel/xloper12.h"

namespace zavrel {

/// The elements of an array record, row by row; empty for every other type, a null pointer or
/// dimensions beyond a worksheet's.
std::span<const XLOPER12> ElementsIn(const XLOPER12& record);
/// The code of a value that is an error, or of the first error in an array; std::nullopt if there
/// is none.
std::optional<std::int32_t> FirstError(const XLOPER12& record);

/// Deleter of a record that Excel filled as the result of a C API call: has Excel free what it
/// attached, then frees the record itself. A record with nothing attached is freed in the same way:
/// sparing it would save some 15 ns of the 500 of a call with its result, not enough for a second
/// rule.
struct CallExcelToFree {
  void operator()(const XLOPER12* record) const noexcept;
};

/// A record for Excel to fill, with all the memory that its value will need.
std::shared_ptr<XLOPER12> NewExcelResult();

/// Deleter of a record that Excel passed in as an argument: does nothing.
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
  /// Wraps a record of NewExcelResult that Excel has filled; the last holder frees it through
  /// Excel.
  static XXloper FromExcelResult(std::shared_ptr<XLOPER12> record) noexcept;

  /// The number as it is; for a computed double use ToExcelValue (excel/double_value.h).
  static XXloper Number(double number);
  static XXloper Integer(std::int32_t integer);
  static XXloper Boolean(bool boolean) noexcept;
  /// A copy of the text, cut to the 32,767 code units that a cell can hold (no surrogate pair is
  /// split).
  static XXloper Text(std::u16string_view text);
  /// These wrap shared records that exist from the start, as Boolean does: they allocate nothing.
  static XXloper Missing() noexcept;
  static XXloper Nil() noexcept;
  static XXloper EmptyText() noexcept;
  /// The shared immutable value of an error.
  static XXloper Error(ExcelError error) noexcept;
  /// The shared value of an error code, or a new value for a code that has none (such as #NULL!).
  static XXloper ErrorByCode(std::int32_t code);

  /// The type bits without the memory flags.
  std::uint32_t type() const { return TypeOf(*record_); }
  /// True when the type is one of these, false for a compound or unknown type.
  bool Is(std::uint32_t types) const {
    return std::has_single_bit(type()) && (type() & types) != 0;
  }
  bool IsMissing() const { return type() == xltypeMissing; }
  const XLOPER12& record() const { return *record_; }

  std::u16string_view text() const { return TextIn(*record_); }
  std::span<const XLOPER12> elements() const { return ElementsIn(*record_); }

  /// An element of an array, as a value that keeps the array alive; past the end, the missing
  /// value.
  XXloper Element(std::size_t index) const;

  /// A value whose record belongs to the library and has no memory flags: this one, or a copy.
  /// Copied are an argument, which its owner may free before the result is read, and a record that
  /// only Excel can free, because an ending thread must not call Excel.
  XXloper Owned() const;

 private:
  explicit XXloper(std::shared_ptr<const XLOPER12> record) noexcept : record_(std::move(record)) {}
  friend class XXloperArray;

  std::shared_ptr<const XLOPER12> record_;
};

/// Builds an array result in one allocation for its elements and one for each of its texts. The
/// elements have no memory flags. An index past the end throws std::out_of_range.
class XXloperArray {
 public:
  /// Rows and columns are limited to at least 1 and at most the size of a worksheet. Every element
  /// starts as the error `fill`. Throws std::bad_alloc.
  XXloperArray(std::int32_t rows, std::int32_t columns, ExcelError fill = ExcelError::kNA);
  XXloperArray(XXloperArray&&) noexcept = default;
  ~XXloperArray();

  /// Excel cannot show a number that is not finite: it becomes #NUM!.
  void SetNumber(std::size_t index, double number);
  /// Cuts the text as XXloper::Text does.
  void SetText(std::size_t index, std::u16string_view text);
  void SetBoolean(std::size_t index, bool boolean);
  void SetError(std::size_t index, std::int32_t code);
  void SetEmpty(std::size_t index);
  /// Copies the value. An omitted value becomes empty; a reference, an array or an unknown type
  /// becomes #VALUE!.
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
