#include "host/xlsx/sheet_positions.h"

#include <fmt/format.h>

#include "host/xlsx/messages.h"

namespace zavhost {

std::int32_t SheetPositions::StartRow(const XmlReader& reader) {
  const std::uint32_t number =
      reader.NumberAttribute("r").value_or(static_cast<std::uint32_t>(row_) + 2);
  if (number == 0 || number > static_cast<std::uint32_t>(kSheetRows)) {
    throw XmlError(
        fmt::format("it has a row {}; rows are numbered from 1 to {}", number, kSheetRows));
  }
  row_ = static_cast<std::int32_t>(number) - 1;
  next_column_ = 0;
  return row_;
}

CellPosition SheetPositions::StartCell(const XmlReader& reader) {
  CellPosition cell{row_, next_column_};
  if (const XmlAttribute* name = reader.FindAttribute("r")) {
    const std::optional<CellPosition> named = ParseCellName(name->raw);
    if (!named) throw XmlError(fmt::format("there is no cell '{}'", Printable(name->raw)));
    cell = *named;
  } else if (cell.column >= kSheetColumns) {
    throw XmlError(fmt::format("row {} has more than {} cells", row_ + 1, kSheetColumns));
  }
  next_column_ = cell.column + 1;
  return cell;
}

}  // namespace zavhost
