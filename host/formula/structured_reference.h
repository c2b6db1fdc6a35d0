#pragma once
// References to the parts of tables: Table1[Price], Table1[[#Headers],[Price]:[Tax]], [@Price].

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/workbook/value.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// A written structured reference. Without any item it stands for the data.
struct StructuredReference {
  std::u16string table;  // empty: the table that holds the caller
  bool all = false;
  bool headings = false;
  bool data = false;
  bool totals = false;
  bool this_row = false;
  std::u16string first_column{};  // empty: all columns
  std::u16string last_column{};
};

/// Reads "Table1[...]" or "[...]"; nothing for a text that is none, and for tables of other
/// workbooks.
std::optional<StructuredReference> ParseStructuredReference(std::u16string_view text);

/// The cells, or #REF! for a table, a column or a part that does not exist, and #VALUE! for "this
/// row" outside the table's data.
Operand ResolveStructured(const StructuredReference& written, const CellAddress& caller,
                          const Workbook& workbook);

}  // namespace zavhost
