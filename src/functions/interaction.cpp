// ZavInteraction: the product of several variables, row by row.
#include <algorithm>
#include <vector>

#include "frame/worksheet_function.h"
#include "functions/indicator.h"
#include "functions/result_column.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr std::size_t kMostPairs = 7;

/// One variable of the product: numeric, or the indicator of a category.
class Variable {
 public:
  /// With an empty category the variable is numeric.
  Variable(const CellColumns& cells, const std::u16string& category) : cells_(cells) {
    if (!category.empty()) indicator_.emplace(category);
  }

  /// Rows past the last used one of a whole column are blank.
  OrFailure<VariableCell> At(std::size_t row) {
    if (row >= cells_.size()) return VariableCell();
    const SingleValue cell = cells_[row];
    if (indicator_) return indicator_->Of(cell);
    return cell.IsNumber() ? VariableCell::Number(cell.number) : WithoutNumber(cell);
  }

 private:
  const CellColumns& cells_;
  std::optional<Indicator> indicator_;
};

/// The product of the variables in a row, or the cell of the leftmost variable without a number.
OrFailure<VariableCell> Product(std::vector<Variable>& variables, std::size_t row) {
  double product = 1;
  for (Variable& variable : variables) {
    const OrFailure<VariableCell> cell = variable.At(row);
    if (!cell.ok() || cell->kind != VariableCell::Kind::kNumber) return cell;
    product *= cell->number;
  }
  return VariableCell::Number(product);
}

}  // namespace

/// Up to seven pairs of a range and a category, two at least. With a category, the pair's variable
/// is 1 where a cell's text is the category's and 0 where it is another (functions/indicator.h).
/// With an empty category it is numeric, and a text or boolean is #VALUE!. Each row's cell is the
/// product of its variables. If variables have no number in the row, the cell is that of the
/// leftmost one: empty or an error. Ranges of different lengths: #VALUE!. A pair whose range is
/// left out is ignored.
ZAV_EXPORT XLOPER12* ZavrelInteraction(const XLOPER12* range1, const XLOPER12* category1,
                                       const XLOPER12* range2, const XLOPER12* category2,
                                       const XLOPER12* range3, const XLOPER12* category3,
                                       const XLOPER12* range4, const XLOPER12* category4,
                                       const XLOPER12* range5, const XLOPER12* category5,
                                       const XLOPER12* range6, const XLOPER12* category6,
                                       const XLOPER12* range7, const XLOPER12* category7) {
  return WorksheetFunction(
      "ZavrelInteraction", Reading("RSRSrsrsrsrsrs", MissingDataPolicy::kPositional).EqualLengths(),
      {range1, category1, range2, category2, range3, category3, range4, category4, range5,
       category5, range6, category6, range7, category7},
      [](const Parameters& read) -> CellResult {
        std::vector<Variable> variables;
        std::size_t rows = 0;
        for (std::size_t pair = 0; pair < kMostPairs; ++pair) {
          if (!read.given(2 * pair)) continue;
          const bool has_category = read.given(2 * pair + 1);
          variables.emplace_back(read.data(2 * pair).cells(),
                                 has_category ? read.text(2 * pair + 1) : std::u16string());
          rows = std::max(rows, read.numbers(2 * pair).size());
        }
        return ResultColumnOrFailure(rows,
                                     [&](std::size_t row) { return Product(variables, row); });
      });
}

}  // namespace zavrel
