// Nonparametric tests and random numbers as a workbook's user meets them.
#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <set>
#include <string>

#include "host/xlsx/xlsx_file.h"
#include "integration/example_workbook.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::Value;

/// Column A: 1.5, 4, text, 4, 9; column B: 2, 4, empty, 1, 7; column C: 8, 9.5, 12; column D: three
/// times 5; column F stacks A and B by the labels in G.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  const auto fill = [&](int column, std::initializer_list<Value> cells) {
    int row = 0;
    for (const Value& cell : cells) sheet.Set(row++, column, cell);
  };
  fill(0, {Value(1.5), Value(4.0), Value(u"3"), Value(4.0), Value(9.0)});
  fill(1, {Value(2.0), Value(4.0), Value(), Value(1.0), Value(7.0)});
  fill(2, {Value(8.0), Value(9.5), Value(12.0)});
  fill(3, {Value(5.0), Value(5.0), Value(5.0)});
  fill(5, {Value(1.5), Value(2.0), Value(4.0), Value(4.0), Value(4.0), Value(1.0), Value(9.0),
           Value(7.0)});
  for (int row = 0; row < 8; ++row) sheet.Set(row, 6, Value(row % 2 == 0 ? u"a" : u"b"));
  return book;
}

void CheckShown(zavhost::Engine& engine, const char* expected,
                std::initializer_list<const char16_t*> formulas) {
  for (const char16_t* formula : formulas) {
    CAPTURE(zavhost::Utf8FromUtf16(formula));
    CHECK(Shown(engine, formula) == expected);
  }
}

}  // namespace

TEST_CASE("Mann-Whitney in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  // Together 1, 1.5, 2, 4, 4, 4, 7, 9.
  for (const std::u16string& samples :
       {std::u16string(u"(A1:A5,B1:B5)"), std::u16string(u"(A:A,Data!B1:B9)"),
        std::u16string(u"({1.5;4;4;9},{2,4,1,7})"),
        std::u16string(u"(ZavDestack(F1:F8,G1:G8,\"a\"),ZavDestack(F:F,G:G,\"B\"))")}) {
    CAPTURE(zavhost::Utf8FromUtf16(samples));
    for (int round = 0; round < 2; ++round) {
      CHECK(Shown(*engine, u"ZavMWTies" + samples) == "1");
      CHECK(Shown(*engine, u"ZavMWTieCorrectionTerm" + samples) == "24");
      CHECK(Shown(*engine, u"ZavMWRankSum1" + samples) == "20");
      CHECK(Shown(*engine, u"ZavMWRankSum2" + samples) == "16");
    }
  }
  CHECK(Number(*engine, u"ZavMWpValue(4,4,ZavMWRankSum1(A1:A5,B1:B5),0)") ==
        doctest::Approx(2 * 24 / 70.0));
  CHECK(Number(*engine, u"ZavMWpValue(4,4,11,-1)") == doctest::Approx(2 / 70.0));
  CHECK(Number(*engine, u"ZavMWpValue(\"4\",4.9,25,1)") == doctest::Approx(2 / 70.0));
  CHECK(Shown(*engine, u"ZavMWUsingNormalApproximation(50,50)") == "FALSE");
  CHECK(Shown(*engine, u"ZavMWUsingNormalApproximation(50,51)") == "TRUE");
  CheckShown(*engine, "#VALUE!",
             {u"ZavMWUsingNormalApproximation(0,5)", u"ZavMWUsingNormalApproximation(5,\"x\")",
              u"ZavMWpValue(0,4,10,0)", u"ZavMWpValue(4,-1,10,0)", u"ZavMWpValue(4,4,9,0)",
              u"ZavMWpValue(4,4,27,0)", u"ZavMWpValue(4,4,15,2)", u"ZavMWpValue(4,4,15,)",
              u"ZavMWpValue(1E10,4,15,0)", u"ZavMWTies(A1:A5,E1:E5)", u"ZavMWRankSum1(A3,B1:B5)"});
  CloseClean(*engine);
}

TEST_CASE("signed ranks in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  // Less 4: -2.5, 5; the zeros are dropped. Less 3: -1.5, 1, 1, 6.
  CheckShown(*engine, "1", {u"ZavWSRNegative(A1:A5,4)", u"ZavWSRTies(A1:A5,3)"});
  CheckShown(*engine, "0", {u"ZavWSRTies(A1:A5,4)", u"ZavWSRPositive(4,4)"});
  CheckShown(*engine, "2", {u"ZavWSRPositive(A1:A5,4)"});
  CheckShown(*engine, "6", {u"ZavWSRTieCorrectionTerm(A1:A5,3)"});
  CheckShown(*engine, "3", {u"ZavWSRNegative(A1:A5,3)"});
  CheckShown(*engine, "7", {u"ZavWSRPositive(A1:A5,\"3\")"});
  // A less B, complete pairs: -0.5, 0, 3, 2; less 1: -1.5, -1, 2, 1.
  for (const std::u16string& samples :
       {std::u16string(u"(A1:A5,B1:B5,"), std::u16string(u"(A:A,B1:B7,")}) {
    CHECK(Shown(*engine, u"ZavWSRPairNegative" + samples + u"0)") == "1");
    CHECK(Shown(*engine, u"ZavWSRPairPositive" + samples + u"0)") == "5");
    CHECK(Shown(*engine, u"ZavWSRPairTies" + samples + u"1)") == "1");
    CHECK(Shown(*engine, u"ZavWSRPairTieCorrectionTerm" + samples + u"1)") == "6");
    CHECK(Shown(*engine, u"ZavWSRPairNegative" + samples + u"1)") == "4.5");
    CHECK(Shown(*engine, u"ZavWSRPairPositive" + samples + u"1)") == "5.5");
  }
  CHECK(Shown(*engine, u"ZavWSRExactPValMaxSample()") == "1000");
  CHECK(Shown(*engine, u"ZavWSRpValue(3,5,1)") == "0.25");
  CHECK(Shown(*engine, u"ZavWSRpValue(3,5.5,0)") == "0.25");
  CHECK(Shown(*engine, u"ZavWSRpValue(3,5,-1)") == "0.875");
  CheckShown(*engine, "#VALUE!",
             {u"ZavWSRpValue(0,0,0)", u"ZavWSRpValue(3,7,0)", u"ZavWSRpValue(3,-1,0)",
              u"ZavWSRpValue(3,5,-2)", u"ZavWSRpValue(3,,)", u"ZavWSRTies(E1:E5,0)",
              u"ZavWSRPositive(A1:A5,\"x\")", u"ZavWSRPairTies(A3:A3,B3:B3,0)",
              u"ZavWSRPairTies(1:2,A1:A5,0)"});
  CloseClean(*engine);
}

TEST_CASE("Kruskal-Wallis in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  // Together 1, 1.5, 2, 4, 4, 4, 7, 8, 9, 9.5, 12.
  const std::u16string groups = u",A1:A5,B:B,C1:C3)";
  CheckShown(*engine, "2",
             {(u"ZavKWData(2" + groups).c_str(), u"ZavKWpValueComputationMethod(C1:C2*0+3)",
              u"ZavKWpValueComputationMethod({4;4;3})"});
  CHECK(Shown(*engine, u"ZavKWData(3" + groups) == "11");
  CHECK(Shown(*engine, u"ZavKWData(4" + groups) == "1");
  CHECK(Number(*engine, u"ZavKWData(5" + groups) == doctest::Approx(1 - 24.0 / 1320));
  CHECK(Shown(*engine, u"ZavKWData(101" + groups) == "21");
  CHECK(Shown(*engine, u"ZavKWData(102" + groups) == "16");
  CHECK(Shown(*engine, u"ZavKWData(103" + groups) == "29");
  const double h = 12.0 / 132 * (441 / 4.0 + 64 + 841 / 3.0) - 36;
  CHECK(Number(*engine, u"ZavKWData(1" + groups) == doctest::Approx(h));
  CHECK(Number(*engine, u"ZavKWData(0" + groups) == doctest::Approx(h / (1 - 24.0 / 1320)));
  CHECK(Number(*engine, u"ZavKWpValue(1" + groups) ==
        doctest::Approx(std::exp(-h / (1 - 24.0 / 1320) / 2)));
  CHECK(Number(*engine, u"ZavKWpValue(0" + groups) == Number(*engine, u"ZavKWpValue(2" + groups));
  CHECK(Number(*engine, u"ZavKWpValue(2,{1,2},{3,4})") == doctest::Approx(1 / 3.0));
  CHECK(Shown(*engine, u"ZavKWpValueComputationMethod({10,10,10})") == "1");
  std::u16string thirty = u"ZavKWData(2";
  for (int i = 0; i < 29; ++i) thirty += u",C1:C3";
  CHECK(Shown(*engine, thirty + u")") == "28");

  CheckShown(*engine, "#DIV/0!", {u"ZavKWData(0,D1:D3,D1:D2)", u"ZavKWpValue(0,D1,D2:D3)"});
  CheckShown(*engine, "0", {u"ZavKWData(1,D1:D3,D1:D2)", u"ZavKWData(5,D1:D3,D1:D2)"});
  CheckShown(*engine, "#NUM!", {u"ZavKWpValue(2,A:B,A:B,C:D)"});
  CheckShown(*engine, "#VALUE!",
             {u"ZavKWData(0,A1:A5)", u"ZavKWData(0,A1:A5,E1:E5)", u"ZavKWData(0,A1:A5,,C1:C3)",
              u"ZavKWData(104,A1:A5,B:B,C1:C3)", u"ZavKWData(6,A1:A5,C1:C3)",
              u"ZavKWData(\"x\",A1:A5,C1:C3)", u"ZavKWpValue(3,A1:A5,C1:C3)",
              u"ZavKWpValueComputationMethod(3)", u"ZavKWpValueComputationMethod({3,2.5})",
              u"ZavKWpValueComputationMethod({3,0})", u"ZavKWpValueComputationMethod(E1:E9)"});
  CloseClean(*engine);
}

TEST_CASE("kept ranks are those of the cells as they are") {
  auto engine = ServingAddIn(SmallBook());
  zavhost::Sheet& sheet = engine->workbook().sheets[0];
  const auto shown = [&](std::u16string_view formula) { return Shown(*engine, formula); };
  CHECK(shown(u"ZavMWRankSum1(A1:A5,B1:B5)") == "20");
  CHECK(shown(u"ZavWSRPositive(A1:A5,3)") == "7");
  CHECK(shown(u"ZavWSRPairPositive(A1:A5,B1:B5,0)") == "5");
  sheet.Set(0, 0, Value(100.0));
  CHECK(shown(u"ZavMWRankSum1(A1:A5,B1:B5)") == "23");
  CHECK(shown(u"ZavMWRankSum2(A1:A5,B1:B5)") == "13");
  CHECK(shown(u"ZavWSRPositive(A1:A5,3)") == "10");
  CHECK(shown(u"ZavWSRNegative(A1:A5,3)") == "0");
  CHECK(shown(u"ZavWSRPairNegative(A1:A5,B1:B5,0)") == "0");
  sheet.Set(4, 1, Value(200.0));  // of the second sample alone
  CHECK(shown(u"ZavMWRankSum1(A1:A5,B1:B5)") == "21");
  CHECK(shown(u"ZavWSRPairNegative(A1:A5,B1:B5,0)") == "3");
  sheet.Set(2, 1, Value(5.0));  // counts for Mann-Whitney, and completes no pair
  CHECK(shown(u"ZavMWRankSum2(A1:A5,B1:B5)") == "22");
  CHECK(shown(u"ZavWSRPairNegative(A1:A5,B1:B5,0)") == "3");
  sheet.Set(2, 0, Value(5.0));
  CHECK(shown(u"ZavMWTies(A1:A5,B1:B5)") == "2");
  sheet.Set(0, 0, Value(1.5));
  CHECK(shown(u"ZavWSRPositive(A1:A5,3)") == "12");  // -1.5, 1, 2, 1, 6
  CloseClean(*engine);
}

TEST_CASE("random numbers are uniform and new at every call") {
  auto engine = ServingAddIn();
  std::set<double> drawn;
  constexpr int kCalls = 2000;
  for (int i = 0; i < kCalls; ++i) {
    const double number = Number(*engine, u"ZavRand()");
    REQUIRE(number >= 0);
    REQUIRE(number < 1);
    drawn.insert(number);
  }
  // Calls within a tick of the clock share a number.
  const auto different = static_cast<double>(drawn.size());
  CHECK(different > kCalls / 2.0);
  std::array<int, 10> bins{};
  double sum = 0;
  for (const double number : drawn) {
    ++bins[static_cast<std::size_t>(number * 10)];
    sum += number;
  }
  // Both within five or more standard deviations.
  CHECK(std::abs(sum / different - 0.5) < 0.05);
  for (const int bin : bins)
    CHECK(std::abs(bin - different / 10) < 6 * std::sqrt(different * 0.09));
  CloseClean(*engine);
}

TEST_CASE("the example workbook of nonparametric tests gives what R gives") {
  ExampleWorkbook example("nonparametric.xlsx");
  const int compared =
      example.CompareWith("nonparametric_reference.csv", [](double number, double expected) {
        CAPTURE(number - expected);
        CHECK(std::abs(number - expected) <= 1e-12 * std::abs(expected));
      });
  CHECK(compared == 50);
  CHECK(example.At("Mann-Whitney", "B11") == Value(false));
  CHECK(example.At("Kruskal-Wallis", "B16") == Value(u"too many arrangements"));
  CHECK(example.At("Kruskal-Wallis", "B17") == Value(1.0));
  CHECK(example.At("Kruskal-Wallis", "C17") == Value(2.0));
  CloseClean(example.engine());
}

}  // namespace zavrel::tests
