// Percentiles, quartiles, median and mode, and the functions that list cells: what a cell shows.
#include <doctest/doctest.h>

#include <string>

#include "functions/open_add_in.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT XLOPER12* ZavrelPercentile(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelQuartile(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelMedian(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelMode(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelIsBlank(const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelGetCellValues(const XLOPER12*, const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

const XLOPER12& Percentile(const XLOPER12* range, const Cell& p, const Cell& method = {}) {
  return *ZavrelPercentile(range, Argument(p), Argument(method));
}
const XLOPER12& Quartile(const XLOPER12* range, const Cell& quartile, const Cell& method = {}) {
  return *ZavrelQuartile(range, Argument(quartile), Argument(method));
}
const XLOPER12& Median(const XLOPER12* range, const Cell& method = {}) {
  return *ZavrelMedian(range, Argument(method));
}
const XLOPER12& Mode(const XLOPER12* range, const Cell& discrete = {}) {
  return *ZavrelMode(range, Argument(discrete));
}

/// "1,x,TRUE,#42;..." of an array: errors by their code, empty values as nothing.
std::string Shown(const XLOPER12& result) {
  REQUIRE((result.xltype & xltypeMask) == xltypeMulti);
  std::string shown;
  const auto& array = result.val.array;
  for (std::int32_t i = 0; i < array.rows * array.columns; ++i) {
    const XLOPER12& element = array.lparray[i];
    if (element.xltype == xltypeNum) shown += std::to_string(static_cast<int>(element.val.num));
    if (element.xltype == xltypeBool) shown += element.val.xbool != 0 ? "TRUE" : "FALSE";
    if (element.xltype == xltypeErr) shown += "#" + std::to_string(element.val.err);
    if (element.xltype == xltypeStr)
      shown.append(element.val.str + 1, element.val.str + 1 + element.val.str[0]);
    shown += (i + 1) % array.columns == 0 ? ';' : ',';
  }
  return shown;
}

}  // namespace

TEST_CASE("percentiles of the numbers in a range, by every method") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {40.0, u"1", 15.0, Cell(), 50.0, 20.0, true, 35.0});
  const Reference range(Area(0, 7, 0, 0));
  const double at_two_fifths[] = {29, 20, 20, 20, 26, 27.5};
  const double medians[] = {35, 27.5, 20, 35, 35, 35};
  for (int method = 0; method <= 5; ++method) {
    CAPTURE(method);
    const Cell code(method + 0.0);
    CHECK(Number(Percentile(range, 0.4, code)) == doctest::Approx(at_two_fifths[method]));
    CHECK(Number(Median(range, code)) == medians[method]);
    CHECK(Number(Quartile(range, 2.0, code)) == medians[method]);
  }
  // The automatic method: interpolating, until a tie makes the data discrete.
  CHECK(Number(Median(range)) == 27.5);
  CHECK(Number(*ZavrelMedian(range, nullptr)) == 27.5);
  add_in.excel.Set(2, 0, 20.0);
  CHECK(Number(Median(range)) == 35);
  CHECK(Number(Median(range, 4.9)) == 35);  // cut to 4
}

TEST_CASE("percentiles that there are not") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, 2.0, 3.0, 4.0});
  const Reference range(Area(0, 3, 0, 0));
  for (const Cell& p : {Cell(-1e-9), Cell(1.0000001), Cell(ErrorCell{xlerrDiv0})})
    CHECK(Error(Percentile(range, p)) == xlerrValue);
  CHECK(Error(*ZavrelPercentile(range, nullptr, nullptr)) == xlerrValue);
  for (const double method : {-2.0, 6.0, 65536.0, 1e10})
    CHECK(Error(Median(range, method)) == xlerrValue);
  CHECK(Error(Percentile(nullptr, 0.5)) == xlerrValue);
  CHECK(Error(Mode(nullptr)) == xlerrNA);
  CHECK(Error(Median(Reference(Area(2, 1, 0, 0)))) == xlerrRef);
}

TEST_CASE("the mode by each reading of the data is kept apart, and follows an edit") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {7.0, 1.0, 6.0, 1.0, 5.0});
  const Reference range(Area(0, 4, 0, 0));
  for (int round = 0; round < 2; ++round) {
    CHECK(Number(Mode(range, 0.0)) == 6);
    CHECK(Number(Mode(range, true)) == 1);
    CHECK(Number(Mode(range)) == 1);
  }
  add_in.excel.Set(1, 0, 8.0);
  CHECK(Number(Mode(range)) == Number(Mode(range, 0.0)));
  CHECK(Number(Mode(range, 1.0)) == 1);  // all once: the smallest
}

TEST_CASE("blank is what shows nothing but white space") {
  OpenAddIn add_in;
  const auto is_blank = [](const Cell& cell) {
    const XLOPER12& result = *ZavrelIsBlank(Argument(cell));
    REQUIRE((result.xltype & xltypeMask) == xltypeBool);
    return result.val.xbool != 0;
  };
  for (const char16_t* text : {u"", u" ", u"\t\n\v\f\r \u0085\u00A0\u1680",
                               u"\u2000\u2005\u200A\u2028\u2029\u202F\u205F\u3000"}) {
    CHECK(is_blank(text));
  }
  CHECK(is_blank(Cell()));
  // Next to the white space of Unicode: a control, a zero-width space, a Braille blank.
  for (const char16_t* text : {u"0", u"  x", u"x ", u"\x0E", u"\u200B", u"\u2800"})
    CHECK(!is_blank(text));
  CHECK(Error(*ZavrelIsBlank(nullptr)) == xlerrValue);
  CHECK(Error(*ZavrelIsBlank(Argument(Cell(ErrorCell{xlerrNA})))) == xlerrValue);
}

TEST_CASE("the cells of a class fill the calling range") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, u"a", Cell(), true, ErrorCell{xlerrDiv0}, 2.0});
  const Reference range(Area(0, 5, 0, 0));
  const auto shown = [](const XLOPER12* cells, double code) {
    return Shown(*ZavrelGetCellValues(cells, Argument(Cell(code))));
  };
  add_in.excel.caller = Area(0, 3, 5, 5);
  CHECK(shown(range, 1) == "1;2;#42;#42;");
  CHECK(shown(range, 3) == "a;TRUE;#7;#42;");
  CHECK(shown(range, 4) == ";#42;#42;#42;");
  CHECK(shown(range, 0) == "1;a;;TRUE;");  // no more room
  add_in.excel.caller = Area(9, 10, 1, 2);
  CHECK(shown(range, 2) == "1,a;TRUE,#7;");
  CHECK(shown(Reference(WholeColumns(0, 0)), 4) == ",#42;#42,#42;");
  CHECK(shown(nullptr, 0) == ",#42;#42,#42;");  // an omitted argument is one blank cell

  const auto result = [&](const XLREF12& caller) {
    add_in.excel.caller = caller;
    const XLOPER12& array = *ZavrelGetCellValues(range, Argument(Cell(1.0)));
    return std::pair(array.val.array.rows, array.val.array.columns);
  };
  CHECK(result(Area(0, 65535, 0, 0)) == std::pair(65535, 1));
  CHECK(result(Area(3, 3, 0, 256)) == std::pair(1, 256));
}

TEST_CASE("cells of a class that cannot be listed") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, 2.0});
  const Reference range(Area(0, 1, 0, 0));
  const Argument numbers(Cell(1.0));
  CHECK(Error(*ZavrelGetCellValues(range, numbers)) == xlerrRef);  // called from no cell
  add_in.excel.caller = Area(0, 3, 5, 5);
  for (const double code : {-1.0, 5.0, 4e9})
    CHECK(Error(*ZavrelGetCellValues(range, Argument(Cell(code)))) == xlerrValue);
  CHECK(Error(*ZavrelGetCellValues(range, nullptr)) == xlerrValue);

  add_in.excel.caller_code = xlretUncalced;
  CHECK(Error(*ZavrelGetCellValues(range, numbers)) == xlerrRef);
  add_in.excel.caller_code = xlretSuccess;
  add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(Error(*ZavrelGetCellValues(range, numbers)) == xlerrRef);
  CHECK(Error(Median(range)) == xlerrRef);
  add_in.excel.answer = nullptr;
  CHECK(Shown(*ZavrelGetCellValues(range, numbers)) == "1;2;#42;#42;");
  CHECK(add_in.excel.values_out == 0);
}

}  // namespace zavrel::tests
