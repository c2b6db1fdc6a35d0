// ChartObjects, and ChartObject: the frame of a chart on its sheet.
#include <algorithm>

#include "host/automation/cell_places.h"
#include "host/automation/windows/chart.h"
#include "host/automation/windows/range.h"
#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

using ChartPtr = std::shared_ptr<Chart>;

class ChartObject final : public ChartPart<ChartObject> {
 public:
  static constexpr std::u16string_view kName = u"ChartObject";
  static std::span<const Member<ChartObject>> Members();
  using ChartPart::ChartPart;
};

class ChartObjects final : public SheetObject<ChartObjects> {
 public:
  static constexpr std::u16string_view kName = u"ChartObjects";
  static std::span<const Member<ChartObjects>> Members();
  using SheetObject::SheetObject;
};

Variant Item(ChartObjects& self, const Arguments& given) {
  const auto& charts = self.sheet().charts;
  const auto place = PlaceIn(charts, given[0], [](const ChartPtr& chart) { return chart->name; });
  if (!place) Refuse();
  return MakeBeside<ChartObject>(self, charts[*place]);
}

Variant Add(ChartObjects& self, const Arguments& given) {
  SheetState& sheet = self.sheet();
  const SheetProtection& protection = sheet.protection;
  const bool is_protected = protection.of_drawing_objects && !protection.is_for_users_only;
  if (is_protected || given.Number(2) <= 0 || given.Number(3) <= 0) Refuse();
  const auto chart = std::make_shared<Chart>();
  chart->name = u"Chart " + Utf16FromUtf8(std::to_string(++sheet.charts_made));
  chart->left = given.Number(0);
  chart->top = given.Number(1);
  chart->width = given.Number(2);
  chart->height = given.Number(3);
  sheet.charts.push_back(chart);
  self.book().is_saved = false;
  return MakeBeside<ChartObject>(self, chart);
}

constexpr Member<ChartObjects> kCollectionMembers[] = {
    {u"Count", kProperty, "",
     [](ChartObjects& self, const Arguments&) { return Count(self.sheet().charts.size()); }},
    {u"Item", kAccessor, "Index:v", Item},
    {u"_Default", kAccessor, "Index:v", Item},
    {u"Add", kMethod, "Left:n Top:n Width:n Height:n", Add},
};

std::span<const Member<ChartObjects>> ChartObjects::Members() { return kCollectionMembers; }

void PutName(ChartObject& self, const Arguments& given) {
  for (const ChartPtr& other : self.sheet().charts) {
    if (other != self.shared_part() && EqualIgnoringCase(other->name, given.text())) Refuse();
  }
  if (given.text().empty()) Refuse();
  self.Changed().name = given.text();
}

/// A place or a size in points.
template <double Chart::*kNumber>
constexpr Member<ChartObject> Points(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](ChartObject& self, const Arguments&) -> Variant { return self.chart().*kNumber; },
          'n',
          [](ChartObject& self, const Arguments& given) {
            constexpr double kMost = 169'056;
            if (!(given.number() >= 0 && given.number() <= kMost)) Refuse();
            self.Changed().*kNumber = given.number();
          }};
}

Variant Delete(ChartObject& self, const Arguments&) {
  self.Changed().is_deleted = true;
  std::erase_if(self.sheet().charts, [](const ChartPtr& chart) { return chart->is_deleted; });
  return true;
}

Variant Index(ChartObject& self, const Arguments&) {
  const auto& charts = self.sheet().charts;
  const auto place = std::find(charts.begin(), charts.end(), self.shared_part());
  return Count(static_cast<std::size_t>(place - charts.begin()) + 1);
}

constexpr Member<ChartObject> kMembers[] = {
    {u"Name", kProperty, "",
     [](ChartObject& self, const Arguments&) -> Variant {
       return std::u16string_view(self.chart().name);
     },
     's', PutName},
    {u"Index", kProperty, "", Index},
    {u"Chart", kProperty, "",
     [](ChartObject& self, const Arguments&) -> Variant { return MakeOfChart<ChartItself>(self); }},
    Points<&Chart::left>(u"Left"),
    Points<&Chart::top>(u"Top"),
    Points<&Chart::width>(u"Width"),
    Points<&Chart::height>(u"Height"),
    {u"TopLeftCell", kProperty, "",
     [](ChartObject& self, const Arguments&) -> Variant {
       const CellPosition cell = CellAt(self.sheet(), self.chart().left, self.chart().top);
       return MakeBeside<RangeObject>(
           self, std::vector{CellRange{cell.row, cell.column, cell.row, cell.column}});
     }},
    {u"Parent", kProperty, "",
     [](ChartObject& self, const Arguments&) -> Variant {
       return MakeWorksheet(self.shared_excel(), self.shared_book(), self.shared_sheet());
     }},
    {u"Delete", kMethod, "", Delete},
};

std::span<const Member<ChartObject>> ChartObject::Members() { return kMembers; }

constexpr Member<WorksheetObject> kSheetMembers[] = {
    {u"ChartObjects", kAccessor, "Index?v",
     [](WorksheetObject& self, const Arguments& given) {
       return CollectionOf<ChartObjects>(self, given, Item);
     }},
};

}  // namespace

std::span<const Member<WorksheetObject>> WorksheetChartMembers() { return kSheetMembers; }

}  // namespace zavhost
