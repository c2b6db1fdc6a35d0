#include "msexcel/windows/charts.h"

namespace MsExcel {
namespace {

class ColorFormat : public ObjectOf<ColorFormat> {
 public:
  static constexpr std::string_view kName = "ColorFormat";
  using ObjectOf::ObjectOf;
  void SetRgb(long color) const { Put<"RGB">(color); }
};

/// How a series looks.
class ChartFormat : public ObjectOf<ChartFormat> {
 public:
  static constexpr std::string_view kName = "ChartFormat";
  using ObjectOf::ObjectOf;
  LineFormat Line() const { return Get<"Line">().As<LineFormat>(); }
  FillFormat Fill() const { return Get<"Fill">().As<FillFormat>(); }
};

}  // namespace

void LineFormat::SetColor(long color) const { Get<"ForeColor">().As<ColorFormat>().SetRgb(color); }
void FillFormat::SetColor(long color) const { Get<"ForeColor">().As<ColorFormat>().SetRgb(color); }
LineFormat Series::Line() const { return Get<"Format">().As<ChartFormat>().Line(); }
FillFormat Series::Fill() const { return Get<"Format">().As<ChartFormat>().Fill(); }

}  // namespace MsExcel
