#include "analyses/looks.h"

#include <iterator>

namespace zavrel::analyses {

Look LookOf(Style style) {
  switch (style) {
    case Style::kTitle:
      return {.bold = true, .points = 14};
    case Style::kNote:
      return {.italic = true, .color = kGrey};
    case Style::kHeading:
      return {.bold = true, .color = kWhite, .fill = kBlue};
    case Style::kNumber:
      return {.number_format = "0.0000"};
    case Style::kCount:
      return {.number_format = "0"};
    case Style::kProbability:
      return {.number_format = "[=0]0;[<0.0001]0.0E+00;0.0000"};
    case Style::kPlain:
    case Style::kLabel:
      return {};
  }
  return {};
}

Color SeriesColor(std::size_t number) {
  constexpr Color kColors[] = {kBlue, 0xC00000, 0x7F7F7F, 0x548235, 0xBF8F00, 0x7030A0};
  return kColors[number % std::size(kColors)];
}

ChartSize SizeOf(const Chart& chart) {
  return chart.wide ? ChartSize{468, 237.6} : ChartSize{234, 183.6};
}

}  // namespace zavrel::analyses
