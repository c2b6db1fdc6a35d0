#pragma once
// Charts: what their objects share.

#include "host/automation/windows/objects.h"

namespace zavhost {

/// An object of a chart.
template <class Self>
// NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): it stands between others and a class.
class ChartPart : public PartObject<Self, Chart> {
 public:
  using PartObject<Self, Chart>::PartObject;
  Chart& chart() const { return this->part(); }
  /// A change of the chart: refused where the sheet's drawings are protected.
  Chart& Changed() const {
    const SheetProtection& protection = this->sheet().protection;
    if (protection.of_drawing_objects && !protection.is_for_users_only) Refuse(kSheetIsProtected);
    this->book().is_saved = false;
    return chart();
  }
};

template <class Class, class Self>
ObjectPtr MakeOfChart(const ChartPart<Self>& of) {
  return MakeBeside<Class>(of, of.shared_part());
}

/// The chart types that the host knows how to write.
bool IsChartType(std::int32_t chart_type);

class ChartItself final : public ChartPart<ChartItself> {
 public:
  static constexpr std::u16string_view kName = u"Chart";
  static std::span<const Member<ChartItself>> Members();
  using ChartPart::ChartPart;
};

/// The members of a Chart that lead to its series, axes and groups.
Variant SeriesCollectionOf(ChartItself& self, const Arguments& given);
Variant AxisOf(ChartItself& self, const Arguments& given);

}  // namespace zavhost
