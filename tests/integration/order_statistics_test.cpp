// Percentiles, quartiles, median and mode, and the functions that list cells, as a workbook's user
// meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

zavhost::Workbook SmallBook() {
  return BookOf({"A: 4 | 3 | 2 | 1", "B: 1 | a | | TRUE | #N/A | 2 | \" \u00A0\"",
                 "C: | | 7 | 1 | 6 | 1 | 5", "F: 40 | \"1\" | 15 | | 50 | 20 | TRUE | 35"});
}

}  // namespace

TEST_CASE("percentiles, quartiles and medians in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavPercentile(F1:F8,0.4,0) -> 29 | ZavPercentile(F1:F8,0.4,1) -> 20
        ZavPercentile(F1:F8,0.4,2) -> 20 | ZavPercentile(F1:F8,0.4,3) -> 20
        ZavPercentile(F1:F8,0.4,4) -> 26 | ZavPercentile(F1:F8,0.4,5) -> 27.5
        ZavMedian(F1:F8,0) -> 35 | ZavMedian(F1:F8,1) -> 27.5 | ZavMedian(F1:F8,2) -> 20
        ZavMedian(F1:F8,3) -> 35 | ZavMedian(F1:F8,4.9) -> 35 | ZavMedian(F1:F8,5) -> 35
        ZavQuartile(F1:F8,2,1) -> 27.5 | ZavQuartile(F1:F8,2,2) -> 20
        ZavPercentile(A1:A4,0.9,0) ~ 3.7 | ZavPercentile(A1:A4,0.9,4) -> 4
        ZavQuartile(A1:A4,1,0) -> 1.75 | ZavMedian(A1:A4,3) -> 2 | ZavMedian(A1:A4,5) -> 2.5
        ZavMedian({1,3,4}) -> 2 | ZavMedian({1,3,3}) -> 3 | ZavMedian((A1:A2,C3:C7),0) -> 4
        ZavMedian(A:A,0) -> 2.5 | ZavMedian(B1:B7,0) -> 1.5 | ZavMedian(8) -> 8)");
    for (const char* method : {"-1", "0", "1", "2", "3", "4", "5", ""}) {
      const std::string end = std::string(",") + method + ")";
      CheckFormulas(engine, "ZavPercentile(A1:A4,0" + end + " -> 1 | ZavQuartile(A1:A4,4" + end +
                                " -> 4 | ZavPercentile(A1:A4,1" + end +
                                " -> 4 | ZavPercentile(8,0.3" + end + " -> 8");
    }
    CheckFormulas(engine, "#VALUE!", R"(
        ZavQuartile(A1:A4,2.5) | ZavQuartile(A1:A4,5) | ZavQuartile(A1:A4,-1)
        ZavPercentile(A1:A4,1.0000001) | ZavPercentile(A1:A4,-1E-9) | ZavPercentile(A1:A4,)
        ZavPercentile(,0.5) | ZavPercentile(E:E,0) | ZavPercentile(A1:A4,B5) | ZavMedian(A1:A4,6)
        ZavMedian(A1:A4,-2) | ZavMedian(A1:A4,65536) | ZavMedian(A1:A4,1E+10)
        ZavMedian(A1:A4,"x") | ZavMedian(E1:E9) | ZavQuartile("7",4))");
  });
}

TEST_CASE("the mode by each reading of the data is kept apart, and follows an edit") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    for (int round = 0; round < 2; ++round) {
      CheckFormulas(engine, R"(
          ZavMode(C3:C7,0) -> 6 | ZavMode(C3:C7,TRUE) -> 1 | ZavMode(C3:C7) -> 1
          ZavMode({3,2,2,3},1) -> 2 | ZavMode(E1:E9) -> #N/A | ZavMode(C3:C7,"x") -> #VALUE!)");
    }
    Edit(engine, "C4 = 8");  // all once: of discrete data the smallest
    CheckFormulas(engine, "ZavMode(C3:C7) ~ ZavMode(C3:C7,0) | ZavMode(C3:C7,1) -> 1");
  });
}

TEST_CASE("the mode of few values is in the densest half, of more the middle of the fullest bin") {
  InEachHost({}, [](zavhost::Engine& engine) {
    // Of ten the five 20 to 27, of these the three 22 23 24.5, of these the pair 22 23. Four bins
    // of width 1, in which 1 and 2 lie on edges and belong above them; the last bin has its upper
    // end too; of two equally full ones the lower counts. Eleven values are the first to have bins.
    CheckFormulas(engine, R"(
        ZavMode({1,2,2,3,3},1) -> 2 | ZavMode({1,2,2,3,3,3},1) -> 3 | ZavMode({4,5,6},1) -> 4
        ZavMode({1,2,4,9,9}) -> 9 | ZavMode({1,2,4,9,9},0) -> 1.5 | ZavMode({1,2,4,9,9.5}) -> 1.5
        ZavMode(7,0) -> 7 | ZavMode({2,7},0) -> 4.5 | ZavMode({2,4,7},0) -> 3 | ZavMode({2,5,7},0) -> 6
        ZavMode({2,4,6},0) -> 4 | ZavMode({1,2,5,6},0) -> 1.5 | ZavMode({0,10,11,13,20},0) -> 10.5
        ZavMode({0,5,9,14,20,22,23,24.5,27,40},0) -> 22.5
        ZavMode({0.1,0.1,0.1,0.1,0.1,0.1,0.1,0.1},0) -> 0.1
        ZavMode({0,0.25,0.5,1,1.1,1.5,1.6,2,2.1,3,3.5,4},0) -> 1.5
        ZavMode({0,0.25,0.5,1.1,1.5,2.1,2.2,2.5,3,3.5,3.7,4},0) -> 3.5
        ZavMode({0,0.25,0.5,0.75,1.1,1.5,2.1,2.2,3,3.5,3.7,4},0) -> 0.5
        ZavMode({0,1,2,3,4,5,6,7,8,8.5,9},0) -> 7.5
        ZavMode({-1.7E+308,-1E+308,1.6E+308,1.7E+308},0) ~ 1.65E+308
        ZavMode({-1.7E+308,-1.6E+308,1E+308},0) ~ -1.65E+308)");
  });
}

TEST_CASE("blank is what shows nothing but white space") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, "TRUE", "ZavIsBlank(B3) | ZavIsBlank(B7) | ZavIsBlank(\"\")");
    for (const char* blank :
         {"\t\v\f\r \u0085\u00A0\u1680\u2000\u2005\u200A", "\u2028\u2029\u202F\u205F\u3000"})
      CHECK(Shown(engine, std::string("ZavIsBlank(\"\n") + blank + "\")") == "TRUE");
    // Next to the white space of Unicode: a control, a zero-width space, a Braille blank.
    CheckFormulas(engine, "FALSE",
                  "ZavIsBlank(\" a \") | ZavIsBlank(0) | ZavIsBlank(FALSE) | ZavIsBlank(\"\x0E\") |"
                  "ZavIsBlank(\"\u200B\") | ZavIsBlank(\"\u2800\")");
    CheckFormulas(engine, "#VALUE!", "ZavIsBlank(B5) | ZavIsBlank()");
  });
}

TEST_CASE("cells of a class, as an array formula lists them") {
  CheckEntered(SmallBook(), R"(
      E10:E11 = ZavGetCellValues(M10:M11,1) -> 2.5;#N/A; | M10 = ZavMedian(A1:A4,0) -> 2.5;
      E1:E4 = ZavGetCellValues(B1:B6,1) -> 1;2;#N/A;#N/A;
      G1:H2 = ZavGetCellValues(B1:B6,2) -> 1,a;TRUE,#N/A;
      G4:H5 = ZavGetCellValues(B:B,4) -> 0,#N/A;#N/A,#N/A;
      E6:L6 = ZavGetCellValues(B1:B6,0) -> 1,a,0,TRUE,#N/A,2,#N/A,#N/A;
      E8:F8 = ZavGetCellValues(B1:B7,5) -> #VALUE!,#VALUE!;
      E12:F12 = ZavGetCellValues(,0) -> 0,#N/A;)");  // an omitted argument is one blank cell
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, "#VALUE!", R"(
        ZavGetCellValues(A1:A4,-1) | ZavGetCellValues(A1:A4,4E+9) | ZavGetCellValues(A1:A4,))");
  });
}

TEST_CASE("called from elsewhere than a cell there is no place for an array") {
  using zavhost::CallerForm;
  for (const CallerForm caller :
       {CallerForm::kError, CallerForm::kNumber, CallerForm::kText, CallerForm::kMenu}) {
    zavhost::EngineOptions options;
    options.behaviour.caller = caller;
    const auto engine = ServingAddIn(SmallBook(), std::move(options));
    CheckFormulas(*engine, "#REF!", R"(
        ZavGetCellValues(A1:A4,1) | ZavCategoryNames(B1:B4) | ZavCategoryIndices(B1:B4,"a"))");
    CheckFormulas(*engine, "ZavMedian(A1:A4,0) -> 2.5 | ZavCountCategories(B1:B4) -> 3");
    CloseClean(*engine);
  }
}

}  // namespace zavrel::tests
