// Test statistics of series, and the studentized range: what a cell shows.
#include <doctest/doctest.h>

#include "functions/open_add_in.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT XLOPER12* ZavrelLilliefors(const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelRunsTest(const XLOPER12*, double);
ZAV_EXPORT XLOPER12* ZavrelDurbinWatson(const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelAutocorrelation(const XLOPER12*, std::int32_t);
ZAV_EXPORT XLOPER12* ZavrelStudentizedRangeDist(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelStudentizedRangeInv(const XLOPER12*, const XLOPER12*, const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

const XLOPER12& Dist(const Cell& q, const Cell& df, const Cell& means) {
  return *ZavrelStudentizedRangeDist(Argument(q), Argument(df), Argument(means));
}
const XLOPER12& Inv(const Cell& p, const Cell& df, const Cell& means) {
  return *ZavrelStudentizedRangeInv(Argument(p), Argument(df), Argument(means));
}

}  // namespace

TEST_CASE("test statistics of the numbers in a range") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {2.0, u"3", 4.0, Cell(), 4.0, true, 5.0, ErrorCell{xlerrDiv0}, 9.0});
  const Reference range(Area(0, 8, 0, 0));
  for (int round = 0; round < 2; ++round) {
    CHECK(Number(*ZavrelLilliefors(range)) == doctest::Approx(0.2692056743389093).epsilon(1e-14));
    CHECK(Number(*ZavrelRunsTest(range, 4)) == 2);
    CHECK(Number(*ZavrelDurbinWatson(range)) == doctest::Approx(21.0 / 142).epsilon(1e-15));
    CHECK(Number(*ZavrelAutocorrelation(range, 1)) == doctest::Approx(3.56 / 26.8).epsilon(1e-14));
  }
  CHECK(Number(*ZavrelAutocorrelation(range, 0)) == 1);
  CHECK(Number(*ZavrelAutocorrelation(range, 5)) == 0);
  CHECK(Error(*ZavrelAutocorrelation(range, 6)) == xlerrValue);
  add_in.excel.Set(0, 0, 6.0);
  CHECK(Number(*ZavrelRunsTest(range, 5)) == 3);
}

TEST_CASE("test statistics that there are not") {
  OpenAddIn add_in;
  const Argument none(Cell(u"x"));
  for (const XLOPER12* empty :
       {static_cast<const XLOPER12*>(none), static_cast<const XLOPER12*>(nullptr)}) {
    CHECK(Error(*ZavrelLilliefors(empty)) == xlerrValue);
    CHECK(Error(*ZavrelRunsTest(empty, 0)) == xlerrValue);
    CHECK(Error(*ZavrelDurbinWatson(empty)) == xlerrValue);
    CHECK(Error(*ZavrelAutocorrelation(empty, 0)) == xlerrValue);
  }
  const Argument one(Cell(7.0));
  CHECK(Error(*ZavrelLilliefors(one)) == xlerrDiv0);
  CHECK(Number(*ZavrelRunsTest(one, 7)) == 1);
  CHECK(Error(*ZavrelDurbinWatson(one)) == xlerrValue);
  CHECK(Error(*ZavrelAutocorrelation(one, 0)) == xlerrDiv0);
  CHECK(Error(*ZavrelAutocorrelation(one, 2)) == xlerrValue);
  // The mean of ten times 0.1 is rounded; that makes no spread.
  const Argument equal(10, 1, std::vector<Cell>(10, Cell(0.1)));
  CHECK(Error(*ZavrelLilliefors(equal)) == xlerrDiv0);
  CHECK(Error(*ZavrelAutocorrelation(equal, 1)) == xlerrDiv0);
  CHECK(Number(*ZavrelDurbinWatson(equal)) == 0);
  CHECK(Error(*ZavrelDurbinWatson(Argument(2, 1, {0.0, 0.0}))) == xlerrDiv0);
  const Argument wide(2, 1, {1e200, -1e200});
  CHECK(Error(*ZavrelDurbinWatson(wide)) == xlerrNum);
  CHECK(Number(*ZavrelAutocorrelation(wide, 1)) == -0.5);

  add_in.excel.SetColumn(0, 0, {1.0, 2.0, 4.0});
  const Reference range(Area(0, 2, 0, 0));
  add_in.excel.answer = [](const XLREF12&) { return xlretInvXlfn; };
  CHECK(Error(*ZavrelDurbinWatson(range)) == xlerrRef);
  const int lookups = add_in.excel.lookups;
  for (const std::int32_t lag : {-1, 251, -2147483647})
    CHECK(Error(*ZavrelAutocorrelation(range, lag)) == xlerrValue);
  CHECK(add_in.excel.lookups == lookups);  // refused before anything is read
}

TEST_CASE("autocorrelations to the last lag there is") {
  OpenAddIn add_in;
  std::vector<Cell> wave;
  for (int i = 0; i < 300; ++i) wave.emplace_back(i % 2 == 0 ? 1.0 : -1.0);
  const Argument series(300, 1, wave);
  CHECK(Number(*ZavrelAutocorrelation(series, 250)) == doctest::Approx(50.0 / 300));
  CHECK(Error(*ZavrelAutocorrelation(series, 251)) == xlerrValue);
}

TEST_CASE("the studentized range in a cell") {
  OpenAddIn add_in;
  CHECK(Number(Dist(3.877676, 10.0, 3.0)) == doctest::Approx(0.95).epsilon(1e-3));
  CHECK(Number(Dist(0.0, 10.0, 3.0)) == 0);
  CHECK(Number(Dist(-2.0, 10.0, 3.0)) == 0);
  CHECK(Number(Dist(3.5, 10.9, 3.9)) == Number(Dist(3.5, 10.0, 3.0)));  // whole numbers, cut
  const double q = Number(Inv(0.95, 10.0, 3.0));
  CHECK(Number(Dist(q, 10.0, 3.0)) == doctest::Approx(0.95).epsilon(1e-13));
  CHECK(Number(Inv(0.0, 10.0, 3.0)) == 0);
  CHECK(Number(Inv(0.0, 0.0, 0.0)) == 0);
  CHECK(Number(Inv(Cell(), 5.0, 3.0)) == 0);  // an empty cell is 0

  for (const auto& [df, means] : {std::pair{0.0, 3.0}, {0.99, 3.0}, {10.0, 1.0}, {-1.0, 3.0}}) {
    CHECK(Error(Dist(3.5, df, means)) == xlerrNum);
    CHECK(Error(Dist(-3.5, df, means)) == xlerrNum);
    CHECK(Error(Inv(0.5, df, means)) == xlerrNum);
  }
  for (const double p : {-0.01, 1.0, 2.0}) CHECK(Error(Inv(p, 10.0, 3.0)) == xlerrNum);
  CHECK(Error(Dist(u"x", 10.0, 3.0)) == xlerrValue);
  CHECK(Error(Dist(3.5, 1e10, 3.0)) == xlerrValue);  // no 32-bit number
  CHECK(Error(*ZavrelStudentizedRangeInv(Argument(Cell(0.5)), Argument(Cell(3.0)), nullptr)) ==
        xlerrValue);
}

}  // namespace zavrel::tests
