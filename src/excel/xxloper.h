#pragma once
// One Excel value, shared and read-only, with its owner's way of letting go.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "excel/xloper12.h"

namespace zavrel {

/// Deleter of a record that Excel filled as the result of a C API call: frees what Excel attached to
/// it through Excel, then the record itself.
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
  XXloper();

  /// Wraps an argument that Excel passed in. A null pointer counts as an omitted argument.
  static XXloper FromArgument(const XLOPER12* argument);
  /// Takes over a record that Excel filled; the last holder frees it through Excel.
  static XXloper FromExcelResult(std::unique_ptr<XLOPER12> record);

  static XXloper Number(double number);
  static XXloper Boolean(bool boolean);
  /// A text of the library's own; longer than a cell can hold is cut to 32,767 code units.
  static XXloper Text(std::u16string_view text);
  static const XXloper& Missing();
  static const XXloper& Nil();
  /// The shared immutable value of an error.
  static const XXloper& Error(ExcelError error);
  /// The shared value of Excel's error code; a code that has none (#NULL! among them) gives a fresh
  /// value with that very code.
  static XXloper ErrorByCode(std::int32_t code);

  /// Type bits without the memory flags.
  std::uint32_t type() const { return record_->xltype & xltypeMask; }
  bool Is(std::uint32_t types) const { return (type() & types) != 0; }
  bool IsMissing() const { return type() == xltypeMissing; }
  const XLOPER12& record() const { return *record_; }

  /// The counted text of a string value; empty for every other type or a null pointer.
  std::u16string_view text() const;
  /// The elements of an array, row by row; empty for every other type or malformed dimensions.
  std::span<const XLOPER12> elements() const;

 private:
  explicit XXloper(std::shared_ptr<const XLOPER12> record) : record_(std::move(record)) {}
  friend class XXloperArray;

  std::shared_ptr<const XLOPER12> record_;
};

/// Builds an array result in one allocation for its elements and one for each of its texts.
class XXloperArray {
 public:
  /// rows and columns at least 1; every element starts as `fill`.
  XXloperArray(std::int32_t rows, std::int32_t columns, ExcelError fill = ExcelError::kNA);
  void SetNumber(std::size_t index, double number);
  void SetText(std::size_t index, std::u16string_view text);
  void SetBoolean(std::size_t index, bool boolean);
  void SetError(std::size_t index, std::int32_t code);
  void SetEmpty(std::size_t index);
  /// By value; references and arrays become #VALUE!.
  void Set(std::size_t index, const XLOPER12& value);
  std::size_t size() const;
  /// The finished value; the builder is empty afterwards.
  XXloper Finish() &&;

 private:
  struct Storage;
  std::shared_ptr<Storage> storage_;
};

}  // namespace zavrel
