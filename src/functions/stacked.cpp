// Data sets made of parts of ranges and of several ranges: ZavDestack, ZavMulti.
#include <optional>
#include <string>
#include <vector>

#include "data/data_argument.h"
#include "data/session_caches.h"
#include "data/stacked_data.h"
#include "excel/reference.h"
#include "excel/scalar_argument.h"
#include "frame/worksheet_function.h"
#include "functions/put_cell.h"
#include "platform/export.h"

namespace zavrel {
namespace {

bool IsGiven(const XLOPER12* argument) { return !XXloper::FromArgument(argument).IsMissing(); }

/// A category variable and the name that is asked for; nothing when either is left out or cannot be
/// read.
std::optional<StackedSelection::Condition> ConditionOf(const XLOPER12* categories,
                                                       const XLOPER12* name) {
  if (!IsGiven(categories)) return std::nullopt;
  auto read = ReadText(XXloper::FromArgument(name), Presence::kRequired);
  auto kept = KeptArgument::Of(*categories);
  if (!read.given() || !kept) return std::nullopt;
  return StackedSelection::Condition{*std::move(kept), std::move(read.value)};
}

std::optional<std::string> HandleOf(std::optional<StackedSelection> selection) {
  ExcelDataCache* cache = SessionExcelDataCache();
  if (!selection || cache == nullptr) return std::nullopt;
  return StackedHandle(cache->stacked_selections().IndexOf(*std::move(selection)));
}

enum class Order { kHost = 0, kByColumns = 1 };

/// The cells of one area, array or value after the others, each in its place.
class MultiRange {
 public:
  explicit MultiRange(Order order) : order_(order) {}

  /// False with the call's result in failure().
  bool Add(const XLOPER12& piece) {
    const auto reference = ReferenceView::Of(piece);
    if (!reference) return AddPart(piece);
    for (const XLREF12& area : reference->areas()) {
      const OneArea part(*reference, area);
      if (!AddPart(part.record())) return false;
    }
    return true;
  }
  const XXloper& failure() const { return failure_; }

  /// One column; of no cells an empty value.
  XXloper Column() const {
    if (cells_.size() == 0) return XXloper::Nil();
    XXloperArray column(static_cast<std::int32_t>(cells_.size()), 1);
    for (std::size_t i = 0; i < cells_.size(); ++i) PutCell(column, i, cells_[i]);
    return std::move(column).Finish();
  }

 private:
  bool AddPart(const XLOPER12& part) {
    const DataArgument read = ReadDataArgument(std::array{&part});
    if (read.outcome != ReadOutcome::kRead) return Fail(ExcelError::kRef);
    const CellColumns& cells = read.data->cells();
    const std::size_t count = UsedCells(part, cells);
    if (count > kExcelRows - cells_.size()) return Fail(ExcelError::kValue);
    if (order_ == Order::kHost) {
      cells_.AppendPart(cells, 0, count);
      return true;
    }
    const std::optional<std::size_t> columns = ColumnsIn(part, *read.data);
    if (!columns) return Fail(ExcelError::kValue);
    for (std::size_t column = 0; column < *columns; ++column) {
      for (std::size_t i = column; i < count; i += *columns) cells_.AppendPart(cells, i, 1);
    }
    return true;
  }

  /// Excel passes whole columns, where it is asked for values, as an array with all their cells: of
  /// that the rows down to the last used one.
  static std::size_t UsedCells(const XLOPER12& part, const CellColumns& cells) {
    std::size_t count = cells.size();
    if (TypeOf(part) != xltypeMulti || part.val.array.rows < kExcelRows) return count;
    while (count > 0 && cells.tag(count - 1) == CellTag::kBlank) --count;
    const auto columns = static_cast<std::size_t>(part.val.array.columns);
    return (count + columns - 1) / columns * columns;
  }

  /// How many columns the cells of a part have. Nothing for a whole sheet, cut down to its used
  /// part on two sides.
  static std::optional<std::size_t> ColumnsIn(const XLOPER12& part, const ExcelData& data) {
    if (TypeOf(part) == xltypeMulti) return static_cast<std::size_t>(part.val.array.columns);
    switch (data.layout().kind) {
      case CellLayout::Kind::kComplete:
      case CellLayout::Kind::kOpenEnd:
        return std::max<std::size_t>(data.layout().width, 1);
      case CellLayout::Kind::kWholeRows:
        return std::max<std::size_t>(data.size() / data.layout().width, 1);
      case CellLayout::Kind::kClipped:
        break;
    }
    return std::nullopt;
  }

  bool Fail(ExcelError error) {
    failure_ = XXloper::Error(error);
    return false;
  }

  Order order_;
  CellColumns cells_;
  XXloper failure_;
};

}  // namespace

/// The handle of a selection: the values of the rows that belong to a category, or to two. Every
/// function that takes data takes it in the place of a range; there the data are read afresh.
/// Excel shows #NUM! when an argument is missing or cannot be read; the second variable and its
/// name go together. A handle from an earlier session: #REF! where it is used.
ZAV_EXPORT const char* ZavrelDestack(const XLOPER12* values, const XLOPER12* categories1,
                                     const XLOPER12* name1, const XLOPER12* categories2,
                                     const XLOPER12* name2) {
  return TextFunction("ZavrelDestack", [&]() -> std::optional<std::string> {
    if (!IsGiven(values)) return std::nullopt;
    auto kept = KeptArgument::Of(*values);
    auto first = ConditionOf(categories1, name1);
    const bool has_second = IsGiven(categories2) || IsGiven(name2);
    auto second = has_second ? ConditionOf(categories2, name2) : std::nullopt;
    if (!kept || !first || (has_second && !second)) return std::nullopt;
    return HandleOf(StackedSelection{*std::move(kept), *std::move(first), std::move(second)});
  });
}

/// Several ranges as one data set, a column of all their cells: the areas of `range` as given, then
/// `more`, a further range, an array or the result of this function. `order` 0 takes each area row
/// by row, as Excel does, 1 column by column. Of whole columns and rows the used part is taken (of
/// a whole sheet by order 0 only). Anything else, and more cells than a sheet has rows: #VALUE!;
/// cells that cannot be read: #REF!.
ZAV_EXPORT XLOPER12* ZavrelMultiRange(std::int16_t order, const XLOPER12* range,
                                      const XLOPER12* more) {
  return WorksheetFunction("ZavrelMultiRange", [&]() -> XXloper {
    const bool known_order = order == 0 || order == 1;
    if (!known_order || !IsGiven(range)) return XXloper::Error(ExcelError::kValue);
    MultiRange all(static_cast<Order>(order));
    if (!all.Add(*range) || (IsGiven(more) && !all.Add(*more))) return all.failure();
    return all.Column();
  });
}

}  // namespace zavrel
