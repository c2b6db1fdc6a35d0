// ListObjects, which are the tables of a worksheet, with their columns.
#include <algorithm>

#include "host/automation/formula_edit.h"
#include "host/automation/windows/range.h"
#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

using TablePtr = std::shared_ptr<Table>;

class ListObjects final : public SheetObject<ListObjects> {
 public:
  static constexpr std::u16string_view kName = u"ListObjects";
  static std::span<const Member<ListObjects>> Members();
  using SheetObject::SheetObject;
};

/// An object of a table.
template <class Self>
class TablePart : public SheetObject<Self> {
 public:
  // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): it stands between others and a class.
  TablePart(ExcelPtr excel, BookPtr book, SheetPtr sheet, TablePtr table)
      : SheetObject<Self>(std::move(excel), std::move(book), std::move(sheet)),
        table_(std::move(table)) {}
  Table& table() const { return *table_; }
  const TablePtr& shared_table() const { return table_; }

 private:
  TablePtr table_;
};

class ListObject final : public TablePart<ListObject> {
 public:
  static constexpr std::u16string_view kName = u"ListObject";
  static std::span<const Member<ListObject>> Members();
  using TablePart::TablePart;
};

class ListColumns final : public TablePart<ListColumns> {
 public:
  static constexpr std::u16string_view kName = u"ListColumns";
  static std::span<const Member<ListColumns>> Members();
  using TablePart::TablePart;
};

class ListColumn final : public TablePart<ListColumn> {
 public:
  static constexpr std::u16string_view kName = u"ListColumn";
  static std::span<const Member<ListColumn>> Members();
  ListColumn(ExcelPtr excel, BookPtr book, SheetPtr sheet, TablePtr table, std::size_t number)
      : TablePart(std::move(excel), std::move(book), std::move(sheet), std::move(table)),
        number_(number) {}
  std::size_t number() const { return number_; }
  /// The column's part of some rows of the table.
  CellRange Of(const CellRange& rows) const {
    const std::int32_t column = table().range.first_column + static_cast<std::int32_t>(number_);
    return {rows.first_row, column, rows.last_row, column};
  }

 private:
  std::size_t number_;
};

CellRange HeaderOf(const Table& table) {
  CellRange rows = table.range;
  rows.last_row = rows.first_row + table.heading_rows - 1;
  return rows;
}
CellRange BodyOf(const Table& table) {
  CellRange rows = table.range;
  rows.first_row += table.heading_rows;
  rows.last_row -= table.total_rows;
  return rows;
}

// A new table.

bool IsTaken(const Book& book, std::u16string_view name) {
  return std::any_of(book.sheets().begin(), book.sheets().end(), [&](const SheetPtr& sheet) {
    return std::any_of(sheet->tables.begin(), sheet->tables.end(),
                       [&](const TablePtr& table) { return EqualIgnoringCase(table->name, name); });
  });
}

std::u16string FreeName(const Book& book) {
  for (int number = 1;; ++number) {
    std::u16string name = u"Table" + Utf16FromUtf8(std::to_string(number));
    if (!IsTaken(book, name)) return name;
  }
}

/// The headings become texts, different ones, as a table has them.
void TakeHeadings(ListObjects& self, Table& table) {
  const CellRange header = HeaderOf(table);
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(self.sheet());
  for (std::int32_t column = header.first_column; column <= header.last_column; ++column) {
    const std::u16string wanted = GeneralText(cells.At(header.first_row, column));
    const std::u16string base = wanted.empty() ? u"Column" : wanted;
    std::u16string heading = wanted;
    for (int number = wanted.empty() ? 1 : 2;
         heading.empty() ||
         std::find(table.columns.begin(), table.columns.end(), heading) != table.columns.end();
         ++number)
      heading = base + Utf16FromUtf8(std::to_string(number));
    table.columns.push_back(heading);
    self.book().SetValue(self.sheet(), {header.first_row, column},
                         Value(std::u16string_view(heading)));
  }
}

/// From a range whose first row has the headings.
Variant Add(ListObjects& self, const Arguments& given) {
  constexpr std::int32_t kSourceRange = 1, kWithoutHeadings = 2;
  SheetState& sheet = self.sheet();
  if (given.Integer(0, kSourceRange) != kSourceRange || given.Integer(3, 1) == kWithoutHeadings ||
      sheet.protection.of_contents)
    Refuse();
  const auto* source = In<RangeObject>(given[1]);
  if (source == nullptr || &source->sheet() != &sheet || source->areas().size() != 1) Refuse();
  const auto table = std::make_shared<Table>();
  table->range = source->first();
  for (const TablePtr& other : sheet.tables) {
    const CellRange &a = other->range, &b = table->range;
    if (a.first_row <= b.last_row && b.first_row <= a.last_row && a.first_column <= b.last_column &&
        b.first_column <= a.last_column)
      Refuse();
  }
  // A table has at least one row of data.
  if (table->range.rows() == 1) ++table->range.last_row;
  table->name = FreeName(self.book());
  TakeHeadings(self, *table);
  sheet.tables.push_back(table);
  self.book().Touch();
  return MakeBeside<ListObject>(self, table);
}

Variant Item(ListObjects& self, const Arguments& given) {
  const auto& tables = self.sheet().tables;
  const auto place = PlaceIn(tables, given[0], [](const TablePtr& table) { return table->name; });
  if (!place) RefuseIndex();
  return MakeBeside<ListObject>(self, tables[*place]);
}

constexpr Member<ListObjects> kCollectionMembers[] = {
    {u"Count", kProperty, "",
     [](ListObjects& self, const Arguments&) { return Count(self.sheet().tables.size()); }},
    {u"Item", kProperty, "Index:v", Item},
    {u"_Default", kProperty, "Index:v", Item},
    {u"Add", kMethod,
     "SourceType?i Source?v LinkSource?v XlListObjectHasHeaders?i Destination?v TableStyleName?v",
     Add},
};
std::span<const Member<ListObjects>> ListObjects::Members() { return kCollectionMembers; }

constexpr Member<ListObject> kTableMembers[] = {
    {u"Name", kProperty, "",
     [](ListObject& self, const Arguments&) -> Variant {
       return std::u16string_view(self.table().name);
     },
     's',
     [](ListObject& self, const Arguments& given) {
       if (!IsDefinedName(given.text()) || IsTaken(self.book(), given.text())) Refuse();
       self.table().name = given.text();
       self.book().Touch();
     }},
    {u"Range", kProperty, "",
     [](ListObject& self, const Arguments&) { return RowsAsObject(self, self.table().range); }},
    {u"HeaderRowRange", kProperty, "",
     [](ListObject& self, const Arguments&) { return RowsAsObject(self, HeaderOf(self.table())); }},
    {u"DataBodyRange", kProperty, "",
     [](ListObject& self, const Arguments&) { return RowsAsObject(self, BodyOf(self.table())); }},
    {u"ListColumns", kProperty, "",
     [](ListObject& self, const Arguments&) -> Variant {
       return MakeBeside<ListColumns>(self, self.shared_table());
     }},
    {u"Parent", kProperty, "",
     [](ListObject& self, const Arguments&) -> Variant {
       return MakeWorksheet(self.shared_excel(), self.shared_book(), self.shared_sheet());
     }},
};
std::span<const Member<ListObject>> ListObject::Members() { return kTableMembers; }

Variant ColumnItem(ListColumns& self, const Arguments& given) {
  const auto& names = self.table().columns;
  const auto place = PlaceIn(names, given[0], [](const std::u16string& name) { return name; });
  if (!place) RefuseIndex();
  return MakeBeside<ListColumn>(self, self.shared_table(), *place);
}

constexpr Member<ListColumns> kColumnsMembers[] = {
    {u"Count", kProperty, "",
     [](ListColumns& self, const Arguments&) { return Count(self.table().columns.size()); }},
    {u"Item", kProperty, "Index:v", ColumnItem},
    {u"_Default", kProperty, "Index:v", ColumnItem},
};
std::span<const Member<ListColumns>> ListColumns::Members() { return kColumnsMembers; }

constexpr Member<ListColumn> kColumnMembers[] = {
    {u"Name", kProperty, "",
     [](ListColumn& self, const Arguments&) -> Variant {
       return std::u16string_view(self.table().columns[self.number()]);
     }},
    {u"Index", kProperty, "",
     [](ListColumn& self, const Arguments&) { return Count(self.number() + 1); }},
    {u"Range", kProperty, "",
     [](ListColumn& self, const Arguments&) {
       return RowsAsObject(self, self.Of(self.table().range));
     }},
    {u"DataBodyRange", kProperty, "",
     [](ListColumn& self, const Arguments&) {
       return RowsAsObject(self, self.Of(BodyOf(self.table())));
     }},
};
std::span<const Member<ListColumn>> ListColumn::Members() { return kColumnMembers; }

constexpr Member<WorksheetObject> kSheetMembers[] = {
    {u"ListObjects", kAccessor, "Index?v",
     [](WorksheetObject& self, const Arguments& given) {
       return CollectionOf<ListObjects>(self, given, Item);
     }},
};

}  // namespace

std::span<const Member<WorksheetObject>> WorksheetListMembers() { return kSheetMembers; }

}  // namespace zavhost
