#include "host/xlsx/table_reader.h"

#include "host/workbook/cell_names.h"
#include "host/workbook/text.h"
#include "host/xlsx/xml_reader.h"
#include "host/xlsx/xml_text.h"

namespace zavhost {
namespace {

CellRange RangeAttribute(const XmlReader& reader) {
  const std::optional<CellRange> range = ParseRangeName(reader.Attribute("ref").value_or(""));
  if (!range) throw XmlError("it does not say which cells it covers");
  return *range;
}

}  // namespace

Table ReadTable(std::string_view xml, std::uint32_t sheet, std::optional<CellRange>& filter) {
  XmlReader reader(xml);
  reader.Next();
  if (reader.name() != "table") throw XmlError("it is not a table");
  Table table;
  table.name = Utf16FromUtf8(reader.Attribute("displayName").value_or(""));
  table.sheet = sheet;
  table.range = RangeAttribute(reader);
  table.heading_rows = reader.NumberAttribute("headerRowCount").value_or(1) != 0 ? 1 : 0;
  table.total_rows = reader.NumberAttribute("totalsRowCount").value_or(0) != 0 ? 1 : 0;
  while (reader.NextStart()) {
    if (reader.name() == "autoFilter") filter = RangeAttribute(reader);
    if (reader.name() == "tableColumn")
      table.columns.push_back(UnescapeCellText(reader.Attribute("name").value_or("")));
  }
  if (table.columns.size() != static_cast<std::size_t>(table.range.columns()))
    throw XmlError("it does not name its columns");
  return table;
}

}  // namespace zavhost
