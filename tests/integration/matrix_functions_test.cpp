// Covariance, correlation, eigen-analysis and principal components as a workbook's user meets them.
#include <doctest/doctest.h>

#include <string>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

zavhost::Workbook SmallBook() {
  return BookOf({"A: 1 | 2 | 3 | 4 | 5", "B: 2 | 1 | 4 | 3 | 7", "C: 5 | 5 | 7 | | \"8\"",
                 "D: 2 | 4 | 6 | #REF!", "E: 3 | 3 | 3", "F: 2 | 1", "G: 1 | 2"});
}

}  // namespace

TEST_CASE("covariance and correlation of two variables in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    // Ranks 0, 1, 2, 3, 4 and 1, 0, 3, 2, 4, and with ties 0, 1, 2 and 0.5, 0.5, 2. The option's
    // whole part decides. Where the longer variable goes on there are no pairs, but an error there
    // counts.
    CheckFormulas(engine, R"(
        ZavCovariance(A1:A5,B1:B5) -> 3 | ZavCovarianceP(A:A,B:B) -> 2.4
        ZavCorrelationCoeff(A1:A5,B1:B5) ~ 12/SQRT(10*21.2)
        ZavCorrelationCoeff(A1:A5,B:B,1) ~ 0.8 | ZavCorrelationCoeff(A1:A5,B:B,-0.5) ~ 0.8
        ZavCorrelationCoeff(A1:A5,B:B,TRUE) ~ 0.8 | ZavCorrelationCoeff(A1:A5,C1:C5,1) ~ SQRT(0.75)
        ZavCorrelationCoeff(A1:A3,D1:D3,0) -> 1 | ZavCorrelationCoeff(A1:A3,D1:D3,0.9) -> 1
        ZavCorrelationCoeff(A1:A3,D1:D3,) -> 1 | ZavCorrelationCoeff(A1:A3,D1:D3,"x") -> #VALUE!
        ZavCovariance(A:A,D1:D3) -> 2 | ZavCovariance(A1:A3,D1:D4) -> #REF!
        ZavCovariance(A1:A4,D1:D4) -> #REF! | ZavCovarianceP(A1:A4,D:D) -> #REF!
        ZavCovariance({1,2;3,4},{1;2;3;4}) ~ 5/3 | ZavCovariance(A1:A3,E1:E3) -> 0
        ZavCorrelationCoeff(A1:A3,E1:E3) -> #DIV/0! | ZavCovarianceP(A1,B1) -> 0
        ZavCovariance(A1,B1) -> #N/A | ZavCovarianceP(A4:A5,C4:C5) -> #N/A
        ZavCovarianceP(A1:A5,) -> #N/A | ZavCorrelationCoeff(,A1:A5) -> #N/A
        ZavCovariance({1E+308,-1E+308},{1E+308,-1E+308}) -> #NUM!
        ZavCorrelationCoeff({1E+308,-1E+308,0},{1E+308,-1E+308,0}) ~ 1)");
  });
}

TEST_CASE("covariance and correlation matrices in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    // One row is one variable; so is one value. A gap takes its row from the pairs of its variable
    // alone, or from all.
    CheckFormulas(engine, R"(
        ZavCovarianceMatrix(,1,,A1:A5,B1:B5) -> 2.5,3;3,5.3;
        ZavCovarianceMatrix(0,0,0,A1:A5,B1:B5) -> 2,2.4;2.4,4.24;
        ZavCovarianceMatrix(1,0.5,0,A1:A5,B1:B5) -> 2.5,2;2,2.5;
        ZavCorrelationMatrix(,,,A1:A3,E1:E3,D1:D3) -> 1,#DIV/0!,1;#DIV/0!,#DIV/0!,#DIV/0!;1,#DIV/0!,1;
        ZavCovarianceMatrix(0,1,0,{1,2,3},D1:D3) -> 1,2;2,4; | ZavCovarianceMatrix(0,0,0,5) -> 0;
        ZavCovarianceMatrix(0,1,0,A:C) -> 2.5,3,1;3,5.3,1.66666666666667;1,1.66666666666667,1.33333333333333;
        ZavCovarianceMatrix(0,1,1,A:C) -> 1,1,1;1,2.33333333333333,1.66666666666667;1,1.66666666666667,1.33333333333333;
        ZavCovarianceMatrix(0,1,0,A1:A5,E1:E3) -> 2.5,0;0,0;
        ZavCovarianceMatrix(0,1,1,A1:A5,E1:E3) -> 1,0;0,0;
        ZavCovarianceMatrix(0,1,1,A1:A3,D1:D4) -> 1,2;2,4;
        ZavCovarianceMatrix(0,1,0,A1,B1:B5) -> #N/A,#N/A;#N/A,5.3;
        ZavCovarianceMatrix(0,1,0) -> #N/A | ZavCorrelationMatrix(0,1,0,,) -> #N/A
        ZavCorrelationMatrix("x",1,0,A1:B5) -> #VALUE!)");
    // The same variables, however they are given.
    for (const char* data : {"A1:B5", "A:B", ",A:A,,B1:B5", "(A1:A5,B1:B5)", "A:A,,,,,,,,B:B",
                             "{1,2;2,1;3,4;4,3;5,7}", "A1:A5,{2;1;4;3;7}", "+A1:B5"})
      CheckFormulas(engine, "2.5,3;3,5.3;", std::string("ZavCovarianceMatrix(0,1,0,") + data + ")");
    // An error takes the place of everything, also from a row that another gap drops.
    CheckFormulas(engine, "#REF!", R"(
        ZavCorrelationMatrix(0,0,0,A1:A4,C1:C4,D1:D4) | ZavCorrelationMatrix(0,0,0,D1:D4,C1:C4)
        ZavCorrelationMatrix(0,0,1,A1:A4,C1:C4,D1:D4) | ZavCorrelationMatrix(0,0,1,D1:D4,C1:C4))");
  });
}

TEST_CASE("whole columns are a variable each, with one used row or none") {
  InEachHost(BookOf({"A: 4", "B: 6"}), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavCovarianceMatrix(0,0,0,A:C) -> 0,0,#N/A;0,0,#N/A;#N/A,#N/A,#N/A;
        ZavCovarianceMatrix(0,0,0,A1:B4) -> 0,0;0,0;
        ZavCovarianceMatrix(0,0,0,D:E) -> #N/A,#N/A;#N/A,#N/A;
        ZavCovarianceMatrix(0,0,0,A1:C1) -> 1; | ZavCovarianceMatrix(0,0,0,1:1) -> 1;)");
  });
}

TEST_CASE("a whole sheet is read, but its columns are no variables; 4,097 are too many") {
  CheckFormulas(*ServingAddIn(SmallBook()), R"(ZavCorrelationMatrix(0,1,0,1:1048576) -> #VALUE!
      ZavCovarianceMatrix(0,1,0,A8:FAN9,A8:A9) -> #VALUE!
      ZavEigenvalues(A1:XFD1048576) -> #REF! | ZavPCAScores(A1:XFD1048576) -> #REF!
      ZavSum(A1:XFD1048576) -> 76 | ZavCount(1:1048576) -> 23)");
}

TEST_CASE("eigen-analysis in a sheet") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    for (const char* matrix :
         {"F1:G2", "F:G", "{2,1;1,2}", "+F1:G2", "ZavCovarianceMatrix(0,0,0,F1:G2)*0+F1:G2"}) {
      const std::string in = std::string("(") + matrix + ")";
      CheckFormulas(
          engine, "ROUND(ZavEigenvalues" + in + ",12) -> 3;1; | ROUND(ABS(ZavEigenvectors" + in +
                      "),6) -> 0.707107,0.707107;0.707107,0.707107; | ROUND(ABS(" + "ZavEigendata" +
                      in + "),6) -> 3,0.707107,0.707107;1,0.707107,0.707107;");
      const std::string row = "INDEX(ZavEigenvectors" + in;
      CheckFormulas(engine, "ROUND(ZavSum(" + row + ",1,0)*" + row + ",2,0)),12) -> 0");
    }
    CheckFormulas(engine, R"(
        ZavEigenvalues(F1) -> 2; | ABS(ZavPCAScores(A1:A5)) -> 1;2;3;4;5; | ABS(ZavPCAScores({3,4})) -> 5;)");
    for (const std::string function : {"ZavEigenvalues(", "ZavEigenvectors(", "ZavEigendata("}) {
      CheckFormulas(engine, "#N/A",
                    function + "A1:C2) | " + function + "A1:A2) | " + function + "A2:B3) | " +
                        function + "{1,0.5;0.50000000000000011,1})");
      CheckFormulas(engine, "#VALUE!", function + "{1,2,3;1,\"x\",3})");
    }
    for (const std::string function : {"ZavEigenvalues(", "ZavPCAScores("}) {
      for (const char* matrix : {"C3:C4", "C4:C5", "{1,TRUE;1,1}", "", "H:H", "(F1:G1,F2:G2)"})
        CheckFormulas(engine, "#VALUE!", function + matrix + ")");
      CheckFormulas(engine, function + "D3:D4) -> #REF! | " + function +
                                "{#N/A,1;1,#DIV/0!}) -> #N/A | " + function +
                                "{#DIV/0!,1;1,#N/A}) -> #DIV/0! | " + function + "#REF!) -> #REF!");
    }
  });
}

TEST_CASE("matrices fill the range of their array formula and follow every edit") {
  zavhost::Workbook book = SmallBook();
  // An association matrix inside another function is whole, whatever the calling range.
  AddFormulas(book, R"(
      K1:L3 = ROUND(ABS(ZavEigendata(F1:G2)),12) | {K6} = ROUND(ZavEigenvalues(F1:G2),12)
      K8:L8 = ROUND(ABS(ZavPCAScores(A1:A3)),12) | K10:M12 = ZavCovarianceMatrix(0,1,0,A1:B5)
      K14:L15 = ZavEigenvalues(A1:C2)
      I1:J3 = ROUND(ZavEigenvalues(ZavCovarianceMatrix(0,1,0,F1:G2)),12))");
  InEachHost(book, [](zavhost::Engine& engine) {
    CHECK(engine.Recalculate().errors.empty());
    CheckCells(engine, R"(
        K1:L3 -> 3,0.707106781187;1,0.707106781187;#N/A,#N/A; | K6 -> 3; | K8:L8 -> 1,#N/A;
        K10:M12 -> 2.5,3,#N/A;3,5.3,#N/A;#N/A,#N/A,#N/A; | K14:L15 -> #N/A,#N/A;#N/A,#N/A;
        I1:J3 -> 1,#N/A;0,#N/A;#N/A,#N/A;)");
    Edit(engine, "G1 = 2 | F2 = 2 | A5 = gone");
    engine.Recalculate();
    CheckCells(engine, "K1:K2 -> 4;0; | K10:L11 -> 1.66666666666667,1;1,5.3;");
    Edit(engine, "G1 = 2.5");
    engine.Recalculate();
    CheckCells(engine, "K1 -> #N/A;");
  });
}

}  // namespace zavrel::tests
