// Helper columns of charts: what the cells show.
#include <doctest/doctest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "functions/open_add_in.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT XLOPER12* ZavrelBoxPlotX(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelBoxPlotY(std::int32_t, const XLOPER12*);
ZAV_EXPORT std::int32_t ZavrelBoxPlotCountOutliers(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelOutlierType(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelScatterPlot(const XLOPER12*, const XLOPER12*, std::int16_t);
ZAV_EXPORT XLOPER12* ZavrelQQPlotStandardize(const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelQQPlotSort(const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelQQPlotZValue(const XLOPER12*, const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

/// "1,#42;2.5,#42;" of an array of numbers and errors; "#15" of an error.
std::string Shown(const XLOPER12& result) {
  if ((result.xltype & xltypeMask) == xltypeErr) return "#" + std::to_string(result.val.err);
  REQUIRE((result.xltype & xltypeMask) == xltypeMulti);
  std::string shown;
  const auto& array = result.val.array;
  for (std::int32_t i = 0; i < array.rows * array.columns; ++i) {
    const XLOPER12& element = array.lparray[i];
    char text[32];
    if (element.xltype == xltypeErr) {
      std::snprintf(text, sizeof text, "#%d", element.val.err);
    } else {
      std::snprintf(text, sizeof text, "%.5g", Number(element));
    }
    shown += text;
    shown += (i + 1) % array.columns == 0 ? ';' : ',';
  }
  return shown;
}

std::string X(const XLOPER12* data, const Cell& series, const Cell& method = 0.0) {
  return Shown(*ZavrelBoxPlotX(data, Argument(method), Argument(series)));
}
std::string Y(std::int32_t n, const Cell& series) {
  return Shown(*ZavrelBoxPlotY(n, Argument(series)));
}
double Type(const XLOPER12* data, const Cell& x, const Cell& method = 0.0) {
  return Number(*ZavrelOutlierType(data, Argument(method), Argument(x)));
}

}  // namespace

TEST_CASE("the columns of a box plot") {
  OpenAddIn add_in;
  // Quartiles 3.25, 5.5, 7.75 by method 0; fences -10.25, -3.5, 14.5, 21.25.
  add_in.excel.SetColumn(0, 0, {10.0, 9.0, 8.0, 7.0, u"x", 6.0, 5.0, 4.0, 3.0, 2.0, 1.0});
  const Reference plain(Area(0, 10, 0, 0));
  CHECK(X(plain, 1.0) == "3.25;3.25;7.75;7.75;3.25;");
  CHECK(X(plain, 2.0) == "3.25;1;1;1;");
  CHECK(X(plain, 3.0) == "7.75;10;10;10;");
  CHECK(X(plain, 4.0) == "5.5;5.5;");
  CHECK(X(plain, 5.0) == "5.5;");
  CHECK(X(plain, 6.0) == "#42;");
  CHECK(Y(2, 1.0) == "1.7;2.3;2.3;1.7;1.7;");
  CHECK(Y(2, 3.0) == "2;2;1.85;2.15;");
  CHECK(Y(-1, 4.0) == "-1.3;-0.7;");
  CHECK(Y(7, 5.0) == "7;");
  CHECK(Y(7, 9.0) == "7;");

  // Over the calling range: #N/A where there is no point, in its further columns too.
  add_in.excel.caller = Area(0, 5, 3, 4);
  CHECK(X(plain, 2.0) == "3.25,#42;1,#42;1,#42;1,#42;#42,#42;#42,#42;");
  add_in.excel.caller = Area(0, 2, 3, 3);
  CHECK(Y(7, 5.0) == "7;#42;#42;");
  CHECK(Y(7, 8.0) == "7;7;7;");
  CHECK(X(plain, 7.0) == "#42;#42;#42;");
  CHECK(X(plain, 1.0) == "3.25;3.25;7.75;7.75;3.25;");  // never cut off
}

TEST_CASE("no column of a chart is repeated over its calling range") {
  OpenAddIn add_in;
  const Argument one(Cell(3.0));
  const Argument two(2, 1, {3.0, 1.0});
  add_in.excel.caller = Area(0, 2, 3, 4);  // 3 x 2 cells
  CHECK(Shown(*ZavrelQQPlotSort(one)) == "3,#42;#42,#42;#42,#42;");
  CHECK(Shown(*ZavrelQQPlotSort(two)) == "1,#42;3,#42;#42,#42;");
  CHECK(Shown(*ZavrelQQPlotZValue(one, Argument(Cell(1.0)))) == "0,#42;#42,#42;#42,#42;");
  CHECK(Shown(*ZavrelQQPlotStandardize(two)) == "0.70711,#42;-0.70711,#42;#42,#42;");
  CHECK(Shown(*ZavrelScatterPlot(one, one, 1)) == "3,#42;#42,#42;#42,#42;");
  CHECK(X(one, 5.0) == "3,#42;#42,#42;#42,#42;");
  CHECK(Y(7, 5.0) == "7,#42;#42,#42;#42,#42;");
  CHECK(Y(7, 6.0) == "7,#42;7,#42;7,#42;");

  // Of one cell the whole column, which spills.
  add_in.excel.caller = Area(0, 0, 3, 3);
  CHECK(Shown(*ZavrelQQPlotSort(two)) == "1;3;");
  CHECK(Shown(*ZavrelScatterPlot(two, two, 0)) == "3;1;");
  CHECK(Y(7, 6.0) == "7;");
}

TEST_CASE("outliers, and values on the fences") {
  OpenAddIn add_in;
  std::vector<Cell> cells;
  for (int i = 1; i <= 10; ++i) cells.emplace_back(i + 0.0);
  const Argument data(10, 1, cells);
  for (const auto& [x, type] : {std::pair{14.5, 1},
                                {14.4999, 0},
                                {21.25, 2},
                                {21.2, 1},
                                {-3.5, 1},
                                {-3.4, 0},
                                {-10.25, 2},
                                {5.0, 0}}) {
    CAPTURE(x);
    CHECK(Type(data, x) == type);
  }
  CHECK(ZavrelBoxPlotCountOutliers(data, Argument(Cell(0.0))) == 0);
  const Argument more(13, 1,
                      {-20.0, -8.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 20.0, 30.0, 31.0, -19.0});
  // Quartiles 4, 7, 10: fences -14, -5, 19, 28.
  CHECK(X(more, 6.0) == "-20;-19;");
  CHECK(X(more, 7.0) == "-8;");
  CHECK(X(more, 8.0) == "20;");
  CHECK(X(more, 9.0) == "30;31;");
  CHECK(ZavrelBoxPlotCountOutliers(more, Argument(Cell(0.0))) == 2);

  const Argument equal(3, 1, {5.0, 5.0, 5.0});
  for (const double x : {5.0, 4.9, 6.0}) CHECK(Type(equal, x) == 2);
  CHECK(ZavrelBoxPlotCountOutliers(equal, nullptr) == 3);
  CHECK(X(equal, 2.0) == "5;5;5;5;");
}

TEST_CASE("any method that there is not is the automatic one") {
  OpenAddIn add_in;
  const Argument tied(5, 1, {1.0, 2.0, 2.0, 4.0, 8.0});  // discrete: the values themselves
  const std::string automatic = X(tied, 1.0, -1.0);
  CHECK(automatic == "2;2;4;4;2;");
  CHECK(X(tied, 1.0, 1.0) != automatic);
  for (const Cell& method :
       {Cell(9.0), Cell(-2.0), Cell(1e300), Cell(u"x"), Cell(), Cell(ErrorCell{xlerrNA})}) {
    CHECK(X(tied, 1.0, method) == automatic);
    CHECK(ZavrelBoxPlotCountOutliers(tied, Argument(method)) == 1);
    CHECK(Type(tied, 7.0, method) == 1);
  }
  CHECK(Shown(*ZavrelBoxPlotX(tied, nullptr, Argument(Cell(1.0)))) == automatic);
  // A cell that is still to be calculated is not taken for a wrong method.
  add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(Error(*ZavrelBoxPlotX(tied, Reference(Area(0, 0, 5, 5)), Argument(Cell(1.0)))) == xlerrRef);
}

TEST_CASE("box plots that there are not") {
  OpenAddIn add_in;
  const Argument none(2, 1, {u"x", Cell()});
  const Argument data(3, 1, {1.0, 2.0, 3.0});
  CHECK(X(none, 1.0) == "#15");
  CHECK(Shown(*ZavrelBoxPlotX(nullptr, nullptr, Argument(Cell(1.0)))) == "#15");
  CHECK(ZavrelBoxPlotCountOutliers(none, nullptr) == -1);
  CHECK(ZavrelBoxPlotCountOutliers(Reference(Area(2, 1, 0, 0)), nullptr) == -1);
  CHECK(Error(*ZavrelOutlierType(none, nullptr, Argument(Cell(1.0)))) == xlerrValue);
  for (const Cell& x : {Cell(u"x"), Cell(ErrorCell{xlerrDiv0})})
    CHECK(Error(*ZavrelOutlierType(data, nullptr, Argument(x))) == xlerrValue);
  CHECK(Error(*ZavrelOutlierType(data, nullptr, nullptr)) == xlerrValue);
  for (const Cell& series : {Cell(0.0), Cell(10.0), Cell(u"x"), Cell(1e300)}) {
    CHECK(X(data, series) == "#15");
    CHECK(Y(1, series) == "#15");
  }
  CHECK(Shown(*ZavrelBoxPlotY(1, nullptr)) == "#15");
}

TEST_CASE("the columns of a scatter plot") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, u"2", 3.0, 4.0, Cell(), 6.0, 7.0});
  add_in.excel.SetColumn(0, 1, {10.0, 20.0, ErrorCell{xlerrNA}, 40.0, 50.0, 60.0});
  const Reference x(Area(0, 6, 0, 0));
  const Reference y(Area(0, 5, 1, 1));
  CHECK(Shown(*ZavrelScatterPlot(x, y, 0)) == "1;4;6;");
  CHECK(Shown(*ZavrelScatterPlot(x, y, 1)) == "10;40;60;");
  CHECK(Shown(*ZavrelScatterPlot(Reference(WholeColumns(0, 0)), y, 1)) == "10;40;60;");
  for (const std::int16_t which : {std::int16_t{-1}, std::int16_t{2}})
    CHECK(Shown(*ZavrelScatterPlot(x, y, which)) == "#15");
  CHECK(Shown(*ZavrelScatterPlot(x, nullptr, 0)) == "#15");
  CHECK(Shown(*ZavrelScatterPlot(Reference(Area(1, 2, 0, 0)), Reference(Area(1, 2, 1, 1)), 0)) ==
        "#15");
}

TEST_CASE("the columns of a normal quantile plot") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {4.0, 9.0, u"x", 2.0, Cell(), 5.0, 4.0});
  const Reference data(Area(0, 6, 0, 0));
  const auto z = [&](const XLOPER12* numbers, const Cell& standardized) {
    return Shown(*ZavrelQQPlotZValue(numbers, Argument(standardized)));
  };
  CHECK(Shown(*ZavrelQQPlotSort(data)) == "2;4;4;5;9;");
  CHECK(Shown(*ZavrelQQPlotStandardize(data)) == "-0.30907;1.6226;-1.0817;0.077267;-0.30907;");
  CHECK(z(data, 0.0) == "1.4828;3.4426;4.8;6.1574;8.1172;");
  CHECK(z(data, Cell()) == "1.4828;3.4426;4.8;6.1574;8.1172;");
  for (const Cell& flag : {Cell(1.0), Cell(true), Cell(-0.5)})
    CHECK(z(data, flag) == "-1.2816;-0.5244;0;0.5244;1.2816;");

  const Argument one(Cell(3.0));
  const Argument equal(10, 1, std::vector<Cell>(10, Cell(0.1)));
  for (const XLOPER12* flat :
       {static_cast<const XLOPER12*>(one), static_cast<const XLOPER12*>(equal)}) {
    CHECK(Shown(*ZavrelQQPlotStandardize(flat)) == "#7");
    CHECK(z(flat, 0.0) == "#7");
  }
  CHECK(z(one, 1.0) == "0;");
  CHECK(Shown(*ZavrelQQPlotSort(one)) == "3;");
  const Argument none(Cell(u"x"));
  CHECK(Shown(*ZavrelQQPlotSort(none)) == "#15");
  CHECK(Shown(*ZavrelQQPlotStandardize(none)) == "#15");
  CHECK(z(none, 1.0) == "#15");

  add_in.excel.SetColumn(0, 1, std::vector<Cell>(65535, Cell(1.0)));
  const XLOPER12& most = *ZavrelQQPlotZValue(Reference(Area(0, 65535, 1, 1)), Argument(Cell(1.0)));
  CHECK(most.val.array.rows == 65535);
  CHECK(Number(most.val.array.lparray[65534]) == doctest::Approx(4.3249157));
  const Reference column(Area(0, 65535, 1, 1));
  CHECK(ZavrelQQPlotSort(column)->val.array.rows == 65535);
  add_in.excel.Set(65535, 1, 2.0);
  CHECK(z(column, 1.0) == "#15");
  CHECK(Shown(*ZavrelQQPlotSort(column)) == "#15");
  CHECK(Shown(*ZavrelQQPlotStandardize(column)) == "#15");
  CHECK(Shown(*ZavrelScatterPlot(column, column, 0)) == "#15");
}

}  // namespace zavrel::tests
