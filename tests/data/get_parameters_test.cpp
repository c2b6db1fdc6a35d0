#include "data/get_parameters.h"

#include <doctest/doctest.h>

#include <utility>
#include <vector>

#include "numbers/error_double.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

using enum MissingDataPolicy;
using List = std::vector<const XLOPER12*>;

std::int32_t ErrorOf(const OrFailure<Parameters>& parameters) {
  REQUIRE_FALSE(parameters.ok());
  return parameters.failure().value().record().val.err;
}

}  // namespace

TEST_CASE("all kinds of arguments in one call") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, Cell(), 3.0});
  const Reference range(Area(0, 2, 0, 0));
  const Argument number(Cell(2.5));
  const Argument text(Cell(u"name"));
  const Argument missing(xltypeMissing);

  const List arguments{range, number, number, text, missing, missing, number, range};
  const Parameters parameters = *GetParameters("RDLSrlV", kNumbersOnly, arguments);
  CHECK(parameters.numbers(0).size() == 2);
  CHECK(parameters.number(1) == 2.5);
  CHECK(parameters.integer(2) == 2);
  CHECK(parameters.text(3) == u"name");
  CHECK_FALSE(parameters.given(4));
  CHECK_FALSE(parameters.given(5));
  REQUIRE(parameters.given(6));
  CHECK(parameters.data(6).size() == 4);
  CHECK_THROWS_AS(static_cast<void>(parameters.number(4)), std::bad_variant_access);

  const Parameters short_list = *GetParameters("Rdbr", kNumbersOnly, List{range});
  CHECK_FALSE(short_list.given(3));
  CHECK(GetParameters("R", kNumbersOnly, {})->data(0).size() == 1);
  CHECK(GetParameters("V", kPositional, List{nullptr, missing})->numbers(0).empty());

  // One data set for a range, whoever asks.
  CHECK(&GetParameters("R", kPositional, List{range})->data(0) == &parameters.data(0));
  CHECK(GetParameters("R", kNumbersOnly, List{range})->parm(0) == parameters.parm(0));
}

TEST_CASE("the first failure is the call's") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, u"a", ErrorCell{xlerrNA}});
  const Reference range(Area(0, 2, 0, 0));
  const Reference off_sheet(Area(2, 1, 0, 0));
  const Argument number(Cell(1.0));
  const Argument error(Cell(ErrorCell{xlerrDiv0}));
  const Argument missing(xltypeMissing);

  CHECK(ErrorOf(GetParameters("R", kNumbersRequired, List{range})) == xlerrValue);
  CHECK(ErrorOf(GetParameters("R", kNumbersRequired, List{range}, {.propagate_errors = true})) ==
        xlerrNA);
  CHECK(ErrorOf(GetParameters("RR", kNumbersOnly, List{range, off_sheet})) == xlerrRef);
  CHECK(ErrorOf(GetParameters("DR", kNumbersOnly, List{missing, off_sheet})) == xlerrValue);
  CHECK(ErrorOf(GetParameters("D", kNumbersOnly, List{error})) == xlerrValue);
  CHECK(ErrorOf(GetParameters("D", kNumbersOnly, List{error}, {.propagate_errors = true})) ==
        xlerrDiv0);
  CHECK(ErrorOf(GetParameters("?", kNumbersOnly, List{number})) == xlerrValue);

  excel.answer = [](const XLREF12&) { return xlretUncalced; };
  for (const char* kinds : {"R", "V", "D"}) {
    CHECK(GetParameters(kinds, kNumbersOnly, List{range}).failure().uncalculated());
  }
}

TEST_CASE("equal lengths") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, Cell(), 3.0, 4.0});
  excel.SetColumn(0, 1, {1.0, 2.0, 3.0});
  const Reference four(Area(0, 3, 0, 0));
  const Reference three(Area(0, 2, 1, 1));
  const Reference column_a(WholeColumns(0, 0));
  const Reference column_b(WholeColumns(1, 1));
  const ParameterOptions equal{.lengths = Lengths::kEqual};
  CHECK(GetParameters("RR", kNumbersOnly, List{four, three}, equal).ok());
  CHECK(ErrorOf(GetParameters("RR", kPositional, List{four, three}, equal)) == xlerrValue);
  CHECK(GetParameters("RR", kPositional, List{four, three}).ok());
  CHECK(GetParameters("RDr", kPositional, List{four, Argument(Cell(1.0)), nullptr}, equal).ok());

  // Whole columns go on below their last used cell.
  const Parameters columns = *GetParameters("RR", kPositional, List{column_a, column_b}, equal);
  REQUIRE(columns.numbers(0).size() == 4);
  REQUIRE(columns.numbers(1).size() == 4);
  CHECK(columns.numbers(1)[2] == 3);
  CHECK(columns.numbers(1)[3] == kMissingValue);
  CHECK(columns.data(1).size() == 3);
  CHECK_FALSE(GetParameters("RR", kPositional, List{column_a, three}, equal).ok());
}

TEST_CASE("equal lengths pair only cells that belong together") {
  constexpr std::uint64_t kSheet = FakeExcel::kCallingSheet;
  constexpr std::uint64_t kRowSheet = 9;
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, 2.0, 3.0});  // A:B is used to row 3, D:F to row 2, H:I to row 4
  excel.Set(1, 3, 4.0);
  excel.Set(1, 5, 5.0);
  excel.Set(3, 8, 6.0);
  excel.Set(20, 2, 7.0, kRowSheet);  // rows 21:22 to column 3, 31:32 to 4, 41:42 to 3, 51:53 to 2
  excel.Set(31, 3, 8.0, kRowSheet);
  excel.Set(41, 2, 9.0, kRowSheet);
  excel.Set(50, 1, 10.0, kRowSheet);
  excel.Set(0, 0, 11.0, 7);  // other sheets: 2 rows of 3, and 3 rows of 2
  excel.Set(1, 2, 12.0, 7);
  excel.Set(0, 0, 13.0, 8);
  excel.Set(2, 1, 14.0, 8);

  const Reference a(WholeColumns(0, 0));
  const Reference i(WholeColumns(8, 8));
  const Reference ab(WholeColumns(0, 1));
  const Reference df(WholeColumns(3, 5));
  const Reference hi(WholeColumns(7, 8));
  const Reference three_by_two(Area(60, 62, 0, 1));
  const Reference two_by_three(Area(60, 61, 0, 2));
  const Reference ai(kSheet, {WholeColumns(0, 0), WholeColumns(8, 8)});
  const Reference ia(kSheet, {WholeColumns(8, 8), WholeColumns(0, 0)});
  const Reference row_21(kRowSheet, {WholeRows(20, 20)});
  const Reference row_32(kRowSheet, {WholeRows(31, 31)});
  const Reference rows_21(kRowSheet, {WholeRows(20, 21)});
  const Reference rows_31(kRowSheet, {WholeRows(30, 31)});
  const Reference rows_41(kRowSheet, {WholeRows(40, 41)});
  const Reference rows_51(kRowSheet, {WholeRows(50, 52)});
  const Reference sheet_7(7, {Area(0, kExcelRows - 1, 0, kExcelColumns - 1)});
  const Reference sheet_8(8, {Area(0, kExcelRows - 1, 0, kExcelColumns - 1)});
  excel.clips_to_used_part = true;

  const auto paired = [](const XLOPER12* one, const XLOPER12* other) {
    return GetParameters("RR", kPositional, List{one, other}, {.lengths = Lengths::kEqual});
  };
  const Parameters columns = *paired(ab, hi);
  CHECK(columns.numbers(0).size() == 8);
  CHECK(columns.numbers(0)[4] == 3);
  CHECK(columns.numbers(0)[6] == kMissingValue);
  CHECK(columns.numbers(1)[7] == 6);
  const Parameters rows = *paired(row_21, row_32);
  CHECK(rows.numbers(0).size() == 4);
  CHECK(rows.numbers(0)[2] == 7);
  CHECK(paired(a, i).ok());
  CHECK(paired(three_by_two, ab).ok());
  CHECK(paired(rows_21, rows_41).ok());

  const std::pair<const XLOPER12*, const XLOPER12*> refused[] = {
      {ab, df},            // as many cells, in rows of another length
      {ab, two_by_three},  // likewise
      {ai, ia},            // as many cells, cut in different places
      {rows_21, rows_31},  // used to different columns
      {rows_21, rows_51},  // as many cells in more rows
      {row_21, rows_51},   // one row and several
      {rows_21, two_by_three},
      {sheet_7, sheet_8},
      {a, sheet_7},
  };
  for (const auto& [one, other] : refused) {
    CHECK(ErrorOf(paired(one, other)) == xlerrValue);
    CHECK(ErrorOf(paired(other, one)) == xlerrValue);
  }
  // Where positions do not count, neither does where the cells were cut.
  CHECK(GetParameters("RR", kNumbersOnly, List{ai, ia}, {.lengths = Lengths::kEqual}).ok());
}

}  // namespace zavrel::tests
