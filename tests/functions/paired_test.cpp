// Statistics of two ranges read as pairs, and counts inside bounds: what a cell shows.
#include <doctest/doctest.h>

#include <cmath>
#include <limits>

#include "functions/open_add_in.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT XLOPER12* ZavrelPairCount(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPairMean(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPairStdDev(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPairMedian(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPairMeanQuotient(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPairMeanAbsQuotient(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelCountRange(const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                      const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPairCountRange(const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                          const XLOPER12*, const XLOPER12*, const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

using Piece = const XLOPER12*;

/// Both columns, row by row: 10 and 1, none and 2, 30 and text, 40 and 4, error and 5, 60 and 7,
/// and two rows more in the first. The differences of the complete pairs are 9, 36 and 53.
struct TwoColumns : OpenAddIn {
  TwoColumns() {
    excel.SetColumn(0, 0, {10.0, Cell(), 30.0, 40.0, ErrorCell{xlerrNA}, 60.0, 70.0, 80.0});
    excel.SetColumn(0, 1, {1.0, 2.0, u"3", 4.0, 5.0, 7.0});
  }
  const Reference x{Area(0, 7, 0, 0)};
  const Reference y{Area(0, 5, 1, 1)};
  const Reference blank{Area(0, 7, 6, 6)};
};

}  // namespace

TEST_CASE("pairs of ranges with gaps, texts, errors and different lengths") {
  TwoColumns sheet;
  CHECK(Number(*ZavrelPairCount(sheet.x, sheet.y)) == 3);
  CHECK(Number(*ZavrelPairMean(sheet.x, sheet.y)) == doctest::Approx(98.0 / 3).epsilon(1e-15));
  CHECK(Number(*ZavrelPairMean(sheet.y, sheet.x)) == doctest::Approx(-98.0 / 3).epsilon(1e-15));
  CHECK(Number(*ZavrelPairStdDev(sheet.x, sheet.y)) ==
        doctest::Approx(std::sqrt(2954.0 / 6)).epsilon(1e-14));
  CHECK(Number(*ZavrelPairMeanQuotient(sheet.x, sheet.y)) ==
        doctest::Approx((10 + 10 + 60.0 / 7) / 3).epsilon(1e-15));
  // Without a method that of ZavMedian: a tie makes the differences discrete.
  for (int method = -1; method <= 5; ++method) {
    CAPTURE(method);
    const Argument code(Cell(method + 0.0));
    const double expected = method == -1 || method == 1 ? 22.5 : 36;
    CHECK(Number(*ZavrelPairMedian(sheet.x, sheet.y, code)) == expected);
  }
  CHECK(Number(*ZavrelPairMedian(sheet.x, sheet.y, nullptr)) == 22.5);
  sheet.excel.Set(5, 1, 24.0);  // 9, 36, 36
  CHECK(Number(*ZavrelPairMedian(sheet.x, sheet.y, nullptr)) == 36);
  CHECK(Number(*ZavrelPairMean(sheet.x, sheet.y)) == 27);
}

TEST_CASE("without enough pairs") {
  TwoColumns sheet;
  const Argument text(Cell(u"12"));
  for (const Piece other : {Piece(sheet.blank), Piece(text), Piece(nullptr)}) {
    CHECK(Number(*ZavrelPairCount(sheet.x, other)) == 0);
    CHECK(Error(*ZavrelPairMean(sheet.x, other)) == xlerrValue);
    CHECK(Error(*ZavrelPairStdDev(other, sheet.x)) == xlerrValue);
    CHECK(Error(*ZavrelPairMedian(sheet.x, other, nullptr)) == xlerrValue);
    CHECK(Error(*ZavrelPairMeanQuotient(sheet.x, other)) == xlerrValue);
    CHECK(Error(*ZavrelPairMeanAbsQuotient(other, sheet.x)) == xlerrValue);
    CHECK(Number(*ZavrelPairCountRange(sheet.x, other, nullptr, nullptr, nullptr, nullptr)) == 0);
  }
  const Argument one(Cell(5.0));
  CHECK(Number(*ZavrelPairCount(one, sheet.y)) == 1);
  CHECK(Number(*ZavrelPairMean(one, sheet.y)) == 4);
  CHECK(Error(*ZavrelPairStdDev(one, sheet.y)) == xlerrDiv0);
  CHECK(Number(*ZavrelPairMedian(one, sheet.y, nullptr)) == 4);
  const Reference nowhere(Area(2, 1, 0, 0));
  CHECK(Error(*ZavrelPairCount(sheet.x, nowhere)) == xlerrRef);
  for (const double method : {-2.0, 6.0, 1e10})
    CHECK(Error(*ZavrelPairMedian(sheet.x, sheet.y, Argument(Cell(method)))) == xlerrValue);
}

TEST_CASE("quotients that there are not, and numbers beyond the largest") {
  OpenAddIn add_in;
  const Argument numerators(4, 1, {-6.0, 1.0, 1e300, Cell()});
  CHECK(Number(*ZavrelPairMeanQuotient(numerators, Argument(2, 1, {3.0, 4.0}))) == -0.875);
  CHECK(Number(*ZavrelPairMeanAbsQuotient(numerators, Argument(2, 1, {3.0, 4.0}))) == 1.125);
  const Argument zero(3, 1, {3.0, 0.0, 1e-300});
  const Argument tiny(4, 1, {3.0, 1.0, 1e-300, 0.0});
  CHECK(Error(*ZavrelPairMeanQuotient(numerators, zero)) == xlerrDiv0);
  CHECK(Error(*ZavrelPairMeanAbsQuotient(numerators, zero)) == xlerrDiv0);
  CHECK(Error(*ZavrelPairMeanQuotient(numerators, tiny)) == xlerrNum);
  CHECK(Error(*ZavrelPairMeanAbsQuotient(numerators, tiny)) == xlerrNum);

  // The quotients' sum alone overflows: their mean does not. A difference that does has no mean.
  const Argument large(2, 1, {1.5e308, 1.5e308});
  CHECK(Number(*ZavrelPairMeanQuotient(large, Argument(2, 1, {1.0, 1.0}))) == 1.5e308);
  const Argument negative(2, 1, {-1.5e308, 1.0});
  CHECK(Error(*ZavrelPairMean(large, negative)) == xlerrNum);
  CHECK(Error(*ZavrelPairMedian(large, negative, Argument(Cell(0.0)))) == xlerrNum);
  CHECK(Number(*ZavrelPairMedian(large, negative, Argument(Cell(3.0)))) == 1.5e308);
  CHECK(Number(*ZavrelPairCountRange(large, negative, nullptr, nullptr, nullptr, nullptr)) == 1);

  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const Argument hostile(4, 1, {nan, infinity, -infinity, 1.0});
  const Argument more(4, 1, {1.0, infinity, 0.0, nan});
  for (const auto function : {ZavrelPairMean, ZavrelPairStdDev, ZavrelPairMeanQuotient,
                              ZavrelPairMeanAbsQuotient, ZavrelPairCount})
    CHECK((function(hostile, more)->xltype & (xltypeErr | xltypeNum)) != 0);
}

TEST_CASE("bounds may be left out, and may count themselves or not") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, 5.0, u"5", 5.0, Cell(), -1.79e308, 1.01e300, true, 9.0});
  const Reference data(Area(0, 8, 0, 0));
  const Reference empty(Area(20, 20, 0, 0));
  const auto count = [&](Piece low, Piece high, Piece low_too = nullptr, Piece high_too = nullptr) {
    return Number(*ZavrelCountRange(data, low, high, low_too, high_too));
  };
  const Argument five(Cell(5.0));
  const Argument nine(Cell(9.0));
  const Argument no(Cell(false));
  const Argument yes(Cell(-0.5));
  const Argument zero(Cell(0.0));
  CHECK(count(nullptr, nullptr) == 6);
  CHECK(count(empty, empty, empty, empty) == 6);  // an empty cell is a bound left out
  CHECK(count(five, nullptr) == 4);
  CHECK(count(five, nullptr, no) == 2);
  CHECK(count(nullptr, five) == 4);
  CHECK(count(nullptr, five, no, zero) == 2);
  CHECK(count(five, five) == 2);
  CHECK(count(five, five, no, no) == 0);
  CHECK(count(five, five, yes, no) == 0);
  CHECK(count(five, nine, no, yes) == 1);
  CHECK(count(nine, five) == 0);
  CHECK(Number(*ZavrelCountRange(nullptr, nullptr, nullptr, nullptr, nullptr)) == 0);
  const Argument word(Cell(u"x"));
  const Argument error(Cell(ErrorCell{xlerrDiv0}));
  CHECK(Error(*ZavrelCountRange(data, word, nullptr, nullptr, nullptr)) == xlerrValue);
  CHECK(Error(*ZavrelCountRange(data, nullptr, nullptr, nullptr, error)) == xlerrValue);
}

TEST_CASE("differences inside bounds") {
  TwoColumns sheet;
  const Argument nine(Cell(9.0));
  const Argument no(Cell(false));
  const auto of_pairs = [&](Piece low, Piece high, Piece low_too, Piece high_too) {
    return Number(*ZavrelPairCountRange(sheet.x, sheet.y, low, high, low_too, high_too));
  };
  const Argument fifty_three(Cell(53.0));
  CHECK(of_pairs(nine, fifty_three, nullptr, nullptr) == 3);
  CHECK(of_pairs(nine, fifty_three, no, nullptr) == 2);
  CHECK(of_pairs(nine, fifty_three, no, no) == 1);
}

TEST_CASE("whole columns and rows in pairs") {
  TwoColumns sheet;
  const Reference x(WholeColumns(0, 0));
  const Reference y(WholeColumns(1, 1));
  const Reference both(WholeColumns(0, 1));
  for (const bool clips : {false, true}) {
    sheet.excel.clips_to_used_part = clips;
    CHECK(Number(*ZavrelPairCount(x, y)) == 3);
    CHECK(Number(*ZavrelPairCount(y, sheet.x)) == 3);
    CHECK(Number(*ZavrelPairCount(x, Reference(WholeColumns(6, 6)))) == 0);
    CHECK(Error(*ZavrelPairMean(x, Reference(WholeColumns(6, 6)))) == xlerrValue);
    // Cell by cell, as parts of the columns would go: 10 1 - 2 30 3 40 4 ... with 1 2 3 4 5 7.
    CHECK(Number(*ZavrelPairCount(both, y)) == 4);
    CHECK(Number(*ZavrelPairCount(Reference(Area(0, 7, 0, 1)), y)) == 4);
    CHECK(Number(*ZavrelPairMean(Reference(WholeRows(0, 0)), Reference(Area(0, 0, 0, 1)))) == 0);
    CHECK(Error(*ZavrelPairMean(Reference(WholeRows(0, 1)), sheet.y)) == xlerrValue);
    CHECK(Error(*ZavrelPairCount(Reference(11, {WholeColumns(0, 0), WholeColumns(1, 1)}), y)) ==
          xlerrValue);
  }
}

TEST_CASE("pairs while cells are not calculated, and after edits") {
  TwoColumns sheet;
  CHECK(Number(*ZavrelPairMedian(sheet.x, sheet.y, nullptr)) == 22.5);
  sheet.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(Error(*ZavrelPairMedian(sheet.x, sheet.y, nullptr)) == xlerrRef);
  CHECK(Error(*ZavrelPairCountRange(sheet.x, sheet.y, nullptr, nullptr, nullptr, nullptr)) ==
        xlerrRef);
  sheet.excel.answer = nullptr;
  sheet.excel.Set(1, 0, 102.0);
  sheet.excel.Set(0, 1, Cell());
  CHECK(Number(*ZavrelPairCount(sheet.x, sheet.y)) == 3);
  CHECK(Number(*ZavrelPairMean(sheet.x, sheet.y)) == 63);
  CHECK(Number(*ZavrelPairMedian(sheet.x, sheet.y, Argument(Cell(0.0)))) == 53);
  CHECK(sheet.excel.values_out == 0);
}

}  // namespace zavrel::tests
