#pragma once
// How reports look, whoever writes them.

#include <cstddef>
#include <cstdint>

#include "analyses/report_sheet.h"

namespace zavrel::analyses {

/// Red in the highest of three bytes.
using Color = std::uint32_t;

inline constexpr Color kBlack = 0x000000, kWhite = 0xFFFFFF, kGrey = 0x595959, kBlue = 0x1F4E79;

/// How the cells of a style look.
struct Look {
  bool bold = false;
  bool italic = false;
  double points = 11;
  Color color = kBlack;
  Color fill = kWhite;
  const char* number_format = "General";
};

Look LookOf(Style style);
/// By the number of the series in its chart.
Color SeriesColor(std::size_t number);

inline constexpr int kMarkerPoints = 5;
inline constexpr double kLinePoints = 1.5;

/// Of a chart, in points.
struct ChartSize {
  double width;
  double height;
};
ChartSize SizeOf(const Chart& chart);

}  // namespace zavrel::analyses
