// Test statistics of series and the studentized range, as a workbook's user meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {

TEST_CASE("test statistics of a series in a sheet") {
  zavhost::Workbook book = BookOf({"A: 1 | 2 | 3 | \"4\" | 2 | | 1", "B: 5 | 5 | 5", "C: 0 | 0 | 0",
                                   "D: 0.1 | 0.1 | 0.1 | 0.1 | 0.1 | 0.1 | 0.1 | 0.1 | 0.1 | 0.1",
                                   "F: 2 | \"3\" | 4 | | 4 | TRUE | 5 | #DIV/0! | 9"});
  for (int i = 0; i < 300; ++i) book.sheets[0].Set(i, 6, i % 2 == 0 ? 1.0 : -1.0);
  InEachHost(book, [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavRunsTest(A1:A7,2) -> 3 | ZavRunsTest(A:A,ZavMean(A:A)) -> 3
        ZavRunsTest(A1:A7,"2") -> 3 | ZavRunsTest(A1,9) -> 1 | ZavRunsTest(F1:F9,4) -> 2
        ZavRunsTest(7,7) -> 1 | ZavDurbinWatson(A1:A7) ~ 4/19 | ZavDurbinWatson(F1:F9) ~ 21/142
        ZavDurbinWatson(B1:B3) -> 0 | ZavAutocorrelation(A1:A7,1) ~ 0.16/2.8
        ZavAutocorrelation(F1:F9,1) ~ 3.56/26.8 | ZavAutocorrelation(A1:A7,0) -> 1
        ZavAutocorrelation({1,2,3,4,5},1) -> 0.4 | ZavAutocorrelation({1,2,3,4,5},2) -> -0.1
        ZavAutocorrelation({1,2,3,4,5},3) -> -0.4 | ZavAutocorrelation({1,2,3,4,5},4) -> -0.4
        ZavAutocorrelation({-1.7E+308,1.7E+308,-1.7E+308,1.7E+308},1) -> -0.75
        ZavDurbinWatson({1,-1,1,-1}) -> 3 | ZavDurbinWatson({1E-200,-1E-200}) -> 2
        ZavRunsTest({1,2,1,2},1.5) -> 4 | ZavAutocorrelation(A1:A7,5) -> 0 | ZavAutocorrelation({1E+200,-1E+200},1) -> -0.5
        ZavAutocorrelation(G:G,250) ~ 50/300 | ZavLilliefors(F1:F9) ~ 0.2692056743389093
        ZavLilliefors({1,2}) ~ 0.26024993890652326)");
    CheckFormulas(engine, "#DIV/0!", R"(
        ZavLilliefors(B1:B3) | ZavLilliefors(3) | ZavLilliefors(D1:D10)
        ZavAutocorrelation(B1:B3,1) | ZavAutocorrelation(D1:D10,1) | ZavAutocorrelation(7,0)
        ZavDurbinWatson(C1:C3))");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavLilliefors(E:E) | ZavLilliefors() | ZavRunsTest(E1:E5,1) | ZavRunsTest(A1:A7,"x")
        ZavDurbinWatson(A1) | ZavDurbinWatson("x") | ZavAutocorrelation(A1:A7,6)
        ZavAutocorrelation(A1:A7,-1) | ZavAutocorrelation(G:G,251) | ZavAutocorrelation(E1:E5,0)
        ZavAutocorrelation(7,2))");
    CheckFormulas(engine, "#NUM!",
                  "ZavDurbinWatson({1E+200,2}) | ZavDurbinWatson({1.7E+308,-1.7E+308})");
    Edit(engine, "F1 = 6");
    CheckFormulas(engine, "ZavRunsTest(F1:F9,5) -> 3");
  });
}

TEST_CASE("the studentized range in a sheet") {
  InEachHost({}, [](zavhost::Engine& engine) {
    CHECK(Number(engine, "ZavStudentizedRangeInv(0.95,10,3)") ==
          doctest::Approx(3.88).epsilon(2e-3));
    CheckFormulas(engine, R"(
        ZavStudentizedRangeDist(ZavStudentizedRangeInv(0.95,10,3),10,3) ~ 0.95
        ZavStudentizedRangeDist(3.5,10.9,3.9) ~ ZavStudentizedRangeDist(3.5,10,3)
        ROUND(ZavStudentizedRangeDist(ZavStudentizedRangeInv(0.99,120,7),120,7),12) -> 0.99
        ROUND(ZavStudentizedRangeDist(3.877676,10,3),3) -> 0.95)");
    CheckFormulas(engine, "0", R"(
        ZavStudentizedRangeDist(0,10,3) | ZavStudentizedRangeDist(-1,10,3)
        ZavStudentizedRangeInv(0,10,3) | ZavStudentizedRangeInv(0,0,0)
        ZavStudentizedRangeInv(A1,5,3))");
    CheckFormulas(engine, "#NUM!", R"(
        ZavStudentizedRangeDist(3,10,1) | ZavStudentizedRangeDist(-3,0.99,3)
        ZavStudentizedRangeDist(3,-1,3) | ZavStudentizedRangeInv(1,10,3)
        ZavStudentizedRangeInv(-0.01,10,3) | ZavStudentizedRangeInv(0.5,0,3)
        ZavStudentizedRangeInv(0.5,10,1))");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavStudentizedRangeDist(3,10,) | ZavStudentizedRangeDist("x",10,3)
        ZavStudentizedRangeDist(3.5,1E+10,3) | ZavStudentizedRangeInv(0.5,3,))");
  });
}

}  // namespace zavrel::tests
