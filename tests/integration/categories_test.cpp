// Categories, stacked and multi-range data as a workbook's user meets them.
#include <doctest/doctest.h>

#include <string>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::ErrorCode;
using zavhost::Value;

/// Sheet "Data": categories in A1:A6, values in B1:B6, a second variable in C1:C6. Sheet "Other":
/// 7, 8, 9 in A1:A3.
zavhost::Workbook Book() {
  zavhost::Workbook book;
  zavhost::Sheet& data = book.sheets.emplace_back(u"Data");
  const Value categories[] = {Value(u"North"), Value(u"north "),      Value(),
                              Value(u"South"), Value(ErrorCode::kNA), Value(u"a\nb")};
  const Value second[] = {Value(10.0), Value(9.0), Value(10.0),
                          Value(true), Value(9.0), Value(u"9")};
  for (int row = 0; row < 6; ++row) {
    data.Set(row, 0, Value(categories[row]));
    data.Set(row, 1, Value(row + 1.0));
    data.Set(row, 2, Value(second[row]));
  }
  zavhost::Sheet& other = book.sheets.emplace_back(u"Other");
  for (int row = 0; row < 3; ++row) other.Set(row, 0, Value(row + 7.0));
  return book;
}

void AddFormula(zavhost::Workbook& book, const zavhost::CellRange& range, const char16_t* formula) {
  const auto text = static_cast<std::uint32_t>(book.formula_texts.size());
  const zavhost::CellAddress top_left{0, range.first_row, range.first_column};
  book.formula_texts.emplace_back(formula);
  const bool one = range.rows() == 1 && range.columns() == 1;
  book.formulas.push_back(
      {top_left, text, top_left, one ? std::nullopt : std::optional<zavhost::CellRange>(range)});
}

/// Formulas and what cells show for them.
struct Expected {
  const char16_t* formula;
  const char* shown;
};
void CheckAll(zavhost::Engine& engine, std::initializer_list<Expected> cases) {
  for (const auto& [formula, shown] : cases) {
    CAPTURE(zavhost::Utf8FromUtf16(formula));
    CHECK(Shown(engine, formula) == shown);
  }
}

}  // namespace

TEST_CASE("categories counted, named and compared") {
  auto engine = ServingAddIn(Book());
  CheckAll(*engine, {
                        {u"ZavCountCategories(A1:A6)", "3"},
                        {u"ZavCountCategories(A:A)", "3"},
                        {u"ZavCountCategories(Z1:Z9)", "0"},
                        {u"ZavCountCategories(C1:C6)", "3"},
                        {u"ZavCountCategories({1,\"1\",\"x\";TRUE,\"true\",\"\"})", "3"},
                        {u"ZavCountCategories((A1:A2,C1:C3))", "3"},
                        {u"ZavCategoryOccurrenceCount(A1:A6,\"NORTH\")", "2"},
                        {u"ZavCategoryOccurrenceCount(A1:A6,\" A B\")", "1"},
                        {u"ZavCategoryOccurrenceCount(A1:A6,\"East\")", "0"},
                        {u"ZavCategoryOccurrenceCount(A1:A6,A3)", "0"},
                        {u"ZavCategoryOccurrenceCount(A1:A6,A5)", "#VALUE!"},
                        {u"ZavCategoryOccurrenceCount(A1:A6,)", "#VALUE!"},
                        {u"ZavCategoryOccurrenceCount(C1:C6,9)", "3"},
                        {u"ZavCategoryOccurrenceCount(C:C,C4)", "1"},
                        {u"ZavCategoryNames(A1:A6)", "North;South;a b;"},
                        {u"ZavCategoryNames(C1:C6)", "10;9;TRUE;"},
                        {u"ZavCategoryNames(Z1:Z9)", "#N/A;"},
                        {u"ZavCategoryIndices(A1:A6,\"north\")", "1;"},
                        {u"ZavCategoryIndices(A1:A6,\"East\")", "#N/A"},
                        {u"ZavCategoryNameCompare(\"abc\",\"ABC\")", "TRUE"},
                        {u"ZavCategoryNameCompare(A1,A2)", "TRUE"},
                        {u"ZavCategoryNameCompare(A6,\" A B \")", "TRUE"},
                        {u"ZavCategoryNameCompare(\"Straße\",\"STRAßE\")", "TRUE"},
                        {u"ZavCategoryNameCompare(\"ÉTÉ\",\"été\")", "TRUE"},
                        {u"ZavCategoryNameCompare(9,\"9\")", "TRUE"},
                        {u"ZavCategoryNameCompare(A1,A4)", "FALSE"},
                        {u"ZavCategoryNameCompare(A1,A3)", "FALSE"},
                        {u"ZavCategoryNameCompare(A3,A1)", "#VALUE!"},
                        {u"ZavCategoryNameCompare(\" \",\" \")", "#VALUE!"},
                        {u"ZavCategoryNameCompare(A1,A5)", "#VALUE!"},
                    });
  CloseClean(*engine);
}

TEST_CASE("names and positions over more cells than there are") {
  zavhost::Workbook book = Book();
  AddFormula(book, {0, 4, 4, 4}, u"ZavCategoryNames(A1:A6)");             // E1:E5
  AddFormula(book, {0, 5, 0, 6}, u"ZavCategoryNames(A1:A6)");             // F1:G1
  AddFormula(book, {1, 5, 2, 6}, u"ZavCategoryIndices(C1:C6,\"9\")");     // F2:G3
  AddFormula(book, {3, 5, 4, 6}, u"ZavCategoryIndices(C1:C6,\"none\")");  // F4:G5
  auto engine = ServingAddIn(std::move(book));
  CHECK(engine->Recalculate().errors.empty());
  CheckAll(*engine, {{u"E1:E5&\"\"", "North;South;a b;#N/A;#N/A;"},
                     {u"F1:G1&\"\"", "North,South;"},
                     {u"F2:G3&\"\"", "2,5;6,#N/A;"},
                     {u"F4:G5&\"\"", "#N/A,#N/A;#N/A,#N/A;"}});
  CloseClean(*engine);

  zavhost::EngineOptions options;
  options.behaviour.caller = zavhost::CallerForm::kMenu;
  zavhost::Engine menu(Book(), std::move(options));
  menu.LoadAddIn(AddInFile());
  menu.Announce(5);
  CheckAll(menu, {{u"ZavCategoryNames(A1:A6)", "#REF!"},
                  {u"ZavCategoryIndices(A1:A6,\"North\")", "#REF!"},
                  {u"ZavCountCategories(A1:A6)", "3"}});
  CloseClean(menu);
}

TEST_CASE("a handle of stacked data in the place of a range") {
  auto engine = ServingAddIn(Book());
  const std::string handle = Shown(*engine, u"ZavDestack(B1:B6,A1:A6,\"NORTH\")");
  CHECK(handle.size() == 11);
  CHECK(handle.starts_with("\x01\x02"));
  CHECK(Shown(*engine, u"ZavDestack(B1:B6,A1:A6,\"NORTH\",,)") == handle);
  CHECK(Shown(*engine, u"ZavDestack(B1:B6,A1:A6,\"NORTH\",C1:C6,9)") != handle);
  CheckAll(
      *engine,
      {
          {u"ZavSum(ZavDestack(B1:B6,A1:A6,\"NORTH\"))", "3"},
          {u"ZavMean(ZavDestack(B:B,A:A,A1))", "1.5"},
          {u"ZavSum(ZavDestack(B1:B6,A1:A6,A1,C1:C6,9),100,ZavDestack(B1:B6,C1:C6,10))", "106"},
          {u"ZavPercentile(ZavDestack(B1:B6,C1:C6,\"9\"),1)", "6"},
          {u"ZavPairCount(ZavDestack(B1:B6,C1:C6,9),B1:B6)", "3"},
          {u"ZavCountCellsByType(ZavDestack(B1:B6,C1:C6,9),0)", "3"},
          {u"ZavGetCellValues(ZavDestack(A1:A6,C1:C6,10),2)", "North;"},
          {u"ZavCategoryNames(ZavDestack(A1:A6,C1:C6,9))", "a b;north;"},
          {u"ZavCountCategories(ZavDestack(A1:A6,C1:C6,TRUE))", "1"},
          {u"ZavMean(ZavDestack({1;2;3},{\"a\";\"b\";\"A\"},\"a\"))", "2"},
          {u"ZavSum(ZavDestack(ZavDestack(B1:B6,C1:C6,9),{\"x\";\"y\";\"x\"},\"x\"))", "8"},
          {u"ZavSum(ZavDestack(ZavMulti(0,B1:B2,Other!A1:A3),{1;2;1;2;1},1))", "17"},
          {u"ZavSum(ZavMulti(0,ZavDestack(B1:B6,C1:C6,10),B6))", "10"},
          {u"ZavCount(ZavDestack(B1:B6,A1:A6,\"East\"))", "0"},
          {u"ZavCount(ZavDestack(B1:B6,A1:A6,A3))", "0"},
          {u"ZavMean(\"\u0001\u0002000000005\")", "#REF!"},
          // What a text result has for an error.
          {u"ZavDestack(B1:B6,A1:A6)", "#NUM!"},
          {u"ZavDestack(,A1:A6,\"x\")", "#NUM!"},
          {u"ZavDestack(B1:B6,A1:A6,A5)", "#NUM!"},
          {u"ZavDestack(B1:B6,A1:A6,\"x\",C1:C6)", "#NUM!"},
          {u"ZavDestack(B1:B6,A1:A6,\"x\",,9)", "#NUM!"},
      });
  // A handle of an earlier session.
  engine->workbook().sheets[0].Set(0, 9, Value(zavhost::Utf16FromUtf8(handle)));
  CHECK(Shown(*engine, u"ZavSum(J1)") == "3");
  CloseClean(*engine);
  engine->LoadAddIn(AddInFile());
  engine->Announce(5);
  CHECK(Shown(*engine, u"ZavSum(J1)") == "#REF!");
  CHECK(Shown(*engine, u"ZavSum(ZavDestack(Other!A1:A3,Other!A1:A3,8))") == "8");
  CHECK(Shown(*engine, u"ZavSum(J1)") == "#REF!");
  CHECK(Shown(*engine, u"ZavSum(ZavDestack(B1:B6,A1:A6,\"NORTH\"))") == "3");
  CloseClean(*engine);
}

TEST_CASE("handles in cells follow every edit, whatever is calculated first") {
  zavhost::Workbook book = Book();
  AddFormula(book, {0, 4, 0, 4}, u"ZavSum(H1)");                    // E1, before its handle
  AddFormula(book, {1, 4, 1, 4}, u"ZavSum(H1,1000)");               // E2
  AddFormula(book, {0, 7, 0, 7}, u"ZavDestack(B1:B6,I1:I6,$J$1)");  // H1
  for (int row = 0; row < 6; ++row)                                 // I1:I6, after all of them
    AddFormula(book, {row, 8, row, 8}, u"IF(ZavIsBlank(A1),\"none\",A1)");
  for (std::size_t row = 0; row < 6; ++row) book.formulas[3 + row].origin = {0, 0, 8};
  book.sheets[0].Set(0, 9, Value(u"North"));
  auto engine = ServingAddIn(std::move(book));
  zavhost::Sheet& sheet = engine->workbook().sheets[0];
  const auto sums = [&] {
    engine->Recalculate();
    return Shown(*engine, u"E1&\"/\"&E2");
  };
  CHECK(sums() == "3/1003");
  sheet.Set(0, 1, Value(5.0));
  CHECK(sums() == "7/1007");
  sheet.Set(3, 0, Value(u"NORTH"));
  CHECK(sums() == "11/1011");
  sheet.Set(0, 9, Value(u"none"));
  CHECK(sums() == "3/1003");
  sheet.Set(0, 9, Value(u"North"));
  CHECK(sums() == "11/1011");
  CloseClean(*engine);
}

TEST_CASE("several ranges as one") {
  zavhost::Workbook book = Book();
  AddFormula(book, {0, 4, 5, 4}, u"ZavMulti(0,(B1:C2,B6),Other!A1)");  // E1:E6
  AddFormula(book, {0, 5, 5, 5}, u"ZavMulti(1,(B1:C2,B6),Other!A1)");  // F1:F6
  AddFormula(book, {0, 6, 6, 6}, u"ZavMulti(1,Other!2:3,{1,2;3,4})");  // G1:G7
  auto engine = ServingAddIn(std::move(book));
  for (const std::string& error : engine->Recalculate().errors) FAIL_CHECK(error);
  CheckAll(*engine, {{u"E1:E6&\"\"", "1;10;2;9;6;7;"},
                     {u"G1:G7&\"\"", "8;9;1;3;2;4;#N/A;"},
                     {u"F1:F6&\"\"", "1;2;10;9;6;7;"},
                     {u"ZavSum(ZavMulti(0,B1:B6,Other!A:A))", "45"},
                     {u"ZavSum(ZavMulti(1,B:B,Other!A:A))", "45"},
                     {u"ZavCount(ZavMulti(0,B1:B6,ZavMulti(0,Other!A1:A3,{1,2})))", "11"},
                     {u"ZavMedian(ZavMulti(1,(B1:B2,B4:B6),Other!A1:A3),0)", "5.5"},
                     {u"ZavCountCategories(ZavMulti(0,A1:A6,{\"NORTH\",\"West\"}))", "4"},
                     {u"ZavSum(ZavMulti(0,5))", "5"},
                     {u"ZavMulti(1,{1,2;3,4},{5,6;7,8})", "1;3;2;4;5;7;6;8;"},
                     {u"ZavMulti(2,B1:B6)", "#VALUE!"},
                     {u"ZavMulti(-1,B1:B6)", "#VALUE!"},
                     {u"ZavMulti(\"x\",B1:B6)", "#VALUE!"},
                     {u"ZavMulti(0,)", "#VALUE!"},
                     {u"ZavMulti(0,A1:B700000,A1)", "#VALUE!"},
                     {u"ZavMulti(0,\"\u0001\u0002000000005\")", "#REF!"}});
  CloseClean(*engine);
}

}  // namespace zavrel::tests
