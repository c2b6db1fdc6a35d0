#include "data/get_parameters.h"

#include <doctest/doctest.h>

#include <vector>

#include "data/fake_excel.h"
#include "excel/error_double.h"

namespace zavrel::tests {
namespace {

using enum MissingDataPolicy;
using Arguments = std::vector<const XLOPER12*>;

std::int32_t ErrorOf(const Parameters& parameters) {
  CHECK_FALSE(parameters.accepted());
  return parameters.failure().record().val.err;
}

}  // namespace

TEST_CASE("all kinds of arguments in one call") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, Cell(), 3.0});
  const Reference range(Area(0, 2, 0, 0));
  const Argument number(Cell(2.5));
  const Argument text(Cell(u"name"));
  const Argument missing(xltypeMissing);

  const Arguments arguments{range, number, number, text, missing, missing, number, range};
  const Parameters parameters = GetParameters("RDLSrlV", kNumbersOnly, arguments);
  REQUIRE(parameters.accepted());
  CHECK(parameters.numbers(0).size() == 2);
  CHECK(parameters.number(1) == 2.5);
  CHECK(parameters.integer(2) == 2);
  CHECK(parameters.text(3) == u"name");
  CHECK_FALSE(parameters.given(4));
  CHECK_FALSE(parameters.given(5));
  REQUIRE(parameters.given(6));
  CHECK(parameters.data(6).size() == 4);
  CHECK_THROWS_AS(static_cast<void>(parameters.number(4)), std::bad_variant_access);

  const Parameters short_list = GetParameters("Rdbr", kNumbersOnly, Arguments{range});
  REQUIRE(short_list.accepted());
  CHECK_FALSE(short_list.given(3));
  CHECK(GetParameters("R", kNumbersOnly, {}).data(0).size() == 1);
  CHECK(GetParameters("V", kPositional, Arguments{nullptr, missing}).numbers(0).empty());

  // One data set for a range, whoever asks.
  CHECK(&GetParameters("R", kPositional, Arguments{range}).data(0) == &parameters.data(0));
  CHECK(GetParameters("R", kNumbersOnly, Arguments{range}).parm(0) == parameters.parm(0));
}

TEST_CASE("the first failure is the call's") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, u"a", ErrorCell{xlerrNA}});
  const Reference range(Area(0, 2, 0, 0));
  const Reference off_sheet(Area(2, 1, 0, 0));
  const Argument number(Cell(1.0));
  const Argument error(Cell(ErrorCell{xlerrDiv0}));
  const Argument missing(xltypeMissing);

  CHECK(ErrorOf(GetParameters("R", kNumbersRequired, Arguments{range})) == xlerrValue);
  CHECK(ErrorOf(GetParameters("R", kNumbersRequired, Arguments{range},
                              {.propagate_errors = true})) == xlerrNA);
  CHECK(ErrorOf(GetParameters("RR", kNumbersOnly, Arguments{range, off_sheet})) == xlerrRef);
  CHECK(ErrorOf(GetParameters("DR", kNumbersOnly, Arguments{missing, off_sheet})) == xlerrValue);
  CHECK(ErrorOf(GetParameters("D", kNumbersOnly, Arguments{error})) == xlerrValue);
  CHECK(ErrorOf(GetParameters("D", kNumbersOnly, Arguments{error}, {.propagate_errors = true})) ==
        xlerrDiv0);
  CHECK(ErrorOf(GetParameters("?", kNumbersOnly, Arguments{number})) == xlerrValue);

  excel.answer = [](const XLREF12&) { return xlretUncalced; };
  for (const char* kinds : {"R", "V", "D"}) {
    const Parameters parameters = GetParameters(kinds, kNumbersOnly, Arguments{range});
    CHECK_FALSE(parameters.accepted());
    CHECK(parameters.uncalculated());
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
  const ParameterOptions equal{.equal_lengths = true};
  CHECK(GetParameters("RR", kNumbersOnly, Arguments{four, three}, equal).accepted());
  CHECK(ErrorOf(GetParameters("RR", kPositional, Arguments{four, three}, equal)) == xlerrValue);
  CHECK(GetParameters("RR", kPositional, Arguments{four, three}).accepted());
  CHECK(GetParameters("RDr", kPositional, Arguments{four, Argument(Cell(1.0)), nullptr}, equal)
            .accepted());

  // Whole columns go on below their last used cell.
  const Parameters columns = GetParameters("RR", kPositional, Arguments{column_a, column_b}, equal);
  REQUIRE(columns.accepted());
  REQUIRE(columns.numbers(0).size() == 4);
  REQUIRE(columns.numbers(1).size() == 4);
  CHECK(columns.numbers(1)[2] == 3);
  CHECK(columns.numbers(1)[3] == kMissingValue);
  CHECK(columns.data(1).size() == 3);
  CHECK_FALSE(GetParameters("RR", kPositional, Arguments{column_a, three}, equal).accepted());
}

}  // namespace zavrel::tests
