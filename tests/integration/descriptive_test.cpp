// Summary statistics: the path from a range argument to a number, through the host and the real
// add-in.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

zavhost::Workbook SmallBook() {
  return BookOf({"A: 1 | \"12\" | | TRUE | #N/A", "B: 2 | 4 | 4 | 4 | 5 | 5 | 7 | 9", "C: 1 | | 3",
                 "E: 2.5 | -1.25 | 7 | 3.75 | 0.5 | 11 | -4 | 6.25", "Other sheet!A: 100"});
}

}  // namespace

TEST_CASE("each function gives its own statistic") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavMin(E1:E8) -> -4 | ZavMax(E1:E8) -> 11 | ZavMean(E1:E8) -> 3.21875
        ZavSum(E1:E8) -> 25.75 | ZavRange(E1:E8) -> 15 | ZavCount(E1:E8) -> 8
        ZavAveDev(E1:E8) -> 3.78125 | ZavSumSq(E1:E8) -> 247.1875
        ZavSumDevSq(E1:E8) -> 164.3046875 | ZavMeanAbs(E1:E8) -> 4.53125
        ZavProduct(E1:E8) -> 11279.296875 | ZavVarianceP(E1:E8) -> 20.5380859375
        ZavVariance(E1:E8) ~ 23.472098214285715 | ZavStdDev(E1:E8) ~ 4.844801153224528
        ZavStdDevP(E1:E8) ~ 4.531896505603366 | ZavSkewness(E1:E8) ~ 0.11277000449461373
        ZavSkewnessP(E1:E8) ~ 0.09041715435510045 | ZavKurtosis(E1:E8) ~ 2.5334625019614103
        ZavKurtosisP(E1:E8) ~ 2.1111726199816236)");
    // The functions that refuse incomplete data.
    for (const char* name : {"Min", "Max", "Mean", "Sum", "Product", "Range"}) {
      const std::string of = std::string("Zav") + name;
      CheckFormulas(engine, of + "I(E1:E8) ~ " + of + "(E1:E8)|" + of + "I(C1:C3) ->|" + of +
                                "I(D1:D3) ->|" + of + "I(D:D) ->|" + of + "I(,) ->");
    }
    CheckFormulas(engine, R"(
        ZavMean(C1:C3) -> 2 | ZavMax(C1:C3) -> 3 | ZavSumI(B:B) -> 40 | ZavMean(A1:A5) -> 1
        ZavSumI({1.5E+308,1.5E+308}) ->
        ZavSum({1E+16,1,-1E+16,1}) -> 1 | ZavSum({1,1E+16,1,-1E+16,1,1,1,1}) -> 4)");
  });
}

TEST_CASE("numbers whose sums, squares or products leave the range of a double") {
  InEachHost({}, [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavSum(1.5E+308,1.5E+308,-1.5E+308) ~ 1.5E+308 | ZavMeanAbs(1.5E+308,-1.7E+308) ~ 1.6E+308
        ZavAveDev({1.5E+308,-1.5E+308,1.5E+308,-1.5E+308}) ~ 1.5E+308
        ZavSumDevSq(1.5E+308,1.5E+308) -> 0 | ZavProduct(1E+200,1E+200,0) -> 0
        ZavProduct(0,1E+200,-1E+200) -> 0 | ZavProduct(1E+200,1E+200,1E-250) ~ 1E+150
        ZavProduct(-1E+200,1E+200,1E-250) ~ -1E+150 | ZavProduct(1E-200,1E-200) -> 0
        ZavProduct(-1E+200,-1E+200,-2E-250,-1) ~ 2E+150
        ZavProduct(1E-200,1E-200,-1E+250) ~ -1E-150 | ZavProduct(1E-200,1E-115,1E+200) ~ 1E-115)");
    CheckFormulas(engine, "#NUM!", R"(
        ZavSum(1.5E+308,1.5E+308) | ZavSumDevSq(1E+200,-1E+200) | ZavSumSq(1E+200)
        ZavRange(1.5E+308,-1.5E+308) | ZavProduct(1E+200,1E+200) | ZavProduct(-1E+200,1E+200))");
  });
}

TEST_CASE("nothing to compute from") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavSum(D1:D3) -> 0 | ZavSum(D:D) -> 0 | ZavRange(D1:D3) -> 0 | ZavCount(,) -> 0
        ZavMean(D1:D3) -> #N/A | ZavProduct(D1:D3) -> #VALUE! | ZavMeanAbs(D1:D3) -> #VALUE!
        ZavVariance(7) -> #DIV/0! | ZavVarianceP(7) -> 0 | ZavKurtosisP(7) -> #DIV/0!
        ZavSumSq(D1:D3) -> 0 | ZavSumDevSq(D1:D3) -> 0 | ZavAveDev(D1:D3) -> #VALUE!)");
  });
}

TEST_CASE("cells by their class") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavCountCellsByType(A1:A5,0) -> 5 | ZavCountCellsByType(A1:A5,1) -> 1
        ZavCountCellsByType(A1:A5,2) -> 4 | ZavCountCellsByType(A1:A5,3) -> 3
        ZavCountCellsByType(A1:A5,4) -> 1 | ZavCountCellsByType(A:A,0) -> 5
        ZavCountCellsByType(A:A,2) -> 4 | ZavCountCellsByType(A:A,4) -> 1
        ZavCountCellsByType(Y:Z,0) -> 0 | ZavCountCellsByType(Y:Z,1) -> 0
        ZavCountCellsByType(Y:Z,4) -> 0)");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavCountCellsByType(A1:A5,5) | ZavCountCellsByType(A1:A5,-1)
        ZavCountCellsByType(A1:A5,1E+9) | ZavCountCellsByType(A1:A5,))");
  });
}

TEST_CASE("arguments of every shape form one data set") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavSum(B1:B3,'Other sheet'!A1,{1,2;3,4},5) -> 125 | ZavSum((B1:B2,B7:B8)) -> 22
        ZavSum(B:B) -> 40 | ZavSum(1:1) -> 6.5 | ZavCount(B1:B8,,3) -> 9
        ZavSum(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30) -> 465
        ZavMax(ZavMin(B1:B8),ZavMean(B1:B8)) -> 5)");
  });
}

}  // namespace zavrel::tests
