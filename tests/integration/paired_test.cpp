// Paired statistics and counts inside bounds as a workbook's user meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

// A and B are complete in rows 1, 4 and 7: their differences are 9, 36 and 60.
zavhost::Workbook SmallBook() {
  return BookOf({"A: 10 | | 30 | 40 | \"50\" | #N/A | 70 | 80", "B: 1 | 2 | | 4 | 5 | 6 | 10",
                 "F: 0.7 | -1.6 | 3.4 | 2 | 1.9 | 0.8 | 5.5 | 0.1",
                 "G: before | before | before | before | after | after | after | after",
                 "I: 1 | 5 | \"5\" | 5 | | -1.79E+308 | 1.01E+300 | TRUE | 9"});
}

}  // namespace

TEST_CASE("pairs of ranges with gaps, texts, errors and different lengths") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    for (const char* ranges : {"A1:A8,B1:B7", "A1:A7,B1:B8", "A:A,B:B", "A1:A8,B:B",
                               "Data!A1:A8,B1:B100", "(A1:A3,A4:A8),B1:B7"}) {
      const std::string of = "(" + std::string(ranges) + ")";
      CheckFormulas(engine, "ZavPairCount" + of + " -> 3 | ZavPairMean" + of +
                                " -> 35 | ZavPairStdDev" + of + " ~ SQRT(651) | ZavPairMedian" +
                                of + " -> 22.5 | ZavPairMeanQuotient" + of +
                                " -> 9 | ZavPairCountRange" + of + " -> 3");
    }
    CheckFormulas(engine, R"(
        ZavPairMean(B1:B7,A1:A8) -> -35 | ZavPairMean(A1:A3,B1:B3) -> 9
        ZavPairMedian(A1:A8,B1:B7,-1) -> 22.5 | ZavPairMedian(A1:A8,B1:B7,0) -> 36
        ZavPairMedian(A1:A8,B1:B7,1) -> 22.5 | ZavPairMedian(A1:A8,B1:B7,5) -> 36
        ZavPairMean(A1:A8-1,B1:B7) -> 28.6 | ZavPairCount(5,B1:B7) -> 1 | ZavPairMean(5,B1:B7) -> 4
        ZavPairMedian(5,B1:B7) -> 4 | ZavPairStdDev(5,B1:B7) -> #DIV/0!)");
    CheckFormulas(engine, "0", R"(
        ZavPairCount(A2:A3,B2:B3) | ZavPairCount(A1:A8,H1:H8) | ZavPairCount(A1:A8,"12")
        ZavPairCount(A1:A8,) | ZavPairCount(A:A,H:H) | ZavPairCountRange(A1:A8,H1:H8))");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavPairMean(A2:A3,B2:B3) | ZavPairStdDev(H1:H8,A1:A8) | ZavPairMedian(A1:A8,"12")
        ZavPairMeanQuotient(A1:A8,) | ZavPairMeanAbsQuotient(A:A,H:H) | ZavPairMean(1:2,B1:B8)
        ZavPairMedian(A1:A8,B1:B8,6) | ZavPairMedian(A1:A8,B1:B8,-2)
        ZavPairMedian(A1:A8,B1:B8,1E+10) | ZavPairCount((A:A,B:B),B:B))");
    // Of whole columns cell by cell, as parts of them would go: 10, 1, none, 2, 30, none, 40 ...
    CheckFormulas(engine, R"(
        ZavPairCount(A:B,B:B) -> 5 | ZavPairCount(A1:B8,B:B) -> 5 | ZavPairMean(1:1,A1:B1) -> 0)");
  });
}

TEST_CASE("quotients that there are not, and numbers beyond the largest") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavPairMeanQuotient({-6,1},{3,4}) -> -0.875 | ZavPairMeanAbsQuotient({-6;1},{3;4}) -> 1.125
        ZavPairMeanQuotient({1.5E+308,1.5E+308},{1,1}) -> 1.5E+308
        ZavPairMedian({1.5E+308,1.5E+308},{-1.5E+308,1},3) -> 1.5E+308
        ZavPairCountRange({1.5E+308,1.5E+308},{-1.5E+308,1}) -> 1
        ZavPairMeanAbsQuotient({-4,1,-3},{2,-2,-1}) ~ 5.5/3 | ZavPairMeanQuotient({"",6},{0,3}) -> 2
        ZavPairMeanQuotient(1E-300,1E+300) -> 0
        ZavPairCount(1.00999999999999E+300,-1.01E+300) -> 1)");
    CheckFormulas(engine, "#DIV/0!", R"(
        ZavPairMeanQuotient({-6,1,1E+300},{3,0,1E-300}) | ZavPairMeanAbsQuotient({6,9},{3,0})
        ZavPairMeanQuotient({1,5,1E+300},{1,0,1E-300}) | ZavPairMeanQuotient(0,0)
        ZavPairStdDev(A1:A3,B1:B3))");
    CheckFormulas(engine, "#NUM!", R"(
        ZavPairMeanQuotient({-6,1,1E+300},{3,1,1E-300,0}) | ZavPairMeanAbsQuotient({1E+300,9},{1E-300,0})
        ZavPairMean({1.5E+308,1.5E+308},{-1.5E+308,1}) | ZavPairMeanQuotient({1E+300,5},{-1E-300,0})
        ZavPairMedian({1.5E+308,1.5E+308},{-1.5E+308,1},0))");
  });
}

TEST_CASE("pairs of two stacked groups") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavPairMean(ZavDestack(F1:F8,G1:G8,"After"),ZavDestack(F1:F8,G1:G8,"before")) ~ 0.95
        ZavPairMedian(ZavDestack(F:F,G:G,"after"),ZavDestack(F:F,G:G,"before"),0) ~ 1.65
        ZavPairCount(ZavDestack(F1:F8,G1:G8,"after"),A1:A8) -> 3)");
    Edit(engine, "F5 = 8.7 | F8 =");
    CheckFormulas(engine, R"(
        ZavPairCount(ZavDestack(F1:F8,G1:G8,"After"),ZavDestack(F1:F8,G1:G8,"before")) -> 3
        ZavPairMean(ZavDestack(F1:F8,G1:G8,"After"),ZavDestack(F1:F8,G1:G8,"before")) ~ 12.5/3)");
  });
}

TEST_CASE("bounds may be left out, and may count themselves or not") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavCountRange(A1:A8) -> 5 | ZavCountRange(A:B,,) -> 11 | ZavCountRange(A1:A8,30,70) -> 3
        ZavCountRange(A1:A8,30,70,FALSE) -> 2 | ZavCountRange(A1:A8,30,70,,FALSE) -> 2
        ZavCountRange(A1:A8,30,70,0,"FALSE") -> 1 | ZavCountRange(A1:A8,H1,"35") -> 2
        ZavCountRange(I1:I9) -> 6 | ZavCountRange(I1:I9,H1,H2,H3,H4) -> 6
        ZavCountRange(I1:I9,5) -> 4 | ZavCountRange(I1:I9,5,,FALSE) -> 2
        ZavCountRange(I1:I9,,5) -> 4 | ZavCountRange(I1:I9,,5,FALSE,0) -> 2
        ZavCountRange(I1:I9,5,5) -> 2 | ZavCountRange(I1:I9,5,5,FALSE,FALSE) -> 0
        ZavCountRange(I1:I9,5,5,-0.5,FALSE) -> 0 | ZavCountRange(I1:I9,5,9,FALSE,-0.5) -> 1
        ZavCountRange(I1:I9,9,5) -> 0 | ZavCountRange(,) -> 0
        ZavPairCountRange(A1:A8,B1:B8,9,60,,FALSE) -> 2 | ZavPairCountRange(A1:A8,B1:B8,,36) -> 2
        ZavPairCountRange(A1:A8,B1:B8,9,60,0,0) -> 1 | ZavPairCountRange(A1:A8,B1:B8,60) -> 1
        ZavPairCountRange(A1:A8,B1:B8,9,60,FALSE) -> 2)");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavCountRange(A1:A8,A6) | ZavCountRange(I1:I9,"x") | ZavCountRange(I1:I9,,,,#DIV/0!))");
  });
}

TEST_CASE("pairs follow every edit") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    for (int round = 0; round < 2; ++round)
      CheckFormulas(engine, "ZavPairMean(A1:A8,B1:B8) -> 35 | ZavCountRange(A:A,30) -> 4");
    Edit(engine, "A2 = 7");  // completes the second pair: 5
    CheckFormulas(engine,
                  "ZavPairMean(A1:A8,B1:B8) -> 27.5 | ZavPairMedian(A1:A8,B1:B8,0) -> 22.5");
    Edit(engine, "A10 = 31 | B10 = 1");
    CheckFormulas(engine, "ZavCountRange(A:A,30) -> 5 | ZavPairCount(A:A,B:B) -> 5");
    Edit(engine, "A7 = 46 | A2 =");  // 9, 36, 36: a tie makes them discrete
    CheckFormulas(engine, "ZavPairMedian(A1:A8,B1:B8) -> 36 | ZavPairMean(A1:A8,B1:B8) -> 27");
  });
}

}  // namespace zavrel::tests
