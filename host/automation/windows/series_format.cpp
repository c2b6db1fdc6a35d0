// ChartFormat of a series: its line and its fill.
#include "host/automation/windows/series.h"

namespace zavhost {
namespace {

class ChartFormat final : public SeriesPart<ChartFormat> {
 public:
  static constexpr std::u16string_view kName = u"ChartFormat";
  static std::span<const Member<ChartFormat>> Members();
  using SeriesPart::SeriesPart;
};

class LineFormat final : public SeriesPart<LineFormat> {
 public:
  static constexpr std::u16string_view kName = u"LineFormat";
  static std::span<const Member<LineFormat>> Members();
  using SeriesPart::SeriesPart;
};

class FillFormat final : public SeriesPart<FillFormat> {
 public:
  static constexpr std::u16string_view kName = u"FillFormat";
  static std::span<const Member<FillFormat>> Members();
  using SeriesPart::SeriesPart;
};

/// A colour that is automatic until it is set.
using SeriesColour = std::optional<std::int32_t> ChartSeries::*;

class ColorFormat final : public SeriesPart<ColorFormat> {
 public:
  static constexpr std::u16string_view kName = u"ColorFormat";
  static std::span<const Member<ColorFormat>> Members();
  ColorFormat(ExcelPtr excel, BookPtr book, SheetPtr sheet, std::shared_ptr<Chart> chart,
              SeriesPtr series, SeriesColour colour)
      : SeriesPart(std::move(excel), std::move(book), std::move(sheet), std::move(chart),
                   std::move(series)),
        colour_(colour) {}
  SeriesColour colour() const { return colour_; }

 private:
  SeriesColour colour_;
};

constexpr Member<ColorFormat> kColourMembers[] = {
    {u"RGB", kProperty, "",
     [](ColorFormat& self, const Arguments&) -> Variant {
       return (self.series().*self.colour()).value_or(0);
     },
     'i',
     [](ColorFormat& self, const Arguments& given) {
       self.ChangedSeries().*self.colour() = given.integer();
     }},
};
std::span<const Member<ColorFormat>> ColorFormat::Members() { return kColourMembers; }

template <class Class, class Self, class... Parts>
ObjectPtr MakeOfSeries(const SeriesPart<Self>& of, Parts... parts) {
  return MakeBeside<Class>(of, of.shared_part(), of.shared_series(), parts...);
}

template <class Of, SeriesColour kColour>
Variant ForeColour(Of& self, const Arguments&) {
  return MakeOfSeries<ColorFormat>(self, kColour);
}

constexpr Member<LineFormat> kLineMembers[] = {
    // TRUE is -1, a truth value of Office.
    {u"Visible", kProperty, "",
     [](LineFormat& self, const Arguments&) -> Variant { return self.series().has_line ? -1 : 0; },
     'i',
     [](LineFormat& self, const Arguments& given) {
       self.ChangedSeries().has_line = given.integer() != 0;
     }},
    {u"ForeColor", kProperty, "", ForeColour<LineFormat, &ChartSeries::line_colour>},
    {u"Weight", kProperty, "",
     [](LineFormat& self, const Arguments&) -> Variant { return self.series().line_weight; }, 'n',
     [](LineFormat& self, const Arguments& given) {
       constexpr double kMost = 1584;
       if (!(given.number() >= 0 && given.number() <= kMost)) Refuse();
       self.ChangedSeries().line_weight = given.number();
     }},
};
std::span<const Member<LineFormat>> LineFormat::Members() { return kLineMembers; }

constexpr Member<FillFormat> kFillMembers[] = {
    {u"ForeColor", kProperty, "", ForeColour<FillFormat, &ChartSeries::fill_colour>},
};
std::span<const Member<FillFormat>> FillFormat::Members() { return kFillMembers; }

constexpr Member<ChartFormat> kMembers[] = {
    {u"Line", kProperty, "",
     [](ChartFormat& self, const Arguments&) -> Variant { return MakeOfSeries<LineFormat>(self); }},
    {u"Fill", kProperty, "",
     [](ChartFormat& self, const Arguments&) -> Variant { return MakeOfSeries<FillFormat>(self); }},
};
std::span<const Member<ChartFormat>> ChartFormat::Members() { return kMembers; }

}  // namespace

ObjectPtr MakeSeriesFormat(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet,
                           const std::shared_ptr<Chart>& chart, const SeriesPtr& series) {
  return Make<ChartFormat>(excel, book, sheet, chart, series);
}

}  // namespace zavhost
