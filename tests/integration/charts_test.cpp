// Helper columns of charts, as a workbook's user meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

// A: quartiles 3.25, 5.5, 7.75 by method 0; fences -10.25, -3.5, 14.5, 21.25. C: quartiles 4, 7,
// 10; fences -14, -5, 19, 28. H: quartiles 6, 8, 10; fences -6, 0, 16, 22, with values on them.
zavhost::Workbook SmallBook() {
  return BookOf(
      {"A: 10 | 9 | 8 | 7 | 6 | 5 | 4 | 3 | 2 | 1", "B: 2 | x | | 8 | #N/A",
       "C: -20 | -8 | 4 | 5 | 6 | 7 | 8 | 9 | 10 | 20 | 30 | 31 | -19",
       "D: 4 | 9 | x | 2 | | 5 | 4",
       "H: -6.5 | -6 | 0 | 0.5 | 6 | 7 | 7 | 7 | 8 | 9 | 9 | 9 | 10 | 15.5 | 16 | 22 | 22.5"});
}

}  // namespace

TEST_CASE("the columns of a box plot") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavBoxPlotX(A1:A10,0,1) -> 3.25;3.25;7.75;7.75;3.25;
        ZavBoxPlotX(A:A,0,2) -> 3.25;1;1;1; | ZavBoxPlotX(A1:A10,0,3) -> 7.75;10;10;10;
        ZavBoxPlotX(A1:A10,0,4) -> 5.5;5.5; | ZavBoxPlotX(A1:A10,0,5) -> 5.5;
        ZavBoxPlotX(A1:A10,0,6) -> #N/A; | ZavBoxPlotX(C1:C13,0,6) -> -20;-19;
        ZavBoxPlotX(C1:C13,0,7) -> -8; | ZavBoxPlotX(C1:C13,0,8) -> 20;
        ZavBoxPlotX(C1:C13,0,9) -> 30;31; | ZavBoxPlotX({5,5,5},0,2) -> 5;5;5;5;
        ZavBoxPlotY(2,1) -> 1.7;2.3;2.3;1.7;1.7; | ZavBoxPlotY(2,3) -> 2;2;1.85;2.15;
        ZavBoxPlotY(-1,4) -> -1.3;-0.7; | ZavBoxPlotY(7,5) -> 7; | ZavBoxPlotY(7,9) -> 7;
        ZavBoxPlotCountOutliers(A1:A10,0) -> 0 | ZavBoxPlotCountOutliers(C1:C13,0) -> 2
        ZavBoxPlotCountOutliers({5,5,5},) -> 3
        ZavBoxPlotCountOutliers({1,2,3,4,5,40,41},0) -> 0
        ZavBoxPlotCountOutliers({1,2,3,4,5,40,41},9) -> 2 | ZavBoxPlotCountOutliers(M:M,0) -> -1)");
    CheckFormulas(engine, R"(
        ZavBoxPlotX(H1:H17,0,2) -> 6;0.5;0.5;0.5; | ZavBoxPlotX(H1:H17,0,3) -> 10;15.5;15.5;15.5;
        ZavBoxPlotX(H1:H17,0,6) -> -6.5;-6; | ZavBoxPlotX(H1:H17,0,7) -> 0;
        ZavBoxPlotX(H1:H17,0,8) -> 16; | ZavBoxPlotX(H1:H17,0,9) -> 22;22.5;
        ZavBoxPlotCountOutliers({-1.7E+308,0,1.7E+308},0) -> 0
        ZavBoxPlotX({0,100,100,100},0,2) -> 75;75;75;75;)");  // no line into the box
    // A changed cell changes what was summarised for an earlier question.
    Edit(engine, "A1 = 60");
    CheckFormulas(engine, "ZavBoxPlotCountOutliers(A1:A10,0) -> 1");
  });
}

TEST_CASE("outliers, and values on the fences") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, "0", R"(
        ZavOutlierType(A1:A10,0,14.4999) | ZavOutlierType(A1:A10,0,-3.4)
        ZavOutlierType(A1:A10,0,5))");
    CheckFormulas(engine, "1", R"(
        ZavOutlierType(A1:A10,0,14.5) | ZavOutlierType(A1:A10,0,21.2)
        ZavOutlierType(A1:A10,0,-3.5))");
    CheckFormulas(engine, "2", R"(
        ZavOutlierType(A1:A10,0,21.25) | ZavOutlierType(A1:A10,0,-10.25)
        ZavOutlierType({4,4,4},9,4) | ZavOutlierType({5,5,5},,4.9))");
    // Any method that there is not is the automatic one; 1, 2, 2, 4, 8 are discrete.
    CheckFormulas(engine, "2;2;4;4;2;", R"(
        ZavBoxPlotX({1,2,2,4,8},-1,1) | ZavBoxPlotX({1,2,2,4,8},,1)
        ZavBoxPlotX({1,2,2,4,8},9,1) | ZavBoxPlotX({1,2,2,4,8},-2,1)
        ZavBoxPlotX({1,2,2,4,8},1E+300,1) | ZavBoxPlotX({1,2,2,4,8},"x",1)
        ZavBoxPlotX({1,2,2,4,8},B5,1) | ZavBoxPlotX({1,2,2,4,8},M1,1))");
    CHECK(Shown(engine, "ZavBoxPlotX({1,2,2,4,8},1,1)") != "2;2;4;4;2;");
  });
}

TEST_CASE("the columns of scatter and normal quantile plots") {
  zavhost::Workbook book = SmallBook();
  for (int row = 0; row < 65536; ++row) book.sheets[0].Set(row, 13, row % 100 + 1.0);
  InEachHost(book, [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavScatterPlot(A1:A10,B1:B10,0) -> 10;7; | ZavScatterPlot(A1:A10,B1:B4,1) -> 2;8;
        ZavScatterPlot(A:A,B:B,1) -> 2;8; | ZavQQPlotSort(D1:D7) -> 2;4;4;5;9;
        ZavQQPlotSort(3) -> 3; | ZavQQPlotZValue(3,1) -> 0;
        ROUND(ZavQQPlotStandardize(D1:D7),5) -> -0.30907;1.6226;-1.08173;0.07727;-0.30907;
        ROUND(ZavQQPlotZValue(D1:D7,0),4) -> 1.4828;3.4426;4.8;6.1574;8.1172;
        ROUND(ZavQQPlotZValue(D1:D7,M1),4) -> 1.4828;3.4426;4.8;6.1574;8.1172;
        ROWS(ZavQQPlotSort(N1:N65535)) -> 65535
        ROUND(INDEX(ZavQQPlotZValue(N1:N65535,1),65535,1),7) -> 4.3249157)");
    CheckFormulas(engine, "-1.2816;-0.5244;0;0.5244;1.2816;", R"(
        ROUND(ZavQQPlotZValue(D1:D7,1),4) | ROUND(ZavQQPlotZValue(D1:D7,TRUE),4)
        ROUND(ZavQQPlotZValue(D1:D7,-0.5),4))");
    CheckFormulas(engine, "#DIV/0!", R"(
        ZavQQPlotZValue(5,0) | ZavQQPlotZValue({0.1,0.1,0.1},0) | ZavQQPlotStandardize(5)
        ZavQQPlotStandardize({0.1,0.1,0.1}))");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavOutlierType(A1:A10,0,"x") | ZavOutlierType(A1:A10,0,) | ZavOutlierType(A1:A10,0,B5)
        ZavOutlierType(A1:A10,0,Z9) | ZavOutlierType(A1:A10,0,TRUE) | ZavOutlierType(A1:A10,0,"5")
        ZavOutlierType(M:M,0,1) | ZavBoxPlotX(M:M,0,1) | ZavBoxPlotX(,,1)
        ZavBoxPlotX(A1:A10,0,0) | ZavBoxPlotX(A1:A10,0,10) | ZavBoxPlotX(A1:A10,0,"x")
        ZavBoxPlotY(1,0) | ZavBoxPlotY(1,10) | ZavBoxPlotY(1,1E+300) | ZavBoxPlotY(1,)
        ZavScatterPlot(A1:A10,B1:B10,2) | ZavScatterPlot(A1:A10,B1:B10,-1)
        ZavScatterPlot(A1:A10,M1:M10,0) | ZavScatterPlot(A1:A10,,0) | ZavQQPlotZValue(M:M,1)
        ZavQQPlotSort("x") | ZavQQPlotStandardize("x") | ZavQQPlotZValue(N1:N65536,1)
        ZavQQPlotSort(N:N) | ZavQQPlotStandardize(N:N) | ZavScatterPlot(N:N,N:N,0))");
  });
}

TEST_CASE("no column of a chart is repeated over its calling range, or cut off") {
  CheckEntered(SmallBook(), R"(
      F1:G5 = ZavBoxPlotX(A1:A10,0,2) -> 3.25,#N/A;1,#N/A;1,#N/A;1,#N/A;#N/A,#N/A;
      H1:H5 = ZavBoxPlotX(A1:A10,9,8) -> #N/A;#N/A;#N/A;#N/A;#N/A;
      I1:J3 = ZavBoxPlotY(7,5) -> 7,#N/A;#N/A,#N/A;#N/A,#N/A;
      K1:L3 = ZavBoxPlotY(7,8) -> 7,#N/A;7,#N/A;7,#N/A; | {L11} = ZavBoxPlotY(7,8) -> 7;
      F7:G9 = ZavQQPlotSort({3,1}) -> 1,#N/A;3,#N/A;#N/A,#N/A;
      H7:I9 = ZavQQPlotSort(3) -> 3,#N/A;#N/A,#N/A;#N/A,#N/A;
      J7:K9 = ZavQQPlotZValue(3,1) -> 0,#N/A;#N/A,#N/A;#N/A,#N/A;
      F11:G12 = ZavQQPlotStandardize({3;1}) -> 0.707106781186547,#N/A;-0.707106781186547,#N/A;
      H11:I13 = ZavScatterPlot({3},{3},1) -> 3,#N/A;#N/A,#N/A;#N/A,#N/A;
      J11:K13 = ZavBoxPlotX({3},0,5) -> 3,#N/A;#N/A,#N/A;#N/A,#N/A;)");
}

}  // namespace zavrel::tests
