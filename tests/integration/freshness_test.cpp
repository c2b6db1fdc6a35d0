// Whatever is edited, what a function shows is computed from the cells as they are now: it shows
// the same of a copy of them in a place that nobody has asked about before.
#include <doctest/doctest.h>

#include <optional>
#include <random>

#include "excel/xloper12.h"
#include "host/workbook/cell_names.h"
#include "integration/running_add_in.h"
#include "platform/utf.h"

namespace zavrel::tests {
namespace {

using zavhost::CellRange;
using zavhost::Value;

constexpr int kRows = 30;
constexpr int kColumns = 4;
#ifdef __SANITIZE_ADDRESS__
constexpr int kSteps = 1500;
#else
constexpr int kSteps = 10'000;
#endif

struct Area {
  std::optional<std::uint32_t> sheet;  // nothing: the calling formula's
  CellRange range;
};
struct Argument {
  const char* text;
  std::vector<Area> areas;
  bool one = true;  // one argument
};

const std::vector<Argument>& Arguments() {
  static const std::vector<Argument> arguments = {
      {"A1:A30", {{{}, {0, 0, 29, 0}}}},
      {"A1:D12", {{{}, {0, 0, 11, 3}}}},
      {"B5:C20", {{{}, {4, 1, 19, 2}}}},
      {"D4", {{{}, {3, 3, 3, 3}}}},
      {"(A1:A10,B5:B30,A5:C8)", {{{}, {0, 0, 9, 0}}, {{}, {4, 1, 29, 1}}, {{}, {4, 0, 7, 2}}}},
      {"Other!A1:C9", {{1, {0, 0, 8, 2}}}},
      {"A1:A9,Other!B1:B20,D4",
       {{{}, {0, 0, 8, 0}}, {1, {0, 1, 19, 1}}, {{}, {3, 3, 3, 3}}},
       false},
      {"2:3", {{{}, {1, 0, 2, kExcelColumns - 1}}}},
      // Slow: all of their cells are read.
      {"A:B", {{{}, {0, 0, kExcelRows - 1, 1}}}},
      {"Data!C:C", {{0, {0, 2, kExcelRows - 1, 2}}}},
  };
  return arguments;
}
constexpr std::size_t kQuickArguments = 8;

/// Appends an area's cells as a function counts them, whole columns and rows as far as they are
/// used.
void AppendCells(const zavhost::Sheet& sheet, CellRange range, std::vector<Value>& cells) {
  // No test goes further than this.
  constexpr int kFarRow = 300;
  constexpr int kFarColumn = 20;
  const bool whole_columns = range.rows() == kExcelRows;
  const bool whole_rows = range.columns() == kExcelColumns;
  CellRange used{range.first_row, range.first_column, -1, -1};
  for (int row = range.first_row; row <= std::min(range.last_row, kFarRow); ++row) {
    for (int column = range.first_column; column <= std::min(range.last_column, kFarColumn);
         ++column) {
      if (sheet.At(row, column).IsBlank()) continue;
      used.last_row = std::max(used.last_row, row);
      used.last_column = std::max(used.last_column, column);
    }
  }
  if (whole_columns) range.last_row = used.last_row;
  if (whole_rows) range.last_column = used.last_column;
  for (int row = range.first_row; row <= range.last_row; ++row) {
    for (int column = range.first_column; column <= range.last_column; ++column)
      cells.push_back(sheet.At(row, column));
  }
}

class Sheets {
 public:
  explicit Sheets(unsigned seed) : random_(seed) {
    engine_ = ServingAddIn(BookOf({"A: ", "Other!A: ", "Copies!A: "}));
    for (int i = 0; i < 2 * kRows * kColumns; ++i) Edit();
  }

  zavhost::Engine& engine() { return *engine_; }
  int Below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  void Edit() {
    zavhost::Sheet& sheet = engine_->workbook().sheets[random_() % 2];
    const int row = Below(kRows);
    const int column = Below(kColumns);
    switch (Below(12)) {
      case 0:  // insert a cell: those below move down
        for (int i = kRows - 1; i > row; --i) sheet.Set(i, column, Value(sheet.At(i - 1, column)));
        break;
      case 1: {  // two cells change places
        const Value one = sheet.At(row, column);
        const int other = Below(kRows);
        sheet.Set(row, column, Value(sheet.At(other, column)));
        sheet.Set(other, column, one);
        return;
      }
      case 2:  // a column is used further down than before, or less far again
        sheet.Set(Below(2) == 0 ? 299 : 150, Below(3), NewValue());
        return;
      case 3:  // a column is cleared
        if (Below(8) == 0) {
          for (int i = 0; i < kRows; ++i) sheet.Set(i, column, Value());
        }
        break;
      default:
        break;
    }
    sheet.Set(row, column, NewValue());
  }

  /// Every function over one argument, as seen from one of the sheets.
  void Compare(const Argument& argument) {
    static const auto of_any = zavhost::tests::CasesIn(
        "Mean|MeanI|Sum|Min|Max|Range|Count|SumSq|Variance|StdDev|Skewness|Kurtosis|VarianceP|"
        "StdDevP|SkewnessP|KurtosisP");
    const std::uint32_t calling_sheet = static_cast<std::uint32_t>(Below(2));
    const std::string copy = CopyOf(argument, calling_sheet);
    const auto check = [&](const std::string& function, const std::string& further = "") {
      const auto shown = [&](const std::string& of) {
        return Shown(engine_->Evaluate(Utf16FromUtf8("Zav" + function + "(" + of + further + ")"),
                                       {calling_sheet, 0, kColumns + 20}));
      };
      INFO(function, "(", argument.text, further, ") on sheet ", calling_sheet);
      CHECK(shown(argument.text) == shown(copy));
    };
    for (const std::string& function : of_any) check(function);
    if (!argument.one) return;
    for (int method = -1; method <= 5; ++method) {
      const std::string end = "," + std::to_string(method);
      check("Percentile", "," + std::to_string(Below(41)) + "/40" + end);
      check("Quartile", "," + std::to_string(Below(5)) + end);
      check("Median", end);
    }
    check("Mode", ",1");
    for (int code = 0; code < 5; ++code) check("CountCellsByType", "," + std::to_string(code));
  }

 private:
  Value NewValue() {
    switch (Below(12)) {
      case 0:
        return {};
      case 1:
        return Value(u"a text");
      case 2:
        return Value(u"12");
      case 3:
        return Below(2) == 0;
      case 4:
        return Below(2) == 0 ? zavhost::ErrorCode::kNA : zavhost::ErrorCode::kDiv0;
      case 5:
        return static_cast<double>(Below(4));
      default:
        return static_cast<double>(Below(100'000)) / 64 - 700;
    }
  }

  /// A new column with the argument's cells, as a reference.
  std::string CopyOf(const Argument& argument, std::uint32_t calling_sheet) {
    std::vector<Value> cells;
    for (const Area& area : argument.areas)
      AppendCells(engine_->workbook().sheets[area.sheet.value_or(calling_sheet)], area.range,
                  cells);
    REQUIRE((!cells.empty() && cells.size() <= 1000));
    CellRange range{copies_ / 100 * 1000, copies_ % 100, 0, copies_ % 100};
    range.last_row = range.first_row - 1;
    for (Value& cell : cells)
      engine_->workbook().sheets[2].Set(++range.last_row, range.first_column, std::move(cell));
    ++copies_;
    return "Copies!" + Utf8FromUtf16(zavhost::A1Text(range));
  }

  std::mt19937 random_;
  std::unique_ptr<zavhost::Engine> engine_;
  int copies_ = 0;
};

}  // namespace

TEST_CASE("after any sequence of edits every function is computed from the cells as they are") {
  Sheets sheets(20261125);
  for (int step = 0; step < kSteps; ++step) {
    CAPTURE(step);
    sheets.Edit();
    sheets.Compare(Arguments()[static_cast<std::size_t>(sheets.Below(kQuickArguments))]);
    // The same argument as one step in two: most often it saw no edit in between.
    if (step % 2 == 0) sheets.Compare(Arguments()[static_cast<std::size_t>(step / 2 % 3)]);
    if (step % 250 == 249) {
      for (const Argument& argument : Arguments()) sheets.Compare(argument);
    }
  }
  CloseClean(sheets.engine());
}

}  // namespace zavrel::tests
