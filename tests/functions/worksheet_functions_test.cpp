// What worksheet functions show for answers that only a host of the tests' gives.
#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>

#include "frame/worksheet_function.h"
#include "functions/cell_value_exports.h"
#include "support/open_add_in.h"

namespace zavrel {
using Piece = const XLOPER12*;
using OfOne = XLOPER12*(Piece);
using OfTwo = XLOPER12*(Piece, Piece);
using OfThree = XLOPER12*(Piece, Piece, Piece);
using OfThirty = XLOPER12*(ZAV_THIRTY_PARAMETERS);
ZAV_EXPORT OfOne ZavrelDurbinWatson, ZavrelLn, ZavrelCountCategories;
ZAV_EXPORT OfTwo ZavrelCountCellsByType, ZavrelMedian, ZavrelPairCount, ZavrelPairMean,
    ZavrelPairStdDev, ZavrelPairMeanQuotient, ZavrelPairMeanAbsQuotient, ZavrelPower, ZavrelDummy;
ZAV_EXPORT OfThree ZavrelPairMedian, ZavrelBoxPlotX;
ZAV_EXPORT OfThirty ZavrelMean, ZavrelProduct, ZavrelMeanI, ZavrelProductI;
ZAV_EXPORT XLOPER12* ZavrelPairCountRange(Piece, Piece, Piece, Piece, Piece, Piece);
ZAV_EXPORT std::int32_t ZavrelBoxPlotCountOutliers(Piece, Piece);
ZAV_EXPORT XLOPER12* ZavrelAutocorrelation(Piece, std::int32_t);
ZAV_EXPORT std::int16_t ZavrelStandardizeVB(double, double, double, double*);
ZAV_EXPORT XLOPER12* ZavrelInteraction(Piece, Piece, Piece, Piece, Piece, Piece, Piece, Piece,
                                       Piece, Piece, Piece, Piece, Piece, Piece);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

Piece OfRange(OfThirty* statistic, Piece range) {
  static const Argument missing(xltypeMissing);
  std::array<Piece, 30> all;
  all.fill(missing);
  all[0] = range;
  return std::apply(statistic, all);
}

}  // namespace

TEST_CASE("cells that are not calculated yet end a call, and the next one finds all in order") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, 2.0, 6.0});
  add_in.excel.caller = Area(0, 3, 5, 5);
  const Reference range(Area(0, 2, 0, 0));
  const Reference nowhere(Area(2, 1, 0, 0));
  const Argument one(Cell(1.0)), text(Cell(u"2")), none(1, 1, {u""});
  const struct {
    const char* function;
    std::function<Piece(Piece range)> call;
    const char* shown;
    const char* of_nowhere = "#23";
  } cases[] = {
      {"Mean", [](Piece x) { return OfRange(ZavrelMean, x); }, "3"},
      {"Product", [](Piece x) { return OfRange(ZavrelProduct, x); }, "12"},
      {"MeanI", [](Piece x) { return OfRange(ZavrelMeanI, x); }, "3", ""},
      {"ProductI", [](Piece x) { return OfRange(ZavrelProductI, x); }, "12", ""},
      {"Median", [](Piece x) { return ZavrelMedian(x, nullptr); }, "1.5"},
      {"PairCount", [&](Piece x) { return ZavrelPairCount(one, x); }, "1"},
      {"PairMedian", [&](Piece x) { return ZavrelPairMedian(x, range, nullptr); }, "0"},
      {"PairCountRange",
       [&](Piece x) { return ZavrelPairCountRange(x, x, nullptr, nullptr, nullptr, nullptr); },
       "3"},
      {"DurbinWatson", [](Piece x) { return ZavrelDurbinWatson(x); }, "0.414634146341"},
      {"Power", [&](Piece x) { return ZavrelPower(x, one); }, "1;2;6;"},
      {"Dummy", [&](Piece x) { return ZavrelDummy(x, text); }, "0;1;0;"},
      {"Interaction",
       [&](Piece x) {
         return ZavrelInteraction(range, none, x, none, nullptr, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr);
       },
       "1;4;36;"},
      {"GetCellValues", [&](Piece x) { return ZavrelGetCellValues(x, one); }, "1;2;6;#42;"},
  };
  add_in.excel.texts_of_numbers = {{1, u"1"}, {2, u"2"}, {6, u"6"}};
  for (const auto& given : cases) {
    CAPTURE(given.function);
    const std::string uncalculated = given.of_nowhere;
    for (const int code : {xlretUncalced, xlretInvXlfn}) {
      add_in.excel.answer = [=](const XLREF12&) { return code; };
      CHECK(Shown(*given.call(range)) == uncalculated);
    }
    add_in.excel.answer = nullptr;
    CHECK(Shown(*given.call(range)) == given.shown);
    CHECK(Shown(*given.call(nowhere)) == given.of_nowhere);
  }
  CHECK(ZavrelBoxPlotCountOutliers(range, Argument(Cell(0.0))) == 0);
  CHECK(ZavrelBoxPlotCountOutliers(nowhere, nullptr) == -1);

  // Nor is an argument of another kind taken for a wrong one, or the caller's cells for none.
  add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  const Argument data(3, 1, {1.0, 2.0, 2.0});
  CHECK(Shown(*ZavrelBoxPlotX(data, Reference(Area(0, 0, 5, 5)), one)) == "#23");
  add_in.excel.answer = nullptr;
  add_in.excel.text_code = xlretUncalced;
  CHECK(Shown(*ZavrelDummy(data, text)) == "#23");
  CHECK(Shown(*ZavrelCountCategories(data)) == "#23");
  add_in.excel.text_code = xlretSuccess;
  CHECK(Shown(*ZavrelCountCategories(data)) == "2");
  add_in.excel.caller_code = xlretUncalced;
  CHECK(Shown(*ZavrelGetCellValues(range, one)) == "#23");
}

TEST_CASE("a lag that there is not is refused before anything is read") {
  OpenAddIn add_in;
  for (const std::int32_t lag : {-1, 251, -2147483647})
    CHECK(Shown(*ZavrelAutocorrelation(Reference(Area(0, 2, 0, 0)), lag)) == "#15");
  CHECK(add_in.excel.lookups == 0);
}

TEST_CASE("an array of cells is as large as the calling range, up to the most there is") {
  OpenAddIn add_in;
  const auto size = [&](const XLREF12& caller) {
    add_in.excel.caller = caller;
    const auto& array =
        ZavrelGetCellValues(Reference(Area(0, 1, 0, 0)), Argument(Cell(1.0)))->val.array;
    return std::pair(array.rows, array.columns);
  };
  CHECK(size(Area(0, 65535, 0, 0)) == std::pair(65535, 1));
  CHECK(size(Area(3, 3, 0, 256)) == std::pair(1, 256));
}

TEST_CASE("numbers that no cell holds do no harm") {
  const OpenAddIn add_in;
  const double infinity = std::numeric_limits<double>::infinity(), nan = std::nan("");
  const Argument hostile(4, 1, {nan, infinity, -infinity, 1.0});
  const Argument more(4, 1, {1.0, infinity, 0.0, nan});
  for (const auto function : {ZavrelPairMean, ZavrelPairStdDev, ZavrelPairMeanQuotient,
                              ZavrelPairMeanAbsQuotient, ZavrelPairCount})
    CHECK((function(hostile, more)->xltype & (xltypeErr | xltypeNum)) != 0);
  CHECK(Shown(*ZavrelCountCellsByType(hostile, Argument(Cell(nan)))) == "#15");
  const Argument smallest{Cell(std::numeric_limits<double>::denorm_min())};
  CHECK(Number(*ZavrelLn(smallest)) == doctest::Approx(-1074 * std::log(2.0)).epsilon(1e-15));
}

TEST_CASE("a category is what the host makes of a number, which it is asked once") {
  OpenAddIn add_in;
  add_in.excel.texts_of_numbers = {{2, u"2"}, {12, u"1,2E1"}, {0, u"0"}};
  const Argument numbers(5, 1, {2.0, 12.0, u"2", 2.0, 0.0});
  for (const auto& [category, shown] : {std::pair{Cell(u"2"), "1;0;1;1;0;"},
                                        {Cell(2.0), "1;0;1;1;0;"},
                                        {Cell(u"1,2e1"), "0;1;0;0;0;"}})
    CHECK(Shown(*ZavrelDummy(numbers, Argument(category))) == shown);

  std::vector<Cell> cells;
  cells.reserve(3000);
  for (int row = 0; row < 3000; ++row) cells.emplace_back(row % 3 * (row % 3 + 4.0));  // 0, 5, 12
  add_in.excel.texts_of_numbers[5] = u"5";
  add_in.excel.conversions = 0;
  const XLOPER12& column = *ZavrelDummy(Argument(3000, 1, cells), Argument(Cell(u"1,2E1")));
  CHECK(add_in.excel.conversions == 3);
  double sum = 0;
  for (int row = 0; row < 3000; ++row) sum += column.val.array.lparray[row].val.num;
  CHECK(sum == 1000);
  CHECK(column.val.array.lparray[2].val.num == 1);
  CHECK(Number(*ZavrelCountCategories(Argument(3000, 1, cells))) == 3);
  CHECK(add_in.excel.conversions == 6);
}

TEST_CASE("a macro gets the standardized value and a status") {
  double result = 7;
  for (const auto& [x, mean, deviation, status, expected] :
       {std::tuple{5.0, 3.0, 4.0, 0, 0.5},
        {5.0, 3.0, 0.0, 10, std::numeric_limits<double>::infinity()},
        {3.0, 3.0, 0.0, 10, std::nan("")},
        {1e308, -1e308, 1e-5, 4, std::numeric_limits<double>::infinity()},
        {3.0, 3.0, 1e-300, 0, 0.0}}) {  // earlier overflows are forgotten
    CAPTURE(x);
    CHECK(ZavrelStandardizeVB(x, mean, deviation, &result) == status);
    CHECK((result == expected || (std::isnan(result) && std::isnan(expected))));
  }
  CHECK(ZavrelStandardizeVB(1, 2, 3, nullptr) == -11005);
}

}  // namespace zavrel::tests
