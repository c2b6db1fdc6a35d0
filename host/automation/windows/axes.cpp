// Axis, with its title and its labels.
#include <cmath>

#include "host/automation/windows/chart.h"
#include "host/workbook/number_format_code.h"

namespace zavhost {
namespace {

/// An object of one of a chart's axes.
template <class Self>
class AxisPart : public ChartPart<Self> {
 public:
  // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): it stands between others and a class.
  AxisPart(ExcelPtr excel, BookPtr book, SheetPtr sheet, std::shared_ptr<Chart> chart,
           std::int32_t type)
      : ChartPart<Self>(std::move(excel), std::move(book), std::move(sheet), std::move(chart)),
        type_(type) {}
  std::int32_t type() const { return type_; }
  ChartAxis& axis() const { return this->chart().axes[type_ - kCategoryAxis]; }
  ChartAxis& ChangedAxis() const {
    this->Changed();
    return axis();
  }

 private:
  std::int32_t type_;
};

class Axis final : public AxisPart<Axis> {
 public:
  static constexpr std::u16string_view kName = u"Axis";
  static std::span<const Member<Axis>> Members();
  using AxisPart::AxisPart;
};

class AxisTitle final : public AxisPart<AxisTitle> {
 public:
  static constexpr std::u16string_view kName = u"AxisTitle";
  static std::span<const Member<AxisTitle>> Members();
  using AxisPart::AxisPart;
};

class TickLabels final : public AxisPart<TickLabels> {
 public:
  static constexpr std::u16string_view kName = u"TickLabels";
  static std::span<const Member<TickLabels>> Members();
  using AxisPart::AxisPart;
};

template <class Class>
ObjectPtr MakeOfAxis(const Axis& axis) {
  return MakeBeside<Class>(axis, axis.shared_part(), axis.type());
}

Variant GetTitleText(AxisTitle& self, const Arguments&) {
  if (!self.axis().title) throw AutomationError{kObjectGone};
  return std::u16string_view(*self.axis().title);
}
void PutTitleText(AxisTitle& self, const Arguments& given) {
  if (!self.axis().title) throw AutomationError{kObjectGone};
  self.ChangedAxis().title = given.text();
}

constexpr Member<AxisTitle> kTitleMembers[] = {
    {u"Text", kProperty, "", GetTitleText, 's', PutTitleText},
    {u"Caption", kProperty, "", GetTitleText, 's', PutTitleText},
};
std::span<const Member<AxisTitle>> AxisTitle::Members() { return kTitleMembers; }

constexpr Member<TickLabels> kLabelMembers[] = {
    {u"NumberFormat", kProperty, "",
     [](TickLabels& self, const Arguments&) -> Variant {
       return std::u16string_view(self.axis().number_format);
     },
     's',
     [](TickLabels& self, const Arguments& given) {
       if (!ParseFormatCode(given.text())) Refuse();
       self.ChangedAxis().number_format = given.text();
     }},
};
std::span<const Member<TickLabels>> TickLabels::Members() { return kLabelMembers; }

/// Categories have no scale.
ChartAxis& Scaled(Axis& self) {
  if (self.type() == kCategoryAxis && !IsScatter(self.chart().type)) Refuse();
  return self.axis();
}

/// An end of the scale; without one, the end of a scale without data.
template <std::optional<double> ChartAxis::*kEnd, int kAbsent>
constexpr Member<Axis> End(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](Axis& self, const Arguments&) -> Variant {
            return (Scaled(self).*kEnd).value_or(kAbsent);
          },
          'n',
          [](Axis& self, const Arguments& given) {
            if (!std::isfinite(given.number())) Refuse();
            Scaled(self).*kEnd = given.number();
            self.Changed();
          }};
}

template <std::optional<double> ChartAxis::*kEnd>
constexpr Member<Axis> EndIsAutomatic(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](Axis& self, const Arguments&) -> Variant { return !(Scaled(self).*kEnd).has_value(); },
          'b',
          [](Axis& self, const Arguments& given) {
            if (given.boolean()) (Scaled(self).*kEnd).reset();
            self.Changed();
          }};
}

void PutHasTitle(Axis& self, const Arguments& given) {
  ChartAxis& axis = self.ChangedAxis();
  if (!given.boolean()) {
    axis.title.reset();
  } else if (!axis.title) {
    axis.title = u"Axis Title";
  }
}

constexpr Member<Axis> kMembers[] = {
    {u"Type", kProperty, "", [](Axis& self, const Arguments&) -> Variant { return self.type(); }},
    {u"HasTitle", kProperty, "",
     [](Axis& self, const Arguments&) -> Variant { return self.axis().title.has_value(); }, 'b',
     PutHasTitle},
    {u"AxisTitle", kProperty, "",
     [](Axis& self, const Arguments&) -> Variant {
       if (!self.axis().title) Refuse();
       return MakeOfAxis<AxisTitle>(self);
     }},
    {u"HasMajorGridlines", kProperty, "",
     [](Axis& self, const Arguments&) -> Variant { return self.axis().has_major_gridlines; }, 'b',
     [](Axis& self, const Arguments& given) {
       self.ChangedAxis().has_major_gridlines = given.boolean();
     }},
    End<&ChartAxis::minimum, 0>(u"MinimumScale"),
    End<&ChartAxis::maximum, 1>(u"MaximumScale"),
    EndIsAutomatic<&ChartAxis::minimum>(u"MinimumScaleIsAuto"),
    EndIsAutomatic<&ChartAxis::maximum>(u"MaximumScaleIsAuto"),
    {u"TickLabels", kProperty, "",
     [](Axis& self, const Arguments&) -> Variant { return MakeOfAxis<TickLabels>(self); }},
};

std::span<const Member<Axis>> Axis::Members() { return kMembers; }

}  // namespace

/// There are primary axes only.
Variant AxisOf(ChartItself& self, const Arguments& given) {
  const std::int32_t type = given.Integer(0);
  if ((type != kCategoryAxis && type != kValueAxis) || given.Integer(1, 1) != 1) Refuse();
  return MakeBeside<Axis>(self, self.shared_part(), type);
}

}  // namespace zavhost
