#include "msexcel/windows/range.h"

#include "msexcel/windows/workbook.h"

namespace MsExcel {
namespace {

/// XlReferenceStyle and XlLookAt.
constexpr long kA1Style = 1;
constexpr long kPartOfText = 2;

/// The rows, columns or areas of a range.
class Parts : public Collection<Parts, Range> {
 public:
  static constexpr std::string_view kName = "Areas";
  using Collection::Collection;
};

class Interior : public ObjectOf<Interior> {
 public:
  static constexpr std::string_view kName = "Interior";
  using ObjectOf::ObjectOf;
  void SetColor(long color) const { Put<"Color">(color); }
};

/// Of a property that holds for all cells, none, or some.
bool AnyCell(const Answer& answer) { return answer.IsMixed() || answer.Flag(); }

}  // namespace

long Range::RowCount() const { return Get<"Rows">().As<Parts>().Count(); }
long Range::ColumnCount() const { return Get<"Columns">().As<Parts>().Count(); }
long Range::AreaCount() const { return Get<"Areas">().As<Parts>().Count(); }

std::vector<Range> Range::Areas() const { return Get<"Areas">().As<Parts>().All(); }

std::u16string Range::Address(bool external) const {
  return Get<"Address">({true, true, kA1Style, external}).Text();
}

Worksheet Range::ParentSheet() const { return Get<"Worksheet">().As<Worksheet>(); }

bool Range::HasArray() const { return AnyCell(Get<"HasArray">()); }
bool Range::HasMergedCells() const { return AnyCell(Get<"MergeCells">()); }

void Range::ReplaceInFormulas(std::u16string_view what, std::u16string_view replacement) const {
  Call<"Replace">({what, replacement, kPartOfText});
}

void Range::SetFillColor(long color) const { Get<"Interior">().As<Interior>().SetColor(color); }

}  // namespace MsExcel
