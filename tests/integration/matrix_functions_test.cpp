// Covariance, correlation, eigen-analysis and principal components as a workbook's user meets them.
#include <doctest/doctest.h>

#include <cmath>
#include <fstream>
#include <string>

#include "host/xlsx/xlsx_file.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::ErrorCode;
using zavhost::Value;

/// Columns A to C: 1, 2, 3, 4, 5; 2, 1, 4, 3, 7; 5, 5, 7, empty, text. Column D: 2, 4, 6, #REF!.
/// Column E: 3, 3, 3. F1:G2: 2, 1; 1, 2.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  const auto fill = [&](int column, std::initializer_list<Value> cells) {
    int row = 0;
    for (const Value& cell : cells) sheet.Set(row++, column, cell);
  };
  fill(0, {Value(1.0), Value(2.0), Value(3.0), Value(4.0), Value(5.0)});
  fill(1, {Value(2.0), Value(1.0), Value(4.0), Value(3.0), Value(7.0)});
  fill(2, {Value(5.0), Value(5.0), Value(7.0), Value(), Value(u"8")});
  fill(3, {Value(2.0), Value(4.0), Value(6.0), Value(ErrorCode::kRef)});
  fill(4, {Value(3.0), Value(3.0), Value(3.0)});
  fill(5, {Value(2.0), Value(1.0)});
  fill(6, {Value(1.0), Value(2.0)});
  return book;
}

void AddArrayFormula(zavhost::Workbook& book, const zavhost::CellRange& range,
                     const char16_t* formula) {
  const auto text = static_cast<std::uint32_t>(book.formula_texts.size());
  const zavhost::CellAddress top_left{0, range.first_row, range.first_column};
  book.formula_texts.emplace_back(formula);
  book.formulas.push_back({top_left, text, top_left, range});
}

std::string Shown(zavhost::Engine& engine, const std::string& formula) {
  return tests::Shown(engine, zavhost::Utf16FromUtf8(formula));
}
double Number(zavhost::Engine& engine, const std::string& formula) {
  return tests::Number(engine, zavhost::Utf16FromUtf8(formula));
}

}  // namespace

TEST_CASE("covariance and correlation of two variables in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, "ZavCovariance(A1:A5,B1:B5)") == "3");
  CHECK(Shown(*engine, "ZavCovarianceP(A:A,B:B)") == "2.4");
  CHECK(Number(*engine, "ZavCorrelationCoeff(A1:A5,B1:B5)") ==
        doctest::Approx(12 / std::sqrt(10 * 21.2)).epsilon(1e-14));
  // Ranks 0, 1, 2, 3, 4 and 1, 0, 3, 2, 4; the option's whole part decides.
  for (const char* spearman : {"1", "-0.5", "TRUE"})
    CHECK(Number(*engine, std::string("ZavCorrelationCoeff(A1:A5,B:B,") + spearman + ")") ==
          doctest::Approx(0.8));
  for (const char* pearson : {"0", "0.9", ""})
    CHECK(Shown(*engine, std::string("ZavCorrelationCoeff(A1:A3,D1:D3,") + pearson + ")") == "1");
  CHECK(Shown(*engine, "ZavCorrelationCoeff(A1:A3,D1:D3,\"x\")") == "#VALUE!");
  // Ties: 0, 1, 2 and 0.5, 0.5, 2.
  CHECK(Number(*engine, "ZavCorrelationCoeff(A1:A5,C1:C5,1)") ==
        doctest::Approx(std::sqrt(0.75)).epsilon(1e-14));
  // Where the longer variable goes on there are no pairs, but an error there counts.
  CHECK(Shown(*engine, "ZavCovariance(A:A,D1:D3)") == "2");
  CHECK(Shown(*engine, "ZavCovariance(A1:A3,D1:D4)") == "#REF!");
  CHECK(Shown(*engine, "ZavCovariance(A1:A4,D1:D4)") == "#REF!");
  CHECK(Shown(*engine, "ZavCovarianceP(A1:A4,D:D)") == "#REF!");
  CHECK(Shown(*engine, "ZavCovariance({1,2;3,4},{1;2;3;4})") == Shown(*engine, "5/3"));

  CHECK(Shown(*engine, "ZavCovariance(A1:A3,E1:E3)") == "0");
  CHECK(Shown(*engine, "ZavCorrelationCoeff(A1:A3,E1:E3)") == "#DIV/0!");
  CHECK(Shown(*engine, "ZavCovariance(A1,B1)") == "#N/A");
  CHECK(Shown(*engine, "ZavCovarianceP(A1,B1)") == "0");
  CHECK(Shown(*engine, "ZavCovarianceP(A4:A5,C4:C5)") == "#N/A");
  CHECK(Shown(*engine, "ZavCovarianceP(A1:A5,)") == "#N/A");
  CHECK(Shown(*engine, "ZavCorrelationCoeff(,A1:A5)") == "#N/A");
  CHECK(Shown(*engine, "ZavCovariance({1E+308,-1E+308},{1E+308,-1E+308})") == "#NUM!");
  CHECK(Number(*engine, "ZavCorrelationCoeff({1E+308,-1E+308,0},{1E+308,-1E+308,0})") ==
        doctest::Approx(1).epsilon(1e-14));
  CloseClean(*engine);
}

TEST_CASE("covariance and correlation matrices in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, "ZavCovarianceMatrix(,1,,A1:A5,B1:B5)") == "2.5,3;3,5.3;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,A1:A5,B1:B5)") == "2,2.4;2.4,4.24;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(1,0.5,0,A1:A5,B1:B5)") == "2.5,2;2,2.5;");
  CHECK(Shown(*engine, "ZavCorrelationMatrix(,,,A1:A3,E1:E3,D1:D3)") ==
        "1,#DIV/0!,1;#DIV/0!,#DIV/0!,#DIV/0!;1,#DIV/0!,1;");
  // The same variables, however they are given.
  const std::string pair = "ZavCovarianceMatrix(0,1,0,A1:A5,B1:B5)";
  for (const char* data : {"A1:B5", "A:B", ",A:A,,B1:B5", "(A1:A5,B1:B5)", "A:A,,,,,,,,B:B",
                           "{1,2;2,1;3,4;4,3;5,7}", "A1:A5,{2;1;4;3;7}", "+A1:B5"})
    CHECK(Shown(*engine, std::string("ZavCovarianceMatrix(0,1,0,") + data + ")") ==
          Shown(*engine, pair));
  // One row is one variable; so is one value.
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,0,{1,2,3},D1:D3)") == "1,2;2,4;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,5)") == "0;");
  // A gap takes its row from the pairs of its variable alone, or from all.
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,0,A:C)") ==
        "2.5,3,1;3,5.3," + Shown(*engine, "ZavCovariance(B:B,C:C)") + ";1," +
            Shown(*engine, "ZavCovariance(B:B,C:C)") + "," + Shown(*engine, "ZavVariance(C:C)") +
            ";");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,1,A:C)") ==
        Shown(*engine, "ZavCovarianceMatrix(0,1,0,A1:C3)"));
  // Shorter and longer columns; rows that a shorter first one lacks are not looked at listwise.
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,0,A1:A5,E1:E3)") == "2.5,0;0,0;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,1,A1:A5,E1:E3)") == "1,0;0,0;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,1,A1:A3,D1:D4)") == "1,2;2,4;");
  // An error takes the place of everything, also from a row that another gap drops.
  for (const char* listwise : {"0", "1"}) {
    const std::string call = std::string("ZavCorrelationMatrix(0,0,") + listwise;
    CHECK(Shown(*engine, call + ",A1:A4,C1:C4,D1:D4)") == "#REF!");
    CHECK(Shown(*engine, call + ",D1:D4,C1:C4)") == "#REF!");
  }
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,0,A1,B1:B5)") == "#N/A,#N/A;#N/A,5.3;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,1,0)") == "#N/A");
  CHECK(Shown(*engine, "ZavCorrelationMatrix(0,1,0,,)") == "#N/A");
  CHECK(Shown(*engine, "ZavCorrelationMatrix(\"x\",1,0,A1:B5)") == "#VALUE!");
  CHECK(Shown(*engine, "ZavCorrelationMatrix(0,1,0,1:1048576)") == "#REF!");
  CloseClean(*engine);
}

TEST_CASE("an association matrix inside another function is whole, whatever the calling range") {
  zavhost::Workbook book = SmallBook();
  AddArrayFormula(book, {0, 9, 2, 10}, u"ZavEigenvalues(ZavCovarianceMatrix(0,1,0,F1:G2))");
  auto engine = ServingAddIn(std::move(book));
  CHECK(engine->Recalculate().errors.empty());
  CHECK(Shown(*engine, "ROUND(J1:K2,12)") == "1,#N/A;0,#N/A;");
  CloseClean(*engine);
}

TEST_CASE("whole columns are a variable each, with one used row or none") {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  sheet.Set(0, 0, Value(4.0));
  sheet.Set(0, 1, Value(6.0));
  auto engine = ServingAddIn(std::move(book));
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,A:C)") == "0,0,#N/A;0,0,#N/A;#N/A,#N/A,#N/A;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,A1:B4)") == "0,0;0,0;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,D:E)") == "#N/A,#N/A;#N/A,#N/A;");
  // What was given as one row is one variable.
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,A1:C1)") == "1;");
  CHECK(Shown(*engine, "ZavCovarianceMatrix(0,0,0,1:1)") == "1;");
  CloseClean(*engine);
}

TEST_CASE("eigen-analysis in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  for (const char* matrix :
       {"F1:G2", "F:G", "{2,1;1,2}", "+F1:G2", "ZavCovarianceMatrix(0,0,0,F1:G2)*0+F1:G2"}) {
    const std::string in = std::string("(") + matrix + ")";
    CHECK(Shown(*engine, "ROUND(ZavEigenvalues" + in + ",12)") == "3;1;");
    CHECK(Shown(*engine, "ROUND(ABS(ZavEigenvectors" + in + "),6)") ==
          "0.707107,0.707107;0.707107,0.707107;");
    CHECK(Shown(*engine, "ROUND(ABS(ZavEigendata" + in + "),6)") ==
          "3,0.707107,0.707107;1,0.707107,0.707107;");
    const std::string row = "INDEX(ZavEigenvectors" + in;
    CHECK(Number(*engine, "ZavSum(" + row + ",1,0)*" + row + ",2,0))") ==
          doctest::Approx(0).epsilon(1e-12));
    CHECK(Number(*engine, "INDEX(ZavEigendata" + in + ",2,1)") == doctest::Approx(1));
  }
  CHECK(Shown(*engine, "ZavEigenvalues(F1)") == "2;");
  CHECK(Shown(*engine, "ABS(ZavPCAScores(A1:A5))") == "1;2;3;4;5;");
  CHECK(Shown(*engine, "ABS(ZavPCAScores({3,4}))") == "5;");
  for (const char* function : {"ZavEigenvalues", "ZavEigenvectors", "ZavEigendata"}) {
    const auto shown = [&](const char* matrix) {
      return Shown(*engine, std::string(function) + "(" + matrix + ")");
    };
    CHECK(shown("A1:C2") == "#N/A");
    CHECK(shown("A1:A2") == "#N/A");
    CHECK(shown("A2:B3") == "#N/A");
    CHECK(shown("{1,2,3;1,\"x\",3}") == "#VALUE!");
    CHECK(shown("{1,0.5;0.50000000000000011,1}") == "#N/A");
  }
  for (const char* function : {"ZavEigenvalues", "ZavPCAScores"}) {
    const auto shown = [&](const char* matrix) {
      return Shown(*engine, std::string(function) + "(" + matrix + ")");
    };
    CHECK(shown("C3:C4") == "#VALUE!");
    CHECK(shown("C4:C5") == "#VALUE!");
    CHECK(shown("{1,TRUE;1,1}") == "#VALUE!");
    CHECK(shown("") == "#VALUE!");
    CHECK(shown("H:H") == "#VALUE!");
    CHECK(shown("(F1:G1,F2:G2)") == "#VALUE!");
    CHECK(shown("D3:D4") == "#REF!");
    CHECK(shown("{#N/A,1;1,#DIV/0!}") == "#N/A");
    CHECK(shown("{#DIV/0!,1;1,#N/A}") == "#DIV/0!");
    CHECK(shown("#REF!") == "#REF!");
    CHECK(shown("A1:XFD1048576") == "#N/A");
  }
  CloseClean(*engine);
}

TEST_CASE("matrices fill the range of their array formula and follow every edit") {
  zavhost::Workbook book = SmallBook();
  AddArrayFormula(book, {0, 10, 2, 11}, u"ZavEigendata(F1:G2)");
  AddArrayFormula(book, {5, 10, 5, 10}, u"ZavEigenvalues(F1:G2)");
  AddArrayFormula(book, {7, 10, 7, 11}, u"ZavPCAScores(A1:A3)");
  AddArrayFormula(book, {9, 10, 11, 12}, u"ZavCovarianceMatrix(0,1,0,A1:B5)");
  AddArrayFormula(book, {13, 10, 14, 11}, u"ZavEigenvalues(A1:C2)");
  auto engine = ServingAddIn(std::move(book));
  zavhost::Sheet& sheet = engine->workbook().sheets[0];
  const auto at = [&](int row, int column) {
    const Value value = sheet.At(row, column);
    REQUIRE(value.number() != nullptr);
    return std::abs(*value.number());
  };
  const Value kNone(ErrorCode::kNA);
  CHECK(engine->Recalculate().errors.empty());
  CHECK(at(0, 10) == doctest::Approx(3));
  CHECK(at(1, 10) == doctest::Approx(1));
  CHECK(at(1, 11) == doctest::Approx(std::sqrt(0.5)));
  CHECK((sheet.At(2, 10) == kNone && sheet.At(2, 11) == kNone));
  CHECK(at(5, 10) == doctest::Approx(3));
  CHECK(at(7, 10) == doctest::Approx(1));
  CHECK(sheet.At(7, 11) == kNone);
  CHECK((at(9, 10) == 2.5 && at(9, 11) == 3 && at(10, 10) == 3));
  CHECK(at(10, 11) == doctest::Approx(5.3));
  CHECK((sheet.At(9, 12) == kNone && sheet.At(11, 10) == kNone));
  CHECK((sheet.At(13, 10) == kNone && sheet.At(14, 11) == kNone));

  sheet.Set(0, 6, Value(2.0));
  sheet.Set(1, 5, Value(2.0));
  sheet.Set(4, 0, Value(u"gone"));
  engine->Recalculate();
  CHECK(at(0, 10) == doctest::Approx(4));
  CHECK(at(1, 10) == doctest::Approx(0));
  CHECK(at(9, 10) == doctest::Approx(5.0 / 3));
  CHECK(at(10, 11) == doctest::Approx(5.3));
  sheet.Set(0, 6, Value(2.5));
  engine->Recalculate();
  CHECK(sheet.At(0, 10) == kNone);
  CloseClean(*engine);
}

TEST_CASE("the example workbook of the irises gives what R gives") {
  auto engine = ServingAddIn(
      zavhost::ReadXlsx(std::filesystem::path(ZAVREL_SOURCE_DIR) / "examples" / "iris.xlsx"));
  const zavhost::RecalculationReport report = engine->Recalculate();
  CHECK(report.warnings.empty());
  CHECK(report.errors.empty());
  const zavhost::Workbook& book = engine->workbook();
  std::ifstream file(std::filesystem::path(ZAVREL_TEST_DATA) / "iris_reference.csv");
  int compared = 0;
  std::string column;
  double sign = 1;
  for (std::string sheet, cell, number, arbitrary;
       std::getline(file, sheet, ',') && std::getline(file, cell, ',') &&
       std::getline(file, number, ',') && std::getline(file, arbitrary);
       ++compared) {
    CAPTURE(sheet);
    CAPTURE(cell);
    const Value value = book.sheets[*book.FindSheet(zavhost::Utf16FromUtf8(sheet))].At(
        std::stoi(cell.substr(1)) - 1, cell[0] - 'A');
    REQUIRE(value.number() != nullptr);
    // A column whose sign is arbitrary begins with a positive value.
    if (arbitrary == "0") {
      sign = 1;
    } else if (column != sheet + cell[0]) {
      sign = std::copysign(1.0, *value.number());
    }
    column = arbitrary == "0" ? std::string() : sheet + cell[0];
    CHECK(sign * *value.number() == doctest::Approx(std::stod(number)).epsilon(1e-12));
  }
  CHECK(compared == 678);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
