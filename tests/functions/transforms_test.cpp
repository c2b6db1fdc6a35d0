// Variables made of others: what the cells show.
#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <string>

#include "functions/open_add_in.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT XLOPER12* ZavrelStandardize(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT std::int16_t ZavrelStandardizeVB(double, double, double, double*);
ZAV_EXPORT XLOPER12* ZavrelLn(const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelPower(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelLog(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelDummy(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelInteraction(const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                       const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                       const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                       const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                       const XLOPER12*, const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

using Piece = const XLOPER12*;

/// "1;;#15;" of a column: errors by their code, empty cells as nothing.
std::string Column(const XLOPER12& result) {
  REQUIRE((result.xltype & xltypeMask) == xltypeMulti);
  REQUIRE(result.val.array.columns == 1);
  std::string shown;
  for (std::int32_t i = 0; i < result.val.array.rows; ++i) {
    const XLOPER12& cell = result.val.array.lparray[i];
    char text[32] = "?";
    if (cell.xltype == xltypeNum) std::snprintf(text, sizeof text, "%.12g", cell.val.num);
    if (cell.xltype == xltypeErr) std::snprintf(text, sizeof text, "#%d", cell.val.err);
    if (cell.xltype == xltypeNil) text[0] = '\0';
    shown += std::string(text) + ";";
  }
  return shown;
}

std::string Power(Piece range, double exponent) {
  return Column(*ZavrelPower(range, Argument(Cell(exponent))));
}
std::string Log(Piece range, double base) {
  return Column(*ZavrelLog(range, Argument(Cell(base))));
}
std::string Dummy(Piece range, const Cell& category) {
  return Column(*ZavrelDummy(range, Argument(category)));
}
const XLOPER12& Interaction(Piece range1, Piece text1, Piece range2, Piece text2,
                            Piece range3 = nullptr, Piece text3 = nullptr, Piece range7 = nullptr,
                            Piece text7 = nullptr) {
  return *ZavrelInteraction(range1, text1, range2, text2, range3, text3, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, range7, text7);
}

}  // namespace

TEST_CASE("standardizing and logarithms of one value") {
  OpenAddIn add_in;
  const Argument three(Cell(3.0));
  const Argument zero(Cell(0.0));
  const Argument largest(Cell(std::numeric_limits<double>::max()));
  const Argument smallest(Cell(std::numeric_limits<double>::denorm_min()));
  CHECK(Number(*ZavrelStandardize(Argument(Cell(5.0)), three, Argument(Cell(4.0)))) == 0.5);
  CHECK(Error(*ZavrelStandardize(three, three, zero)) == xlerrDiv0);
  CHECK(Error(*ZavrelStandardize(largest, three, zero)) == xlerrDiv0);
  CHECK(Error(*ZavrelStandardize(largest, three, smallest)) == xlerrNum);
  CHECK(Error(*ZavrelStandardize(largest, three, nullptr)) == xlerrValue);

  CHECK(Number(*ZavrelLn(Argument(Cell(std::exp(1.0))))) == doctest::Approx(1).epsilon(1e-15));
  CHECK(Number(*ZavrelLn(smallest)) == doctest::Approx(-1074 * std::log(2.0)).epsilon(1e-15));
  CHECK(Error(*ZavrelLn(zero)) == xlerrNum);
  CHECK(Error(*ZavrelLn(Argument(Cell(-1.0)))) == xlerrNum);
  CHECK(Error(*ZavrelLn(nullptr)) == xlerrValue);
}

TEST_CASE("a macro gets the quotient and a status") {
  double result = 7;
  CHECK(ZavrelStandardizeVB(5, 3, 4, &result) == 0);
  CHECK(result == 0.5);
  CHECK(ZavrelStandardizeVB(5, 3, 0, &result) == 10);
  CHECK(std::isinf(result));
  CHECK(ZavrelStandardizeVB(3, 3, 0, &result) == 10);
  CHECK(std::isnan(result));
  CHECK(ZavrelStandardizeVB(1e308, -1e308, 1e-5, &result) == 4);
  CHECK(ZavrelStandardizeVB(3, 3, 1e-300, &result) == 0);  // earlier overflows are forgotten
  CHECK(result == 0);
  CHECK(ZavrelStandardizeVB(1, 2, 3, nullptr) == -11005);
}

TEST_CASE("each cell's power and logarithm, and each cell's failure") {
  OpenAddIn add_in;
  const Argument cells(2, 3, {4.0, Cell(), u"4", true, ErrorCell{xlerrNA}, -8.0});
  CHECK(Power(cells, 0.5) == "2;;#15;#15;#42;#36;");
  CHECK(Power(cells, 2) == "16;;#15;#15;#42;64;");
  CHECK(Power(cells, 1e6) == "#36;;#15;#15;#42;#36;");
  CHECK(Power(Argument(2, 1, {0.0, 2.0}), -1) == "#36;0.5;");
  CHECK(Power(Argument(Cell(9.0)), 0.5) == "3;");

  const Argument positive(1, 5, {100.0, 0.0, 1.0, ErrorCell{xlerrDiv0}, u""});
  CHECK(Log(positive, 10) == "2;#36;0;#7;#15;");
  CHECK(Log(positive, -10) == "#15;#15;#15;#7;#15;");
  CHECK(Log(positive, 1) == "#36;#36;#36;#7;#15;");
  CHECK(Log(cells, 2) == "2;;#15;#15;#42;#36;");
  CHECK(Log(Argument(2, 1, {100.0, 0.5}), 0.5).substr(0, 8) == "-6.64385");

  const Argument word(Cell(u"x"));
  for (const Piece refused : {Piece(word), Piece(nullptr)}) {
    CHECK(Error(*ZavrelPower(cells, refused)) == xlerrValue);
    CHECK(Error(*ZavrelLog(cells, refused)) == xlerrValue);
  }
  CHECK(Error(*ZavrelPower(Reference(Area(2, 1, 0, 0)), Argument(Cell(1.0)))) == xlerrRef);
}

TEST_CASE("an indicator of a category, whatever its letter case") {
  OpenAddIn add_in;
  const Argument cells(1, 6, {u"Male", u"male", u"Female", Cell(), ErrorCell{xlerrNA}, true});
  CHECK(Dummy(cells, u"MALE") == "1;1;0;;#42;#15;");
  CHECK(Dummy(cells, u"") == "0;0;0;;#42;#15;");
  CHECK(Dummy(Argument(2, 1, {u"Male ", u""}), u"male") == "0;0;");  // nothing is trimmed
  CHECK(Dummy(Argument(4, 1, {u"\u00C9T\u00C9", u"\u0442\u0423\u043B\u0410", u"STRASSE", u"ETE"}),
              u"\u00E9t\u00E9") == "1;0;0;0;");
  CHECK(Dummy(Argument(2, 1, {u"\u0442\u0423\u043B\u0410", u"\u0422"}),
              u"\u0422\u0423\u041B\u0410") == "1;0;");
  CHECK(Dummy(Argument(2, 1, {u"\U00010428", u"\U00010429"}), u"\U00010400") == "1;0;");

  add_in.excel.texts_of_numbers = {{2, u"2"}, {12, u"1,2E1"}, {0, u"0"}};
  const Argument numbers(5, 1, {2.0, 12.0, u"2", 2.0, 0.0});
  CHECK(Dummy(numbers, u"2") == "1;0;1;1;0;");
  CHECK(Dummy(numbers, 2.0) == "1;0;1;1;0;");  // the category's text is the host's as well
  CHECK(Dummy(numbers, u"1,2e1") == "0;1;0;0;0;");
  CHECK(Dummy(numbers, Cell()) == "0;0;0;0;0;");
  add_in.excel.text_code = xlretUncalced;
  CHECK(Error(*ZavrelDummy(numbers, Argument(Cell(u"2")))) == xlerrRef);
  add_in.excel.text_code = xlretSuccess;

  CHECK(Number(*ZavrelDummy(cells, nullptr)) == 0);
  CHECK(Error(*ZavrelDummy(Reference(Area(2, 1, 0, 0)), nullptr)) == xlerrRef);
  CHECK(Error(*ZavrelDummy(cells, Argument(Cell(ErrorCell{xlerrNum})))) == xlerrValue);
  CHECK(add_in.excel.values_out == 0);
}

TEST_CASE("the host is asked about a number once, not in every cell") {
  OpenAddIn add_in;
  std::vector<Cell> cells;
  for (int row = 0; row < 3000; ++row) cells.emplace_back(row % 3 + 0.0);
  add_in.excel.texts_of_numbers = {{0, u"0"}, {1, u"1"}, {2, u"2"}};
  const Argument codes(3000, 1, cells);
  const Argument two(Cell(u"2"));
  add_in.excel.conversions = 0;
  const XLOPER12& column = *ZavrelDummy(codes, two);
  CHECK(add_in.excel.conversions == 3);
  double sum = 0;
  for (int row = 0; row < 3000; ++row) sum += column.val.array.lparray[row].val.num;
  CHECK(sum == 1000);
  CHECK(column.val.array.lparray[2].val.num == 1);
}

TEST_CASE("a product of indicators and numbers") {
  OpenAddIn add_in;
  const Argument none(1, 1, {u""});
  const Argument b(Cell(u"b"));
  const Argument groups(1, 4, {u"a", u"B", u"b", u"c"});
  const Argument numbers(4, 1, {10.0, 20.0, 30.0, 40.0});
  CHECK(Column(Interaction(groups, b, numbers, none)) == "0;20;30;0;");
  CHECK(Column(Interaction(numbers, none, numbers, none, numbers, nullptr)) ==
        "1000;8000;27000;64000;");
  CHECK(Column(Interaction(groups, b, groups, Argument(Cell(u"c")))) == "0;0;0;0;");
  CHECK(Column(Interaction(numbers, none, groups, b, nullptr, b, groups, b)) == "0;20;30;0;");
  CHECK(Column(Interaction(groups, none, numbers, none)) == "#15;#15;#15;#15;");
  add_in.excel.texts_of_numbers = {{10, u"10"}, {20, u"20"}, {30, u"30"}, {40, u"40"}};
  CHECK(Column(Interaction(numbers, Argument(Cell(30.0)), numbers, none)) == "0;0;30;0;");
  const Argument large(4, 1, {1e308, -1e308, 0.0, 1.0});
  CHECK(Column(Interaction(large, none, numbers, none)) == "#36;#36;0;40;");
}

TEST_CASE("the leftmost variable that fails decides its row") {
  OpenAddIn add_in;
  const Argument none(1, 1, {u""});
  const Argument a(Cell(u"a"));
  const Argument left(5, 1, {Cell(), ErrorCell{xlerrNA}, 1.0, true, 0.0});
  const Argument right(5, 1, {ErrorCell{xlerrDiv0}, Cell(), u"text", u"a", ErrorCell{xlerrNull}});
  CHECK(Column(Interaction(left, none, right, none)) == ";#42;#15;#15;#0;");
  CHECK(Column(Interaction(right, none, left, none)) == "#7;;#15;#15;#0;");
  CHECK(Column(Interaction(right, a, left, none)) == "#7;;0;#15;#0;");
}

TEST_CASE("interactions of whole columns, and of what does not go together") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {u"a", u"b", u"a"});
  add_in.excel.SetColumn(0, 1, {1.0, 2.0, 3.0, 4.0, 5.0});
  const Argument none(1, 1, {u""});
  const Argument a(Cell(u"a"));
  const Reference groups(WholeColumns(0, 0));
  const Reference numbers(WholeColumns(1, 1));
  const Reference part(Area(0, 4, 1, 1));
  CHECK(Column(Interaction(groups, a, numbers, none)) == "1;0;3;;;");
  CHECK(Column(Interaction(part, none, groups, a)) == "1;0;3;;;");
  const Reference shorter(Area(0, 2, 1, 1));
  CHECK(Column(Interaction(groups, a, shorter, none)) == "1;0;3;");
  CHECK(Error(Interaction(numbers, none, shorter, none)) == xlerrValue);
  CHECK(Error(Interaction(part, none, shorter, none)) == xlerrValue);
  CHECK(Error(Interaction(groups, a, nullptr, none)) == xlerrValue);
  CHECK(Error(Interaction(groups, nullptr, numbers, none)) == xlerrValue);  // a text is required
  CHECK(Power(numbers, 2) == "1;4;9;16;25;");
  CHECK((ZavrelPower(Reference(WholeColumns(7, 7)), a)->xltype & xltypeErr) != 0);
  const Argument two(Cell(2.0));
  CHECK((ZavrelPower(Reference(WholeColumns(7, 7)), two)->xltype & xltypeMask) == xltypeNil);

  add_in.excel.Set(1, 0, u"A");
  add_in.excel.Set(3, 0, u"a");
  CHECK(Column(Interaction(groups, a, numbers, none)) == "1;2;3;4;;");
  add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(Error(Interaction(groups, a, numbers, none)) == xlerrRef);
  add_in.excel.answer = nullptr;
  CHECK(add_in.excel.values_out == 0);
}

}  // namespace zavrel::tests
