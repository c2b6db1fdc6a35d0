// Chart, with its title, its legend and its groups.
#include "host/automation/windows/chart.h"

#include <algorithm>

namespace zavhost {
namespace {

class ChartTitle final : public ChartPart<ChartTitle> {
 public:
  static constexpr std::u16string_view kName = u"ChartTitle";
  static std::span<const Member<ChartTitle>> Members();
  using ChartPart::ChartPart;
};

Variant GetTitleText(ChartTitle& self, const Arguments&) {
  if (!self.chart().title) throw AutomationError{kObjectGone};
  return std::u16string_view(*self.chart().title);
}
void PutTitleText(ChartTitle& self, const Arguments& given) {
  if (!self.chart().title) throw AutomationError{kObjectGone};
  self.Changed().title = given.text();
}

constexpr Member<ChartTitle> kTitleMembers[] = {
    {u"Text", kProperty, "", GetTitleText, 's', PutTitleText},
    {u"Caption", kProperty, "", GetTitleText, 's', PutTitleText},
};
std::span<const Member<ChartTitle>> ChartTitle::Members() { return kTitleMembers; }

class Legend final : public ChartPart<Legend> {
 public:
  static constexpr std::u16string_view kName = u"Legend";
  static std::span<const Member<Legend>> Members();
  using ChartPart::ChartPart;
};

constexpr Member<Legend> kLegendMembers[] = {
    {u"Position", kProperty, "",
     [](Legend& self, const Arguments&) -> Variant {
       if (!self.chart().legend_position) throw AutomationError{kObjectGone};
       return *self.chart().legend_position;
     },
     'i',
     [](Legend& self, const Arguments& given) {
       // Bottom, corner, left, right, top.
       constexpr std::int32_t kPositions[] = {-4107, 2, -4131, -4152, -4160};
       if (std::find(std::begin(kPositions), std::end(kPositions), given.integer()) ==
           std::end(kPositions))
         Refuse();
       self.Changed().legend_position = given.integer();
     }},
};
std::span<const Member<Legend>> Legend::Members() { return kLegendMembers; }

class ChartGroup final : public ChartPart<ChartGroup> {
 public:
  static constexpr std::u16string_view kName = u"ChartGroup";
  static std::span<const Member<ChartGroup>> Members();
  using ChartPart::ChartPart;
};

template <std::int32_t Chart::*kNumber, std::int32_t kLeast, std::int32_t kMost>
constexpr Member<ChartGroup> GroupNumber(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](ChartGroup& self, const Arguments&) -> Variant { return self.chart().*kNumber; },
          'i',
          [](ChartGroup& self, const Arguments& given) {
            if (given.integer() < kLeast || given.integer() > kMost || IsScatter(self.chart().type))
              Refuse();
            self.Changed().*kNumber = given.integer();
          }};
}

constexpr Member<ChartGroup> kGroupMembers[] = {
    GroupNumber<&Chart::gap_width, 0, 500>(u"GapWidth"),
    GroupNumber<&Chart::overlap, -100, 100>(u"Overlap"),
};
std::span<const Member<ChartGroup>> ChartGroup::Members() { return kGroupMembers; }

/// There is one group.
Variant GroupOf(ChartItself& self, const Arguments& given) {
  if (given.Integer(0) != 1) Refuse();
  return MakeOfChart<ChartGroup>(self);
}

void PutChartType(ChartItself& self, const Arguments& given) {
  if (!IsChartType(given.integer())) Refuse();
  Chart& chart = self.Changed();
  chart.type = given.integer();
  for (const auto& series : chart.series) series->type.reset();
}

void PutHasTitle(ChartItself& self, const Arguments& given) {
  Chart& chart = self.Changed();
  if (!given.boolean()) {
    chart.title.reset();
  } else if (!chart.title) {
    chart.title = u"Chart Title";
  }
}

void PutHasLegend(ChartItself& self, const Arguments& given) {
  constexpr std::int32_t kRight = -4152;
  Chart& chart = self.Changed();
  if (!given.boolean()) {
    chart.legend_position.reset();
  } else if (!chart.legend_position) {
    chart.legend_position = kRight;
  }
}

constexpr Member<ChartItself> kMembers[] = {
    {u"ChartType", kProperty, "",
     [](ChartItself& self, const Arguments&) -> Variant { return self.chart().type; }, 'i',
     PutChartType},
    {u"HasTitle", kProperty, "",
     [](ChartItself& self, const Arguments&) -> Variant { return self.chart().title.has_value(); },
     'b', PutHasTitle},
    {u"ChartTitle", kProperty, "",
     [](ChartItself& self, const Arguments&) -> Variant {
       if (!self.chart().title) Refuse();
       return MakeOfChart<ChartTitle>(self);
     }},
    {u"HasLegend", kProperty, "",
     [](ChartItself& self, const Arguments&) -> Variant {
       return self.chart().legend_position.has_value();
     },
     'b', PutHasLegend},
    {u"Legend", kProperty, "",
     [](ChartItself& self, const Arguments&) -> Variant {
       if (!self.chart().legend_position) Refuse();
       return MakeOfChart<Legend>(self);
     }},
    {u"SeriesCollection", kAccessor, "Index?v", SeriesCollectionOf},
    {u"Axes", kAccessor, "Type:i AxisGroup?i", AxisOf},
    {u"ChartGroups", kAccessor, "Index:i", GroupOf},
};

}  // namespace

std::span<const Member<ChartItself>> ChartItself::Members() { return kMembers; }

bool IsChartType(std::int32_t chart_type) {
  // Areas, lines, pies, doughnuts; clustered and stacked columns and bars; lines with markers.
  constexpr std::int32_t kOthers[] = {1, 4, 5, -4120, 51, 52, 53, 57, 58, 59, 63, 64, 65, 66, 67};
  return IsScatter(chart_type) ||
         std::find(std::begin(kOthers), std::end(kOthers), chart_type) != std::end(kOthers);
}

}  // namespace zavhost
