// Charts: frames, series, axes.
#include "automation/windows/late_bound.h"

namespace zavhost::tests {
namespace {

LateBound NewChart(const TestSession& excel) {
  return excel.sheet().At(u"ChartObjects").At(u"Add", {60.0, 31.0, 300.0, 200.0});
}

}  // namespace

TEST_CASE("a chart has a frame and a name") {
  const TestSession excel;
  const LateBound charts = excel.sheet().At(u"ChartObjects"), first = NewChart(excel);
  const LateBound second = NewChart(excel);
  CHECK(charts(u"Count") == "2");
  CHECK(second(u"Name") == "\"Chart 2\"");
  CHECK(first.At(u"TopLeftCell")(u"Address") == "\"$B$3\"");
  first.Put(u"Width", 150.5);
  CHECK(first(u"Width") == "150.5");
  CHECK(first.PutFails(u"Height", -1.0) ==
        "800A03EC Unable to set the Height property of the ChartObject class");
  CHECK(first.PutFails(u"Name", u"chart 2").starts_with("800A03EC"));
  first.Put(u"Name", u"Box plot");
  CHECK(excel.sheet().At(u"ChartObjects", {u"box PLOT"})(u"Index") == "1");
  CHECK(excel.sheet().Fails(u"ChartObjects", {u"no such"}) ==
        "800A03EC ChartObjects method of Worksheet class failed");
  const LateBound chart = first.At(u"Chart");
  CHECK(first(u"Delete") == "TRUE");
  CHECK(chart.Fails(u"HasTitle") == "800401A8");
  CHECK(second(u"Index") == "1");
  CHECK(charts.Fails(u"Add", {0.0, 0.0, 0.0, 10.0}).starts_with("800A03EC"));
}

TEST_CASE("titles and legends are there or not") {
  const TestSession excel;
  const LateBound chart = NewChart(excel).At(u"Chart");
  CHECK(chart(u"ChartType") == "51");
  chart.Put(u"ChartType", -4169);
  CHECK(chart.PutFails(u"ChartType", 7777) ==
        "800A03EC Unable to set the ChartType property of the Chart class");
  CHECK(chart.Fails(u"ChartTitle").starts_with("800A03EC"));
  chart.Put(u"HasTitle", true);
  const LateBound title = chart.At(u"ChartTitle");
  title.Put(u"Text", u"Ozone");
  CHECK(title(u"Text") == "\"Ozone\"");
  chart.Put(u"HasTitle", false);
  CHECK(title.PutFails(u"Text", u"x") == "800401A8");
  chart.At(u"Legend").Put(u"Position", -4107);
  CHECK(chart.At(u"Legend").PutFails(u"Position", 1).starts_with("800A03EC"));
  chart.Put(u"HasLegend", false);
  CHECK(chart.Fails(u"Legend").starts_with("800A03EC"));

  const LateBound axis = chart.At(u"Axes", {2});
  axis.Put(u"HasTitle", true);
  axis.At(u"AxisTitle").Put(u"Text", u"ppb");
  CHECK(chart.At(u"Axes", {2, 1}).At(u"AxisTitle")(u"Text") == "\"ppb\"");
  CHECK(axis(u"HasMajorGridlines") == "TRUE");
  axis.Put(u"MinimumScale", -2.5);
  CHECK(axis(u"MinimumScale") == "-2.5");
  CHECK(axis(u"MinimumScaleIsAuto") == "FALSE");
  axis.At(u"TickLabels").Put(u"NumberFormat", u"0.0");
  chart.At(u"Axes", {1}).Put(u"MaximumScale", 4.0);
  CHECK(chart.At(u"ChartGroups", {1}).PutFails(u"GapWidth", 10).starts_with("800A03EC"));
  chart.Put(u"ChartType", 51);
  CHECK(chart.At(u"Axes", {1}).PutFails(u"MaximumScale", 4.0) ==
        "800A03EC Unable to set the MaximumScale property of the Axis class");
  CHECK(chart.Fails(u"Axes", {4}) == "800A03EC Axes method of Chart class failed");
  chart.At(u"ChartGroups", {1}).Put(u"GapWidth", 10);
  CHECK(chart.At(u"ChartGroups", {1}).PutFails(u"Overlap", 101).starts_with("800A03EC"));
}

TEST_CASE("series take ranges, texts and arrays") {
  const TestSession excel;
  excel.range(u"A1:B3").Put(u"Value2", Block({{u"x", u"y"}, {1.0, 10.0}, {2.0, 20.0}}));
  const LateBound chart = NewChart(excel).At(u"Chart");
  const LateBound series = chart.At(u"SeriesCollection").At(u"NewSeries");
  series.Put(u"XValues", Variant(excel.range(u"A2:A3")));
  series.Put(u"Values", u"=Sheet1!$B$2:$B$3");
  series.Put(u"Name", u"=Sheet1!$B$1");
  CHECK(series(u"Formula") == "\"=SERIES(Sheet1!$B$1,Sheet1!$A$2:$A$3,Sheet1!$B$2:$B$3,1)\"");
  CHECK(series(u"Values") == "10,20;");
  CHECK(series(u"Name") == "\"y\"");
  excel.range(u"B3").Put(u"Formula", u"=B2*3");
  CHECK(series(u"Values") == "10,30;");
  excel.sheet().Put(u"Name", u"My data");
  CHECK(series(u"Formula") ==
        "\"=SERIES('My data'!$B$1,'My data'!$A$2:$A$3,'My data'!$B$2:$B$3,1)\"");
  CHECK(series.PutFails(u"Values", u"=Nowhere!A1") ==
        "800A03EC Unable to set the Values property of the Series class");
  series.Put(u"Values", Block({{4.0, 5.0}}));
  CHECK(series(u"Values") == "4,5;");

  series.Put(u"MarkerStyle", 8);
  CHECK(series.PutFails(u"MarkerStyle", 77).starts_with("800A03EC"));
  CHECK(series.PutFails(u"MarkerSize", 1).starts_with("800A03EC"));
  const LateBound line = series.At(u"Format").At(u"Line");
  CHECK(line(u"Visible") == "-1");
  line.Put(u"Visible", false);
  CHECK(line(u"Visible") == "0");
  line.At(u"ForeColor").Put(u"RGB", 255);
  series.At(u"Format").At(u"Fill").At(u"ForeColor").Put(u"RGB", 128);
  CHECK(chart.At(u"SeriesCollection", {1}).At(u"Format").At(u"Line").At(u"ForeColor")(u"RGB") ==
        "255");
  CHECK(chart.Fails(u"SeriesCollection", {2}) == "800A03EC Invalid Parameter");
  series.Get(u"Delete");
  CHECK(line.Fails(u"Visible") == "800401A8");
  CHECK(chart.At(u"SeriesCollection")(u"Count") == "0");
}

TEST_CASE("charts of a protected sheet stay as they are") {
  const TestSession excel;
  const LateBound frame = NewChart(excel);
  excel.sheet().Get(u"Protect");
  CHECK(excel.sheet().At(u"ChartObjects").Fails(u"Add", {0.0, 0.0, 10.0, 10.0}) ==
        "800A03EC Add method of ChartObjects class failed");
  CHECK(frame.Fails(u"Delete").starts_with("800A03EC"));
  CHECK(frame.At(u"Chart").PutFails(u"HasTitle", true).starts_with("800A03EC"));
  // Everything but the drawings.
  excel.sheet().Get(u"Unprotect");
  excel.sheet().Get(u"Protect", {Variant::Missing(), false});
  CHECK(frame(u"Delete") == "TRUE");
}

}  // namespace zavhost::tests
