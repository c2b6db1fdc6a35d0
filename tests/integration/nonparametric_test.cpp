// Nonparametric tests and random numbers as a workbook's user meets them.
#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <set>
#include <string>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

// F stacks A and B by the labels in G.
zavhost::Workbook SmallBook() {
  return BookOf({"A: 1.5 | 4 | \"3\" | 4 | 9", "B: 2 | 4 | | 1 | 7", "C: 8 | 9.5 | 12",
                 "D: 5 | 5 | 5", "F: 1.5 | 2 | 4 | 4 | 4 | 1 | 9 | 7",
                 "G: a | b | a | b | a | b | a | b"});
}

}  // namespace

TEST_CASE("Mann-Whitney in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    // Together 1, 1.5, 2, 4, 4, 4, 7, 9.
    for (const std::string samples :
         {"(A1:A5,B1:B5)", "(A:A,Data!B1:B9)", "({1.5;4;4;9},{2,4,1,7})",
          "(ZavDestack(F1:F8,G1:G8,\"a\"),ZavDestack(F:F,G:G,\"B\"))"}) {
      for (int round = 0; round < 2; ++round)
        CheckFormulas(engine, "ZavMWTies" + samples + " -> 1 | ZavMWTieCorrectionTerm" + samples +
                                  " -> 24 | ZavMWRankSum1" + samples + " -> 20 | ZavMWRankSum2" +
                                  samples + " -> 16");
    }
    CheckFormulas(engine, R"(
        ZavMWpValue(4,4,ZavMWRankSum1(A1:A5,B1:B5),0) ~ 48/70 | ZavMWpValue(4,4,11,-1) ~ 2/70
        ZavMWpValue("4",4.9,25,1) ~ 2/70 | ZavMWUsingNormalApproximation(50,50) -> FALSE
        ZavMWUsingNormalApproximation(50,51) -> TRUE)");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavMWUsingNormalApproximation(0,5) | ZavMWUsingNormalApproximation(5,"x")
        ZavMWpValue(0,4,10,0) | ZavMWpValue(4,-1,10,0) | ZavMWpValue(4,4,9,0) | ZavMWpValue(4,4,27,0)
        ZavMWpValue(4,4,15,2) | ZavMWpValue(4,4,15,) | ZavMWpValue(1E10,4,15,0)
        ZavMWTies(A1:A5,E1:E5) | ZavMWRankSum1(A3,B1:B5))");
  });
}

TEST_CASE("signed ranks in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    // A less 4: -2.5, 5; the zeros are dropped. Less 3: -1.5, 1, 1, 6. A less B, complete pairs:
    // -0.5, 0, 3, 2; less 1: -1.5, -1, 2, 1.
    CheckFormulas(engine, R"(
        ZavWSRNegative(A1:A5,4) -> 1 | ZavWSRPositive(A1:A5,4) -> 2 | ZavWSRTies(A1:A5,4) -> 0
        ZavWSRTies(A1:A5,3) -> 1 | ZavWSRTieCorrectionTerm(A1:A5,3) -> 6 | ZavWSRPositive(4,4) -> 0
        ZavWSRNegative(A1:A5,3) -> 3 | ZavWSRPositive(A1:A5,"3") -> 7
        ZavWSRExactPValMaxSample() -> 1000 | ZavWSRpValue(3,5,1) -> 0.25
        ZavWSRpValue(3,5.5,0) -> 0.25 | ZavWSRpValue(3,5,-1) -> 0.875)");
    for (const std::string samples : {"(A1:A5,B1:B5,", "(A:A,B1:B7,"})
      CheckFormulas(engine, "ZavWSRPairNegative" + samples + "0) -> 1 | ZavWSRPairPositive" +
                                samples + "0) -> 5 | ZavWSRPairTies" + samples +
                                "1) -> 1 | ZavWSRPairTieCorrectionTerm" + samples +
                                "1) -> 6 | ZavWSRPairNegative" + samples +
                                "1) -> 4.5 | ZavWSRPairPositive" + samples + "1) -> 5.5");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavWSRpValue(0,0,0) | ZavWSRpValue(3,7,0) | ZavWSRpValue(3,-1,0) | ZavWSRpValue(3,5,-2)
        ZavWSRpValue(3,,) | ZavWSRTies(E1:E5,0) | ZavWSRPositive(A1:A5,"x")
        ZavWSRPairTies(A3:A3,B3:B3,0) | ZavWSRPairTies(1:2,A1:A5,0))");
  });
}

TEST_CASE("Kruskal-Wallis in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    // Together 1, 1.5, 2, 4, 4, 4, 7, 8, 9, 9.5, 12; rank sums 21, 16, 29.
    CheckFormulas(engine, R"(
        ZavKWData(0,A1:A5,B:B,C1:C3) ~ (12/132*(441/4+64+841/3)-36)/(1-24/1320)
        ZavKWData(1,A1:A5,B:B,C1:C3) ~ 12/132*(441/4+64+841/3)-36
        ZavKWData(2,A1:A5,B:B,C1:C3) -> 2 | ZavKWData(3,A1:A5,B:B,C1:C3) -> 11
        ZavKWData(4,A1:A5,B:B,C1:C3) -> 1 | ZavKWData(5,A1:A5,B:B,C1:C3) ~ 1-24/1320
        ZavKWData(101,A1:A5,B:B,C1:C3) -> 21 | ZavKWData(102,A1:A5,B:B,C1:C3) -> 16
        ZavKWData(103,A1:A5,B:B,C1:C3) -> 29
        ZavKWpValue(1,A1:A5,B:B,C1:C3) ~ EXP(-ZavKWData(0,A1:A5,B:B,C1:C3)/2)
        ZavKWpValue(0,A1:A5,B:B,C1:C3) ~ ZavKWpValue(2,A1:A5,B:B,C1:C3)
        ZavKWpValue(2,{1,2},{3,4}) ~ 1/3 | ZavKWpValueComputationMethod({10,10,10}) -> 1
        ZavKWpValueComputationMethod(C1:C2*0+3) -> 2 | ZavKWpValueComputationMethod({4;4;3}) -> 2
        ZavKWData(1,D1:D3,D1:D2) -> 0 | ZavKWData(5,D1:D3,D1:D2) -> 0
        ZavKWData(0,D1:D3,D1:D2) -> #DIV/0! | ZavKWpValue(0,D1,D2:D3) -> #DIV/0!
        ZavKWpValue(2,A:B,A:B,C:D) -> #NUM!)");
    std::string thirty = "ZavKWData(2";
    for (int i = 0; i < 29; ++i) thirty += ",C1:C3";
    CheckFormulas(engine, thirty + ") -> 28");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavKWData(0,A1:A5) | ZavKWData(0,A1:A5,E1:E5) | ZavKWData(0,A1:A5,,C1:C3)
        ZavKWData(104,A1:A5,B:B,C1:C3) | ZavKWData(6,A1:A5,C1:C3) | ZavKWData("x",A1:A5,C1:C3)
        ZavKWpValue(3,A1:A5,C1:C3) | ZavKWpValueComputationMethod(3)
        ZavKWpValueComputationMethod({3,2.5}) | ZavKWpValueComputationMethod({3,0})
        ZavKWpValueComputationMethod(E1:E9))");
  });
}

TEST_CASE("kept ranks are those of the cells as they are") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavMWRankSum1(A1:A5,B1:B5) -> 20 | ZavWSRPositive(A1:A5,3) -> 7
        ZavWSRPairPositive(A1:A5,B1:B5,0) -> 5)");
    Edit(engine, "A1 = 100");
    CheckFormulas(engine, R"(
        ZavMWRankSum1(A1:A5,B1:B5) -> 23 | ZavMWRankSum2(A1:A5,B1:B5) -> 13
        ZavWSRPositive(A1:A5,3) -> 10 | ZavWSRNegative(A1:A5,3) -> 0
        ZavWSRPairNegative(A1:A5,B1:B5,0) -> 0)");
    Edit(engine, "B5 = 200");  // of the second sample alone
    CheckFormulas(engine,
                  "ZavMWRankSum1(A1:A5,B1:B5) -> 21 | ZavWSRPairNegative(A1:A5,B1:B5,0) -> 3");
    Edit(engine, "B3 = 5");  // counts for Mann-Whitney, and completes no pair
    CheckFormulas(engine,
                  "ZavMWRankSum2(A1:A5,B1:B5) -> 22 | ZavWSRPairNegative(A1:A5,B1:B5,0) -> 3");
    Edit(engine, "A3 = 5 | A1 = 1.5");  // -1.5, 1, 2, 1, 6
    CheckFormulas(engine, "ZavMWTies(A1:A5,B1:B5) -> 2 | ZavWSRPositive(A1:A5,3) -> 12");
  });
}

TEST_CASE("random numbers are uniform and new at every call") {
  auto engine = ServingAddIn();
  std::set<double> drawn;
  constexpr int kCalls = 2000;
  for (int i = 0; i < kCalls; ++i) {
    const double number = Number(*engine, "ZavRand()");
    REQUIRE((number >= 0 && number < 1));
    drawn.insert(number);
  }
  // Calls within a tick of the clock share a number.
  const auto different = static_cast<double>(drawn.size());
  CHECK(different > kCalls / 2.0);
  std::array<int, 10> bins{};
  for (const double number : drawn) ++bins[static_cast<std::size_t>(number * 10)];
  // Within six standard deviations.
  for (const int bin : bins)
    CHECK(std::abs(bin - different / 10) < 6 * std::sqrt(different * 0.09));
  CloseClean(*engine);
}

}  // namespace zavrel::tests
