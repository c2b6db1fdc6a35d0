#pragma once
// A host with sheets of cells behind the callback, as far as reading arguments needs one.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "data/session_caches.h"
#include "excel/excel_call.h"

namespace zavrel::tests {

struct ErrorCell {
  std::int32_t code;
};
using Cell = std::variant<std::monostate, double, std::u16string, bool, ErrorCell>;

/// A value with a text of its own, as a host attaches one.
inline void SetRecord(XLOPER12& record, const Cell& cell) {
  record = {};
  record.xltype = xltypeNil;
  if (const auto* number = std::get_if<double>(&cell)) {
    record.xltype = xltypeNum;
    record.val.num = *number;
  } else if (const auto* boolean = std::get_if<bool>(&cell)) {
    record.xltype = xltypeBool;
    record.val.xbool = *boolean ? 1 : 0;
  } else if (const auto* error = std::get_if<ErrorCell>(&cell)) {
    record.xltype = xltypeErr;
    record.val.err = error->code;
  } else if (const auto* text = std::get_if<std::u16string>(&cell)) {
    record.xltype = xltypeStr;
    record.val.str = new XCHAR[text->size() + 1];
    record.val.str[0] = static_cast<XCHAR>(text->size());
    std::copy(text->begin(), text->end(), record.val.str + 1);
  }
}

inline void FreeRecord(XLOPER12& record) {
  switch (record.xltype & xltypeMask) {
    case xltypeStr:
      delete[] record.val.str;
      break;
    case xltypeMulti:
      for (std::int32_t i = 0; i < record.val.array.rows * record.val.array.columns; ++i)
        FreeRecord(record.val.array.lparray[i]);
      delete[] record.val.array.lparray;
      break;
    case xltypeRef:
      delete record.val.mref.lpmref;
      break;
    default:
      break;
  }
  record = {};
}

/// An argument that a test passes; owns what hangs on it.
class Argument {
 public:
  explicit Argument(const Cell& cell) { SetRecord(record_, cell); }
  explicit Argument(std::uint32_t type) { record_.xltype = type; }
  Argument(std::int32_t rows, std::int32_t columns, const std::vector<Cell>& cells) {
    record_.xltype = xltypeMulti;
    record_.val.array.rows = rows;
    record_.val.array.columns = columns;
    record_.val.array.lparray = new XLOPER12[cells.size()];
    for (std::size_t i = 0; i < cells.size(); ++i)
      SetRecord(record_.val.array.lparray[i], cells[i]);
  }
  ~Argument() { FreeRecord(record_); }
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;

  operator const XLOPER12*() const { return &record_; }  // NOLINT(google-explicit-constructor)

 private:
  XLOPER12 record_{};
};

/// A reference: on the calling sheet, or of any number of areas on a sheet by its id.
class Reference {
 public:
  explicit Reference(const XLREF12& area) {
    record_.xltype = xltypeSRef;
    record_.val.sref.count = 1;
    record_.val.sref.ref = area;
  }
  Reference(std::uint64_t sheet, const std::vector<XLREF12>& areas)
      : areas_(4 + areas.size() * sizeof(XLREF12)) {
    auto* list = reinterpret_cast<XLMREF12*>(areas_.data());
    list->count = static_cast<std::uint16_t>(areas.size());
    std::copy(areas.begin(), areas.end(), list->reftbl);
    record_.xltype = xltypeRef;
    record_.val.mref.lpmref = list;
    record_.val.mref.idSheet = sheet;
  }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  operator const XLOPER12*() const { return &record_; }  // NOLINT(google-explicit-constructor)

 private:
  alignas(8) std::vector<unsigned char> areas_;
  XLOPER12 record_{};
};

/// Rows and columns from 0, ends included.
inline XLREF12 Area(std::int32_t first_row, std::int32_t last_row, std::int32_t first_column,
                    std::int32_t last_column) {
  return {first_row, last_row, first_column, last_column};
}
inline XLREF12 WholeColumns(std::int32_t first, std::int32_t last) {
  return {0, kExcelRows - 1, first, last};
}
inline XLREF12 WholeRows(std::int32_t first, std::int32_t last) {
  return {first, last, 0, kExcelColumns - 1};
}

/// The one host at a time. Session caches are open while it lives.
class FakeExcel {
 public:
  static constexpr std::uint64_t kCallingSheet = 11;

  FakeExcel() {
    current = this;
    SetExcelCallback(&Callback);
    OpenCaches();
  }
  ~FakeExcel() {
    SetSessionCaches(nullptr, nullptr);
    SetExcelCallback(nullptr);
    current = nullptr;
  }
  FakeExcel(const FakeExcel&) = delete;
  FakeExcel& operator=(const FakeExcel&) = delete;

  void OpenCaches() { SetSessionCaches(data_cache_, parm_cache_); }

  void Set(std::int32_t row, std::int32_t column, Cell cell, std::uint64_t sheet = kCallingSheet) {
    if (std::holds_alternative<std::monostate>(cell)) {
      sheets_[sheet].erase({row, column});
    } else {
      sheets_[sheet][{row, column}] = std::move(cell);
    }
  }
  /// Downwards from the cell.
  void SetColumn(std::int32_t row, std::int32_t column, const std::vector<Cell>& cells,
                 std::uint64_t sheet = kCallingSheet) {
    for (const Cell& cell : cells) Set(row++, column, cell, sheet);
  }

  bool clips_to_used_part = false;            // gives no rows and columns behind the last used ones
  std::function<int(const XLREF12&)> answer;  // a return code other than 0 ends a look-up
  int conversion_code = xlretSuccess;         // of what is asked for the calling sheet
  int text_code = xlretSuccess;               // of conversions to text
  int texts_made = 0;                         // conversions to text that were asked for
  std::map<double, std::u16string> texts_of_numbers;  // what a number can be converted to
  std::optional<XLREF12> caller;                      // nothing: called from no cell
  int caller_code = xlretSuccess;
  int lookups = 0;
  int conversions = 0;  // to text
  std::int64_t cells_given = 0;
  int values_out = 0;  // given, with memory of their own, and not freed yet

  static inline FakeExcel* current = nullptr;
  static inline int inside = 0;  // calls that are running

 private:
  using Sheet = std::map<std::pair<std::int32_t, std::int32_t>, Cell>;

  static int Callback(int function, int count, XLOPER12** arguments, XLOPER12* result) {
    ++inside;
    const int code = current->Call(function, count, arguments, result);
    --inside;
    return code;
  }

  int Call(int function, int count, XLOPER12** arguments, XLOPER12* result) {
    switch (function) {
      case xlFree:
        if (OwnsMemory(*arguments[0])) --values_out;
        FreeRecord(*arguments[0]);
        return xlretSuccess;
      case xlCoerce: {
        const int code = count == 2 ? Convert(*arguments[0], *arguments[1], *result)
                                    : LookUp(*arguments[0], *result);
        if (code == xlretSuccess && OwnsMemory(*result)) ++values_out;
        return code;
      }
      case xlfCaller:
        if (caller_code != xlretSuccess) return caller_code;
        SetRecord(*result, ErrorCell{xlerrRef});
        if (caller) {
          result->xltype = xltypeSRef;
          result->val.sref = {1, *caller};
        }
        return xlretSuccess;
      case xlfRegister:
        SetRecord(*result, Cell(1.0));
        return xlretSuccess;
      case xlfUnregister:
        SetRecord(*result, Cell(true));
        return xlretSuccess;
      default:
        return xlretSuccess;
    }
  }

  static bool OwnsMemory(const XLOPER12& record) {
    return (record.xltype & (xltypeStr | xltypeMulti | xltypeRef)) != 0;
  }

  int Convert(const XLOPER12& value, const XLOPER12& type, XLOPER12& result) {
    if (type.val.w == static_cast<int>(xltypeStr)) return ConvertToText(value, result);
    if (conversion_code != xlretSuccess) return conversion_code;
    if (value.xltype != xltypeSRef || type.val.w != static_cast<int>(xltypeRef)) return xlretFailed;
    result.xltype = xltypeRef;
    result.val.mref.lpmref = new XLMREF12{1, {value.val.sref.ref}};
    result.val.mref.idSheet = kCallingSheet;
    return xlretSuccess;
  }

  int ConvertToText(const XLOPER12& value, XLOPER12& result) {
    ++conversions;
    ++texts_made;
    if (text_code != xlretSuccess) return text_code;
    if (value.xltype == xltypeBool) {
      SetRecord(result, Cell(value.val.xbool != 0 ? u"WAHR" : u"FALSCH"));
      return xlretSuccess;
    }
    const auto text =
        texts_of_numbers.find(value.xltype == xltypeInt ? value.val.w : value.val.num);
    if (text == texts_of_numbers.end()) return xlretFailed;
    SetRecord(result, Cell(text->second));
    return xlretSuccess;
  }

  int LookUp(const XLOPER12& reference, XLOPER12& result) {
    const bool local = reference.xltype == xltypeSRef;
    XLREF12 area = local ? reference.val.sref.ref : reference.val.mref.lpmref->reftbl[0];
    const Sheet& sheet = sheets_[local ? kCallingSheet : reference.val.mref.idSheet];
    ++lookups;
    if (const int code = answer ? answer(area) : 0; code != xlretSuccess) return code;
    if (area.rwFirst == area.rwLast && area.colFirst == area.colLast) {
      const auto cell = sheet.find({area.rwFirst, area.colFirst});
      SetRecord(result, cell != sheet.end() ? cell->second : Cell());
      return xlretSuccess;
    }
    if (clips_to_used_part && !Clip(sheet, area)) {
      SetRecord(result, Cell());
      return xlretSuccess;
    }
    return Fill(sheet, area, result);
  }

  static bool Clip(const Sheet& sheet, XLREF12& area) {
    std::int32_t row = -1;
    std::int32_t column = -1;
    for (const auto& [place, cell] : sheet) {
      row = std::max(row, place.first);
      column = std::max(column, place.second);
    }
    area.rwLast = std::min(area.rwLast, row);
    area.colLast = std::min(area.colLast, column);
    return area.rwFirst <= area.rwLast && area.colFirst <= area.colLast;
  }

  int Fill(const Sheet& sheet, const XLREF12& area, XLOPER12& result) {
    const std::int64_t rows = std::int64_t{area.rwLast} - area.rwFirst + 1;
    const std::int64_t columns = std::int64_t{area.colLast} - area.colFirst + 1;
    if (rows * columns > 20'000'000) {
      return xlretFailed;
    }
    cells_given += rows * columns;
    XLOPER12 nil{};
    nil.xltype = xltypeNil;
    auto* cells = new XLOPER12[static_cast<std::size_t>(rows * columns)];
    std::fill_n(cells, rows * columns, nil);
    for (auto place = sheet.lower_bound({area.rwFirst, 0});
         place != sheet.end() && place->first.first <= area.rwLast; ++place) {
      const auto [row, column] = place->first;
      if (column >= area.colFirst && column <= area.colLast)
        SetRecord(cells[(row - area.rwFirst) * columns + column - area.colFirst], place->second);
    }
    result.xltype = xltypeMulti;
    result.val.array.lparray = cells;
    result.val.array.rows = static_cast<std::int32_t>(rows);
    result.val.array.columns = static_cast<std::int32_t>(columns);
    return xlretSuccess;
  }

  std::map<std::uint64_t, Sheet> sheets_;
  std::shared_ptr<ExcelDataCache> data_cache_ = std::make_shared<ExcelDataCache>();
  std::shared_ptr<DatasetParmCache> parm_cache_ = std::make_shared<DatasetParmCache>();
};

/// No session caches while it lives.
class WithoutCaches {
 public:
  WithoutCaches() { SetSessionCaches(nullptr, nullptr); }
  ~WithoutCaches() { FakeExcel::current->OpenCaches(); }
  WithoutCaches(const WithoutCaches&) = delete;
  WithoutCaches& operator=(const WithoutCaches&) = delete;
};

}  // namespace zavrel::tests
