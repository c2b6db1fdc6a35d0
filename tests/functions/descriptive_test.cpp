// The summary statistics and the cells of a range: what a cell shows.
#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "frame/worksheet_function.h"
#include "functions/open_add_in.h"
#include "platform/export.h"

namespace zavrel {
#define ZAV_DECLARE(name) ZAV_EXPORT XLOPER12* name(ZAV_THIRTY_PARAMETERS);
ZAV_DECLARE(ZavrelMin)
ZAV_DECLARE(ZavrelMinI)
ZAV_DECLARE(ZavrelMax)
ZAV_DECLARE(ZavrelMean)
ZAV_DECLARE(ZavrelMeanI)
ZAV_DECLARE(ZavrelStdDev)
ZAV_DECLARE(ZavrelStdDevP)
ZAV_DECLARE(ZavrelVariance)
ZAV_DECLARE(ZavrelVarianceP)
ZAV_DECLARE(ZavrelSkewness)
ZAV_DECLARE(ZavrelSkewnessP)
ZAV_DECLARE(ZavrelKurtosis)
ZAV_DECLARE(ZavrelKurtosisP)
ZAV_DECLARE(ZavrelSum)
ZAV_DECLARE(ZavrelSumI)
ZAV_DECLARE(ZavrelProduct)
ZAV_DECLARE(ZavrelProductI)
ZAV_DECLARE(ZavrelRange)
ZAV_DECLARE(ZavrelRangeI)
ZAV_DECLARE(ZavrelCount)
ZAV_DECLARE(ZavrelAveDev)
ZAV_DECLARE(ZavrelSumSq)
ZAV_DECLARE(ZavrelSumDevSq)
ZAV_DECLARE(ZavrelMeanAbs)
ZAV_EXPORT XLOPER12* ZavrelCountCellsByType(const XLOPER12* range, const XLOPER12* class_code);
#undef ZAV_DECLARE
}  // namespace zavrel

namespace zavrel::tests {
namespace {

using Statistic = XLOPER12* (*)(ZAV_THIRTY_PARAMETERS);

const XLOPER12& Call(Statistic statistic, const std::vector<const XLOPER12*>& arguments) {
  static const Argument missing(xltypeMissing);
  std::array<const XLOPER12*, 30> all;
  all.fill(missing);
  std::copy(arguments.begin(), arguments.end(), all.begin());
  return *std::apply(statistic, all);
}

bool IsEmptyText(const XLOPER12& result) {
  return (result.xltype & xltypeMask) == xltypeStr && result.val.str[0] == 0;
}

}  // namespace

TEST_CASE("each function gives its own statistic") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {2.5, -1.25, 7.0, 3.75, 0.5, 11.0, -4.0, 6.25});
  const Reference range(Area(0, 7, 0, 0));
  // As in the kernels' tests.
  const std::pair<Statistic, double> expected[] = {
      {ZavrelMin, -4},
      {ZavrelMax, 11},
      {ZavrelMean, 3.21875},
      {ZavrelStdDev, 4.844801153224528},
      {ZavrelStdDevP, 4.531896505603366},
      {ZavrelVariance, 23.472098214285715},
      {ZavrelVarianceP, 20.5380859375},
      {ZavrelSkewness, 0.11277000449461373},
      {ZavrelSkewnessP, 0.09041715435510045},
      {ZavrelKurtosis, 2.5334625019614103},
      {ZavrelKurtosisP, 2.1111726199816236},
      {ZavrelSum, 25.75},
      {ZavrelSumI, 25.75},
      {ZavrelProduct, 11279.296875},
      {ZavrelRange, 15},
      {ZavrelCount, 8},
      {ZavrelAveDev, 3.78125},
      {ZavrelSumSq, 247.1875},
      {ZavrelSumDevSq, 164.3046875},
      {ZavrelMeanAbs, 4.53125},
  };
  for (int round = 0; round < 2; ++round) {
    for (const auto& [statistic, value] : expected)
      CHECK(Number(Call(statistic, {range})) == doctest::Approx(value).epsilon(1e-14).scale(0));
  }
}

TEST_CASE("incomplete data") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, Cell(), 3.0});
  const Reference range(Area(0, 2, 0, 0));
  const Argument missing(xltypeMissing);
  const Argument huge(2, 1, {1.5e308, 1.5e308});

  // The functions that refuse leave nothing behind that others would see.
  CHECK(IsEmptyText(Call(ZavrelMeanI, {range})));
  CHECK(IsEmptyText(Call(ZavrelMinI, {range})));
  CHECK(Number(Call(ZavrelMean, {range})) == 2);
  CHECK(Number(Call(ZavrelMax, {range})) == 3);
  CHECK(IsEmptyText(Call(ZavrelMeanI, {range})));
  CHECK(IsEmptyText(Call(ZavrelSumI, {missing})));
  CHECK(IsEmptyText(Call(ZavrelSumI, {huge})));  // never an error
  CHECK(Error(Call(ZavrelSum, {huge})) == xlerrNum);
  const Reference nowhere(Area(2, 1, 0, 0));
  CHECK(IsEmptyText(Call(ZavrelProductI, {nowhere})));
  CHECK(Error(Call(ZavrelProduct, {nowhere})) == xlerrRef);

  add_in.excel.Set(1, 0, 8.0);
  CHECK(Number(Call(ZavrelMeanI, {range})) == 4);
  CHECK(Number(Call(ZavrelMean, {range})) == 4);
  add_in.excel.Set(1, 0, u"8");
  CHECK(IsEmptyText(Call(ZavrelMeanI, {range})));
  CHECK(Number(Call(ZavrelCount, {range})) == 2);
}

TEST_CASE("nothing to compute from") {
  OpenAddIn add_in;
  const Reference blank(Area(0, 2, 0, 0));
  const Argument one(Cell(7.0));
  CHECK(Number(Call(ZavrelSum, {blank})) == 0);
  CHECK(Number(Call(ZavrelRange, {blank})) == 0);
  CHECK(Number(Call(ZavrelCount, {})) == 0);
  CHECK(Error(Call(ZavrelMean, {blank})) == xlerrNA);
  CHECK(Error(Call(ZavrelProduct, {blank})) == xlerrValue);
  CHECK(Error(Call(ZavrelMeanAbs, {blank})) == xlerrValue);
  CHECK(Error(Call(ZavrelVariance, {one})) == xlerrDiv0);
  CHECK(Number(Call(ZavrelVarianceP, {one})) == 0);
  CHECK(Error(Call(ZavrelKurtosisP, {one})) == xlerrDiv0);

  // A blank whole column is as blank as a part of it.
  const Reference blank_column(WholeColumns(0, 0));
  for (const Statistic statistic : {ZavrelSumI, ZavrelRangeI, ZavrelMinI, ZavrelMeanI}) {
    CHECK(IsEmptyText(Call(statistic, {blank_column})));
    CHECK(IsEmptyText(Call(statistic, {blank})));
  }
  CHECK(Number(Call(ZavrelSum, {blank_column})) == 0);
  add_in.excel.SetColumn(0, 2, {1.0, 2.0});
  const Reference used_column(WholeColumns(2, 2));
  CHECK(Number(Call(ZavrelSumI, {used_column})) == 3);

  // A cell that is not calculated yet: the call ends, and the next one finds everything in order.
  add_in.excel.SetColumn(0, 0, {1.0, 2.0, 6.0});
  add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(Error(Call(ZavrelMean, {blank})) == xlerrRef);
  add_in.excel.answer = nullptr;
  CHECK(Number(Call(ZavrelMean, {blank})) == 3);
  CHECK(add_in.excel.values_out == 0);
}

TEST_CASE("cells by their class") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, u"a", Cell(), true, ErrorCell{xlerrNA}});
  const Reference range(Area(0, 4, 0, 0));
  const double expected[] = {5, 1, 4, 3, 1};
  for (int code = 0; code < 5; ++code) {
    const Argument class_code(Cell(code + 0.0));
    CHECK(Number(*ZavrelCountCellsByType(range, class_code)) == expected[code]);
  }
  const Reference column(WholeColumns(0, 0));
  const Reference blank_columns(WholeColumns(3, 4));
  const double expected_of_column[] = {kExcelRows, 1, 4, 3, kExcelRows - 4};
  for (int code = 0; code < 5; ++code) {
    const Argument class_code(Cell(code + 0.0));
    CHECK(Number(*ZavrelCountCellsByType(column, class_code)) == expected_of_column[code]);
    CHECK(Number(*ZavrelCountCellsByType(blank_columns, class_code)) ==
          (code == 0 || code == 4 ? 2.0 * kExcelRows : 0));
  }
  for (const double code : {-1.0, 5.0, 1e9, std::nan("")}) {
    const Argument class_code{Cell(code)};
    CHECK(Error(*ZavrelCountCellsByType(range, class_code)) == xlerrValue);
  }
  CHECK(Error(*ZavrelCountCellsByType(range, nullptr)) == xlerrValue);
}

}  // namespace zavrel::tests
