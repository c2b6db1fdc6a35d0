// SeriesCollection, and Series.
#include <algorithm>

#include "host/automation/windows/cell_values.h"
#include "host/automation/windows/range.h"
#include "host/automation/windows/series.h"

namespace zavhost {
namespace {

class SeriesCollection final : public ChartPart<SeriesCollection> {
 public:
  static constexpr std::u16string_view kName = u"SeriesCollection";
  static std::span<const Member<SeriesCollection>> Members();
  using ChartPart::ChartPart;
};

class Series final : public SeriesPart<Series> {
 public:
  static constexpr std::u16string_view kName = u"Series";
  static std::span<const Member<Series>> Members();
  using SeriesPart::SeriesPart;
};

// The data.

/// A range, an array, or the text of a reference with its "=".
SeriesData DataOf(const Series& self, const Variant& given) {
  if (const auto* range = In<RangeObject>(given)) return {range->FormulaText(), {}};
  if (given.type() == VT_BSTR) {
    if (!CellsNamed(self.book(), self.shared_sheet(), given.text())) Refuse();
    const std::u16string_view text = given.text();
    return {std::u16string(text.substr(text.starts_with(u'=') ? 1 : 0)), {}};
  }
  SeriesData data;
  for (const Variant& element : BlockIn(given.get()).elements) {
    data.values.push_back(element.type() == VT_BSTR ? Value(element.text())
                                                    : ValueIn(element.get()));
  }
  return data;
}

std::vector<Value> ValuesOf(const Series& self, const SeriesData& data) {
  if (data.reference.empty()) return data.values;
  std::vector<Value> values;
  Book& book = self.excel().Calculated(self.book());
  const auto cells = CellsNamed(book, self.shared_sheet(), data.reference);
  if (!cells) return values;
  const Sheet& sheet = book.CellsOf(*cells->sheet);
  for (const CellRange& whole : cells->areas) {
    const CellRange area = sheet.Clipped(whole);
    for (std::int32_t row = area.first_row; row <= area.last_row; ++row) {
      for (std::int32_t column = area.first_column; column <= area.last_column; ++column)
        values.push_back(sheet.At(row, column));
    }
  }
  return values;
}

template <SeriesData ChartSeries::*kData>
constexpr Member<Series> Data(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](Series& self, const Arguments&) {
            const std::vector<Value> values = ValuesOf(self, self.series().*kData);
            return VectorOf(values.size(), [&](std::size_t i) { return VariantOf(values[i]); });
          },
          'v',
          [](Series& self, const Arguments& given) {
            self.ChangedSeries().*kData = DataOf(self, given.value());
          }};
}

Variant GetName(Series& self, const Arguments&) {
  const std::u16string& name = self.series().name;
  if (!name.starts_with(u'=')) return std::u16string_view(name);
  const std::vector<Value> values = ValuesOf(self, {name.substr(1), {}});
  return std::u16string_view(values.empty() ? std::u16string() : GeneralText(values.front()));
}

void PutName(Series& self, const Arguments& given) {
  const std::u16string name = given.text();
  if (name.starts_with(u'=') && !CellsNamed(self.book(), self.shared_sheet(), name)) Refuse();
  self.ChangedSeries().name = name;
}

/// {1,2,3} for values, the reference for cells.
std::u16string DataText(const SeriesData& data) {
  if (!data.reference.empty() || data.values.empty()) return data.reference;
  std::u16string text;
  for (const Value& value : data.values) {
    text += text.empty() ? u"{" : u",";
    text += value.text() != nullptr ? u"\"" + *value.text() + u"\"" : GeneralText(value);
  }
  return text + u"}";
}

Variant Formula(Series& self, const Arguments&) {
  const ChartSeries& series = self.series();
  const auto& all = self.chart().series;
  const auto place = std::find(all.begin(), all.end(), self.shared_series()) - all.begin() + 1;
  const std::u16string name = series.name.empty()             ? u""
                              : series.name.starts_with(u'=') ? series.name.substr(1)
                                                              : u"\"" + series.name + u"\"";
  return std::u16string_view(u"=SERIES(" + name + u"," + DataText(series.x_values) + u"," +
                             DataText(series.values) + u"," + Utf16FromUtf8(std::to_string(place)) +
                             u")");
}

// The look.

bool IsMarkerStyle(std::int32_t style) {
  constexpr std::int32_t kStyles[] = {kAutomatic, -4142, 1, 2, 3, -4168, 5, -4118, -4115, 8, 9};
  return std::find(std::begin(kStyles), std::end(kStyles), style) != std::end(kStyles);
}

template <std::optional<std::int32_t> ChartSeries::*kColour>
constexpr Member<Series> Colour(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](Series& self, const Arguments&) -> Variant {
            return (self.series().*kColour).value_or(0);
          },
          'i',
          [](Series& self, const Arguments& given) {
            self.ChangedSeries().*kColour = given.integer();
          }};
}

// Series.

Variant Delete(Series& self, const Arguments&) {
  self.ChangedSeries().is_deleted = true;
  std::erase_if(self.chart().series, [](const SeriesPtr& series) { return series->is_deleted; });
  return true;
}

constexpr Member<Series> kMembers[] = {
    {u"Name", kProperty, "", GetName, 's', PutName},
    Data<&ChartSeries::values>(u"Values"),
    Data<&ChartSeries::x_values>(u"XValues"),
    {u"Formula", kProperty, "", Formula},
    {u"ChartType", kProperty, "",
     [](Series& self, const Arguments&) -> Variant {
       return self.series().type.value_or(self.chart().type);
     },
     'i',
     [](Series& self, const Arguments& given) {
       if (!IsChartType(given.integer())) Refuse();
       self.ChangedSeries().type = given.integer();
     }},
    {u"MarkerStyle", kProperty, "",
     [](Series& self, const Arguments&) -> Variant { return self.series().marker_style; }, 'i',
     [](Series& self, const Arguments& given) {
       if (!IsMarkerStyle(given.integer())) Refuse();
       self.ChangedSeries().marker_style = given.integer();
     }},
    {u"MarkerSize", kProperty, "",
     [](Series& self, const Arguments&) -> Variant { return self.series().marker_size; }, 'i',
     [](Series& self, const Arguments& given) {
       constexpr std::int32_t kLeast = 2, kMost = 72;
       if (given.integer() < kLeast || given.integer() > kMost) Refuse();
       self.ChangedSeries().marker_size = given.integer();
     }},
    Colour<&ChartSeries::marker_foreground>(u"MarkerForegroundColor"),
    Colour<&ChartSeries::marker_background>(u"MarkerBackgroundColor"),
    // Of the palette only its two special numbers.
    {u"MarkerBackgroundColorIndex", kProperty, "",
     [](Series& self, const Arguments&) -> Variant {
       return self.series().is_marker_filled ? kAutomatic : kNoColour;
     },
     'i',
     [](Series& self, const Arguments& given) {
       if (given.integer() != kAutomatic && given.integer() != kNoColour) Refuse();
       self.ChangedSeries().is_marker_filled = given.integer() == kAutomatic;
     }},
    {u"Format", kProperty, "",
     [](Series& self, const Arguments&) -> Variant {
       return MakeSeriesFormat(self.shared_excel(), self.shared_book(), self.shared_sheet(),
                               self.shared_part(), self.shared_series());
     }},
    {u"Delete", kMethod, "", Delete},
};

std::span<const Member<Series>> Series::Members() { return kMembers; }

Variant Item(SeriesCollection& self, const Arguments& given) {
  const auto& all = self.chart().series;
  const auto place = PlaceIn(all, given[0], [](const SeriesPtr& series) { return series->name; });
  if (!place) Refuse(u"Invalid Parameter");
  return MakeBeside<Series>(self, self.shared_part(), all[*place]);
}

constexpr Member<SeriesCollection> kCollectionMembers[] = {
    {u"Count", kProperty, "",
     [](SeriesCollection& self, const Arguments&) { return Count(self.chart().series.size()); }},
    {u"Item", kAccessor, "Index:v", Item},
    {u"_Default", kAccessor, "Index:v", Item},
    {u"NewSeries", kMethod, "",
     [](SeriesCollection& self, const Arguments&) -> Variant {
       constexpr std::size_t kMostSeries = 255;
       Chart& chart = self.Changed();
       if (chart.series.size() >= kMostSeries) Refuse();
       chart.series.push_back(std::make_shared<ChartSeries>());
       return MakeBeside<Series>(self, self.shared_part(), chart.series.back());
     }},
};

std::span<const Member<SeriesCollection>> SeriesCollection::Members() { return kCollectionMembers; }

}  // namespace

Variant SeriesCollectionOf(ChartItself& self, const Arguments& given) {
  const Microsoft::WRL::ComPtr<SeriesCollection> all(new SeriesCollection(
      self.shared_excel(), self.shared_book(), self.shared_sheet(), self.shared_part()));
  return given.Has(0) ? Item(*all.Get(), given) : Variant(ObjectPtr(all));
}

}  // namespace zavhost
