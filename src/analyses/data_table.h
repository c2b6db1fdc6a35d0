#pragma once
// The table that an analysis is made of, wherever it stands, and the choice of its columns.

#include <string>
#include <vector>

#include "analyses/analysis.h"
#include "platform/function_ref.h"

namespace zavrel::analyses {

inline constexpr std::size_t kMostTableColumns = 1000;
inline constexpr std::size_t kMostTableRows = 1'000'000;

struct TableColumn {
  std::string name;
  Area cells;  // without the heading
  std::size_t numbers = 0;
  std::size_t others = 0;  // cells that are neither numbers nor blank
};

/// What an analysis is made of.
struct Selection {
  std::vector<std::string> columns;  // the variables by name; all columns of numbers if empty
  std::string by;                    // the column that divides the rows; none if empty
};

/// The names of the groups in a column, by its number, in any order: texts as
/// ZavCategoryNames gives them.
using ReadCategories = FunctionRef<std::vector<std::u16string>(std::size_t)>;

struct SelectedData {
  Data data;
  std::vector<Message> notes;  // on what is left out
};

/// Throws DataProblem for a name that is no column's, and for a column without numbers.
SelectedData SelectData(const std::vector<TableColumn>& table, const Selection& selection,
                        ReadCategories categories);

}  // namespace zavrel::analyses
