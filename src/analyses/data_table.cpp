#include "analyses/data_table.h"

#include <algorithm>
#include <set>

#include "platform/letter_case.h"
#include "platform/utf.h"

namespace zavrel::analyses {
namespace {

std::size_t ColumnNamed(const std::vector<TableColumn>& table, const std::string& name) {
  const auto has_name = [&](const TableColumn& column) {
    return EqualIgnoringCase(Utf16FromUtf8(column.name), Utf16FromUtf8(name));
  };
  const auto found = std::ranges::find_if(table, has_name);
  if (found == table.end()) throw DataProblem({"the data have no column {0}", {name}});
  return static_cast<std::size_t>(found - table.begin());
}

/// In the order of ZavCategoryNames: by character code, each once whatever its letter case.
Grouping GroupingOf(const TableColumn& column, std::vector<std::u16string> texts) {
  std::set<std::u16string> known;
  std::erase_if(texts, [&](const std::u16string& text) {
    return text.empty() || !known.insert(LowerCase(text)).second;
  });
  std::ranges::sort(texts);
  Grouping grouping{column.name, column.cells, {}};
  for (const std::u16string& text : texts) grouping.categories.push_back(Utf8FromUtf16(text));
  return grouping;
}

void AddVariable(const TableColumn& column, SelectedData& selected) {
  if (column.numbers == 0) throw DataProblem({"the column {0} has no numbers", {column.name}});
  if (column.others > 0) {
    selected.notes.push_back({"{0}: cells that are no numbers and are left out: {1}",
                              {column.name, std::to_string(column.others)}});
  }
  selected.data.variables.push_back({column.name, column.cells, column.numbers});
}

}  // namespace

SelectedData SelectData(const std::vector<TableColumn>& table, const Selection& selection,
                        ReadCategories categories) {
  SelectedData selected;
  const TableColumn* by = nullptr;
  if (!selection.by.empty()) {
    const std::size_t number = ColumnNamed(table, selection.by);
    by = &table[number];
    selected.data.grouping = GroupingOf(*by, categories(number));
  }
  for (const std::string& name : selection.columns)
    AddVariable(table[ColumnNamed(table, name)], selected);
  if (!selection.columns.empty()) return selected;
  for (const TableColumn& column : table) {
    // A column of texts with a number among them is not meant.
    if (&column != by && column.numbers > column.others) AddVariable(column, selected);
  }
  if (selected.data.variables.empty())
    throw DataProblem({"the data have no column of numbers", {}});
  return selected;
}

}  // namespace zavrel::analyses
