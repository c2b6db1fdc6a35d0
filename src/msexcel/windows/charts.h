#pragma once

#include <string_view>

#include "msexcel/windows/object.h"

namespace MsExcel {

/// XlChartType, as far as it is used.
enum class ChartType : long { kColumnClustered = 51, kScatter = -4169, kScatterLines = 74 };
/// XlMarkerStyle.
enum class MarkerStyle : long { kNone = -4142, kCircle = 8 };
/// XlAxisType.
enum class AxisType : long { kCategory = 1, kValue = 2 };

/// The title of a chart or of an axis.
class Title : public ObjectOf<Title> {
 public:
  static constexpr std::string_view kName = "Title";
  using ObjectOf::ObjectOf;

  std::u16string Text() const { return Get<"Text">().Text(); }
  void SetText(std::u16string_view text) const { Put<"Text">(text); }
};

class Axis : public ObjectOf<Axis> {
 public:
  static constexpr std::string_view kName = "Axis";
  using ObjectOf::ObjectOf;

  bool HasTitle() const { return Get<"HasTitle">().Flag(); }
  void SetHasTitle(bool on) const { Put<"HasTitle">(on); }
  /// Only while it has one.
  Title AxisTitle() const { return Get<"AxisTitle">().As<Title>(); }
};

class LineFormat : public ObjectOf<LineFormat> {
 public:
  static constexpr std::string_view kName = "LineFormat";
  using ObjectOf::ObjectOf;

  void SetVisible(bool on) const { Put<"Visible">(on ? -1L : 0L); }
  void SetWeight(double points) const { Put<"Weight">(points); }
  void SetColor(long color) const;
};

class FillFormat : public ObjectOf<FillFormat> {
 public:
  static constexpr std::string_view kName = "FillFormat";
  using ObjectOf::ObjectOf;

  void SetColor(long color) const;
};

class Series : public ObjectOf<Series> {
 public:
  static constexpr std::string_view kName = "Series";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  void SetName(std::u16string_view name) const { Put<"Name">(name); }
  /// "=Data!$A$2:$A$9"
  void SetXValues(std::u16string_view reference) const { Put<"XValues">(reference); }
  void SetValues(std::u16string_view reference) const { Put<"Values">(reference); }
  void SetType(ChartType type) const { Put<"ChartType">(static_cast<long>(type)); }
  void SetMarkerStyle(MarkerStyle style) const { Put<"MarkerStyle">(static_cast<long>(style)); }
  void SetMarkerSize(long points) const { Put<"MarkerSize">(points); }
  void SetMarkerColor(long color) const { Put<"MarkerForegroundColor">(color); }
  void SetMarkerHollow() const {
    constexpr long kNoColor = -4142;  // xlColorIndexNone
    Put<"MarkerBackgroundColorIndex">(kNoColor);
  }
  LineFormat Line() const;
  FillFormat Fill() const;
  void Delete() const { Call<"Delete">(); }
  /// "=SERIES(name,x,y,order)"
  std::u16string Formula() const { return Get<"Formula">().Text(); }
};

class SeriesCollection : public Collection<SeriesCollection, Series> {
 public:
  static constexpr std::string_view kName = "SeriesCollection";
  using Collection::Collection;

  Series NewSeries() const { return Call<"NewSeries">().As<Series>(); }
};

class Chart : public ObjectOf<Chart> {
 public:
  static constexpr std::string_view kName = "Chart";
  using ObjectOf::ObjectOf;

  void SetType(ChartType type) const { Put<"ChartType">(static_cast<long>(type)); }
  bool HasTitle() const { return Get<"HasTitle">().Flag(); }
  void SetHasTitle(bool on) const { Put<"HasTitle">(on); }
  /// Only while it has one.
  Title ChartTitle() const { return Get<"ChartTitle">().As<Title>(); }
  void SetHasLegend(bool on) const { Put<"HasLegend">(on); }
  MsExcel::SeriesCollection SeriesCollection() const {
    return Get<"SeriesCollection">().As<MsExcel::SeriesCollection>();
  }
  Axis AxisOf(AxisType type) const { return Get<"Axes">({static_cast<long>(type)}).As<Axis>(); }
};

/// The frame of a chart on a sheet.
class ChartObject : public ObjectOf<ChartObject> {
 public:
  static constexpr std::string_view kName = "ChartObject";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  MsExcel::Chart Chart() const { return Get<"Chart">().As<MsExcel::Chart>(); }
  void Delete() const { Call<"Delete">(); }
};

class ChartObjects : public Collection<ChartObjects, ChartObject> {
 public:
  static constexpr std::string_view kName = "ChartObjects";
  using Collection::Collection;

  /// In points from the sheet's upper left corner.
  ChartObject Add(double left, double top, double width, double height) const {
    return Call<"Add">({left, top, width, height}).As<ChartObject>();
  }
};

}  // namespace MsExcel
