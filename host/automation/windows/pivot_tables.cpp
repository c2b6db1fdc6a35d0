// PivotTables of a worksheet: what a test has planted.
#include "host/automation/windows/range.h"
#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

using PivotPtr = std::shared_ptr<PivotTableState>;

class PivotTable final : public SheetObject<PivotTable> {
 public:
  static constexpr std::u16string_view kName = u"PivotTable";
  static std::span<const Member<PivotTable>> Members();
  PivotTable(ExcelPtr excel, BookPtr book, SheetPtr sheet, PivotPtr table)
      : SheetObject(std::move(excel), std::move(book), std::move(sheet)),
        table_(std::move(table)) {}
  PivotTableState& table() const { return *table_; }

 private:
  PivotPtr table_;
};

class PivotTables final : public SheetObject<PivotTables> {
 public:
  static constexpr std::u16string_view kName = u"PivotTables";
  static std::span<const Member<PivotTables>> Members();
  using SheetObject::SheetObject;
};

Variant PivotItem(PivotTables& self, const Arguments& given) {
  const auto& tables = self.sheet().pivot_tables;
  const auto place = PlaceIn(tables, given[0], [](const PivotPtr& table) { return table->name; });
  if (!place) Refuse();
  return MakeBeside<PivotTable>(self, tables[*place]);
}

constexpr Member<PivotTables> kPivotTablesMembers[] = {
    {u"Count", kProperty, "",
     [](PivotTables& self, const Arguments&) { return Count(self.sheet().pivot_tables.size()); }},
    {u"Item", kAccessor, "Index:v", PivotItem},
    {u"_Default", kAccessor, "Index:v", PivotItem},
};
std::span<const Member<PivotTables>> PivotTables::Members() { return kPivotTablesMembers; }

constexpr Member<PivotTable> kPivotTableMembers[] = {
    {u"Name", kProperty, "",
     [](PivotTable& self, const Arguments&) -> Variant {
       return std::u16string_view(self.table().name);
     }},
    {u"TableRange1", kProperty, "",
     [](PivotTable& self, const Arguments&) { return RowsAsObject(self, self.table().range); }},
    {u"DataBodyRange", kProperty, "",
     [](PivotTable& self, const Arguments&) { return RowsAsObject(self, self.table().data); }},
    {u"RefreshTable", kMethod, "",
     [](PivotTable& self, const Arguments&) -> Variant {
       if (self.sheet().protection.of_contents) Refuse();
       ++self.table().refreshes;
       return true;
     }},
};
std::span<const Member<PivotTable>> PivotTable::Members() { return kPivotTableMembers; }

constexpr Member<WorksheetObject> kSheetMembers[] = {
    {u"PivotTables", kAccessor, "Index?v",
     [](WorksheetObject& self, const Arguments& given) {
       return CollectionOf<PivotTables>(self, given, PivotItem);
     }},
};

}  // namespace

std::span<const Member<WorksheetObject>> WorksheetPivotMembers() { return kSheetMembers; }

}  // namespace zavhost
