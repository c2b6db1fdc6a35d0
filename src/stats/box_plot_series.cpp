#include "stats/box_plot_series.h"

#include <algorithm>

namespace zavrel {
namespace {

constexpr double kHalfBox = 0.3;
constexpr double kHalfCap = 0.15;
constexpr std::array kBoxAcross = {-kHalfBox, kHalfBox, kHalfBox, -kHalfBox, -kHalfBox};
constexpr std::array kWhiskerAcross = {0.0, 0.0, -kHalfCap, kHalfCap};
constexpr std::array kMedianAcross = {-kHalfBox, kHalfBox};
constexpr std::array kMeanAcross = {0.0};

}  // namespace

std::optional<BoxPlotSeries> BoxPlotSeriesOf(std::int32_t code) {
  const auto series = static_cast<BoxPlotSeries>(code);
  if (series < BoxPlotSeries::kBox || series > BoxPlotSeries::kUpperExtreme) return {};
  return series;
}

std::span<const double> CoordinatesAlong(const BoxPlot& plot, BoxPlotSeries series,
                                         std::array<double, kMostBoxPlotPoints>& room) {
  const auto [lower, median, upper] = plot.quartiles;
  const double lower_end = std::min(plot.lower_whisker, lower);
  const double upper_end = std::max(plot.upper_whisker, upper);
  switch (series) {
    case BoxPlotSeries::kBox:
      room = {lower, lower, upper, upper, lower};
      break;
    case BoxPlotSeries::kLowerWhisker:
      room = {lower, lower_end, lower_end, lower_end};
      break;
    case BoxPlotSeries::kUpperWhisker:
      room = {upper, upper_end, upper_end, upper_end};
      break;
    case BoxPlotSeries::kMedian:
      room = {median, median};
      break;
    case BoxPlotSeries::kMean:
      room = {plot.mean};
      break;
    case BoxPlotSeries::kLowerExtreme:
      return plot.lower_extreme;
    case BoxPlotSeries::kLowerMild:
      return plot.lower_mild;
    case BoxPlotSeries::kUpperMild:
      return plot.upper_mild;
    case BoxPlotSeries::kUpperExtreme:
      return plot.upper_extreme;
  }
  return std::span(room).first(CoordinatesAcross(series).size());
}

std::span<const double> CoordinatesAcross(BoxPlotSeries series) {
  switch (series) {
    case BoxPlotSeries::kBox:
      return kBoxAcross;
    case BoxPlotSeries::kLowerWhisker:
    case BoxPlotSeries::kUpperWhisker:
      return kWhiskerAcross;
    case BoxPlotSeries::kMedian:
      return kMedianAcross;
    case BoxPlotSeries::kMean:
      return kMeanAcross;
    default:
      return {};
  }
}

}  // namespace zavrel
