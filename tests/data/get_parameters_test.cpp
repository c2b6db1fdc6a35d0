#include "data/get_parameters.h"

#include <doctest/doctest.h>

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

TEST_CASE(
    "whole columns of unequal used length are equally long, the rest of the shorter missing") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, 2.0});
  excel.SetColumn(0, 1, {10.0, Cell(), 30.0, 40.0});
  const Reference short_column(WholeColumns(0, 0));
  const Reference long_column(WholeColumns(1, 1));
  const Reference three(Area(0, 2, 0, 0));
  const auto numbers = [](const Parameters& parameters, std::size_t position) {
    const auto given = parameters.numbers(position);
    return std::vector<double>(given.begin(), given.end());
  };
  for (const bool swapped : {false, true}) {
    const List columns =
        swapped ? List{long_column, short_column} : List{short_column, long_column};
    const auto equal = GetParameters("RR", kPositional, columns, {.lengths = Lengths::kEqual});
    REQUIRE(equal.ok());
    CHECK(numbers(*equal, swapped ? 1 : 0) ==
          std::vector<double>{1, 2, kMissingValue, kMissingValue});
    CHECK(numbers(*equal, swapped ? 0 : 1) == std::vector<double>{10, kMissingValue, 30, 40});
    const auto paired = GetParameters("RR", kPositional, columns, {.lengths = Lengths::kPaired});
    REQUIRE(paired.ok());
    CHECK(paired->numbers(swapped ? 1 : 0).size() == 2);
  }
  // A range that is no whole column has no cells behind its end.
  const auto fits = [&](MissingDataPolicy policy, const XLOPER12* a, const XLOPER12* b) {
    return GetParameters("RDR", policy, List{a, Argument(Cell(1.0)), b},
                         {.lengths = Lengths::kEqual})
        .ok();
  };
  CHECK(fits(kPositional, three, short_column));
  CHECK_FALSE(fits(kPositional, three, long_column));
  CHECK(fits(kNumbersOnly, three, short_column));
  CHECK_FALSE(fits(kNumbersOnly, three, long_column));
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

}  // namespace zavrel::tests
