// Large ranges that many formulas read: they are kept and indexed, and never stale.
#include <doctest/doctest.h>

#include "host/calc/engine.h"
#include "host/formula/search_index.h"

namespace zavhost {
namespace {

constexpr std::int32_t kRows = 400;

/// A1:B400 with keys from 400 down and numbers, 20 keys in column D and their lookups in column E;
/// A400 is a formula that comes last in the file.
Workbook LookupWorkbook() {
  Workbook workbook;
  workbook.sheets.emplace_back(u"Sheet1");
  Sheet& sheet = workbook.sheets[0];
  for (std::int32_t row = 0; row < kRows; ++row) {
    sheet.Set(row, 0, static_cast<double>(kRows - row));
    sheet.Set(row, 1, row * 10.0);
  }
  workbook.formula_texts = {u"VLOOKUP(D1,$A$1:$B$400,2,FALSE)", u"B1+5"};
  for (std::int32_t row = 0; row < 20; ++row) {
    sheet.Set(row, 3, static_cast<double>(kRows - row));
    workbook.formulas.push_back({{0, row, 4}, 0, {0, 0, 4}, {}});
  }
  workbook.formulas.push_back({{0, kRows - 1, 0}, 1, {0, kRows - 1, 0}, {}});
  return workbook;
}

}  // namespace

TEST_CASE("lookups see every change of the table") {
  Engine engine(LookupWorkbook());
  Sheet& sheet = engine.workbook().sheets[0];
  sheet.Set(19, 3, 5.0);
  engine.Recalculate();
  CHECK(sheet.At(7, 4) == Value(70.0));
  CHECK(sheet.At(19, 4) == Value(3950.0));  // the stored 5 comes before the formula's
  sheet.Set(7, 0, 1000.0);
  sheet.Set(8, 3, 1000.0);
  sheet.Set(395, 0, 0.0);
  engine.Recalculate();
  CHECK(sheet.At(7, 4) == Value(ErrorCode::kNA));
  CHECK(sheet.At(8, 4) == Value(70.0));
  CHECK(sheet.At(19, 4) == Value(3990.0));
}

TEST_CASE("an index finds the first and the last of equal values") {
  Array array{200, 1, {}};
  for (int i = 0; i < 200; ++i)
    array.values.emplace_back(i % 2 == 0 ? Value(static_cast<double>(i % 10)) : Value(u"Aa"));
  array.values[100] = Value();
  array.values[101] = ErrorCode::kNA;
  const auto held = std::make_shared<const Array>(std::move(array));
  CHECK(SearchIndex::Of(held) == nullptr);
  CHECK(SearchIndex::Of(held) == nullptr);
  const SearchIndex* index = SearchIndex::Of(held);
  REQUIRE(index != nullptr);
  CHECK(index->Find(Value(4.0), false) == 4);
  CHECK(index->Find(Value(4.0), true) == 194);
  CHECK(index->Find(Value(u"aA"), false) == 1);
  CHECK(index->Find(Value(u"aA"), true) == 199);
  CHECK_FALSE(index->Find(Value(5.0), false));
  CHECK_FALSE(index->Find(Value(true), false));
}

}  // namespace zavhost
