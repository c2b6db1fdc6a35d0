#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "host/formula/argument_reader.h"
#include "host/formula/builtin_groups.h"
#include "host/formula/criteria.h"

namespace zavhost {
namespace {

/// The maximum number of positions at which the ranges of one call are compared, which is what a
/// range may have: two sheets could be used far down and far to the right.
constexpr std::int64_t kMostPositions = 1 << 23;
/// The maximum number of cells that one call holds at a time; 127 ranges of 8 million would take
/// 16 GB.
constexpr std::size_t kMostCells = 50'000'000;

const Value kBlank;

/// A range as far as its sheet is used; what lies beyond is blank.
struct Cells {
  CellRange area;
  ArrayPtr stored = std::make_shared<const Array>(Array{1, 1, {Value()}});

  const Value& At(std::int32_t row, std::int32_t column) const {
    const bool is_stored = row < stored->rows && column < stored->columns;
    return is_stored ? stored->At(row, column) : kBlank;
  }
};

/// The only area of an argument that must be a reference.
CellRange ReadArea(std::size_t index, ArgumentReader& read) {
  const Reference* reference = read.AsReference(index);
  if (reference != nullptr && reference->areas.size() == 1) return reference->areas.front();
  const Value value = reference == nullptr ? read.Any(index) : Value();
  read.Fail(value.error() != nullptr ? *value.error() : ErrorCode::kValue);
  return {};
}

/// Reads an area on the sheet of an argument.
Cells ReadCells(const BuiltInCall& call, std::size_t index, const CellRange& area,
                ArgumentReader& read) {
  Cells cells{.area = area};
  if (read.failed()) return cells;
  cells.stored = call.context.ReadRange(read.AsReference(index)->sheet, area, RangeExtent::kUsed);
  // A range that is too large to read is an error.
  const Value& first = cells.stored->values.front();
  const bool is_large = std::int64_t{area.rows()} * area.columns() > kMostPositions;
  if (is_large && cells.stored->values.size() == 1 && first == Value(ErrorCode::kValue))
    read.Fail(ErrorCode::kValue);
  return cells;
}

/// Ranges of one shape and the criterion of each.
class Conditions {
 public:
  /// Reads the pair of a range and a criterion at an index.
  void Read(const BuiltInCall& call, std::size_t index, ArgumentReader& read) {
    Cells cells = ReadCells(call, index, ReadArea(index, read), read);
    auto criterion = Criterion::Of(read.Any(index + 1));
    cells_held_ += cells.stored->values.size();
    read.Require(criterion && HasShapeOf(cells.area) && cells_held_ <= kMostCells,
                 ErrorCode::kValue);
    if (!read.failed()) conditions_.push_back({std::move(cells), std::move(*criterion)});
  }

  bool HasShapeOf(const CellRange& area) const {
    return conditions_.empty() || (conditions_.front().cells.area.rows() == area.rows() &&
                                   conditions_.front().cells.area.columns() == area.columns());
  }

  /// The first range.
  const Cells& first() const { return conditions_.front().cells; }

  /// Calls visit(value) for the cells of `values` where every condition holds, as far as any of the
  /// sheets is used, and returns the number of these cells. Fails if this is too far.
  template <typename Visit>
  double VisitMatches(const Cells& values, ArgumentReader& read, const Visit& visit) const {
    std::int32_t rows = values.stored->rows;
    std::int32_t columns = values.stored->columns;
    for (const Condition& condition : conditions_) {
      rows = std::max(rows, condition.cells.stored->rows);
      columns = std::max(columns, condition.cells.stored->columns);
    }
    rows = std::min(rows, values.area.rows());
    columns = std::min(columns, values.area.columns());
    read.Require(std::int64_t{rows} * columns <= kMostPositions, ErrorCode::kValue);
    if (read.failed()) return 0.0;
    double matches = 0.0;
    for (std::int32_t row = 0; row < rows; ++row) {
      for (std::int32_t column = 0; column < columns; ++column) {
        if (!HoldAt(row, column)) continue;
        matches += 1.0;
        visit(values.At(row, column));
      }
    }
    const double all = static_cast<double>(values.area.rows()) * values.area.columns();
    const double beyond = all - static_cast<double>(rows) * columns;
    return beyond > 0.0 && HoldForBlanks() ? matches + beyond : matches;
  }

 private:
  struct Condition {
    Cells cells;
    Criterion criterion;
  };

  bool HoldAt(std::int32_t row, std::int32_t column) const {
    return std::all_of(conditions_.begin(), conditions_.end(), [=](const Condition& condition) {
      return condition.criterion.Holds(condition.cells.At(row, column));
    });
  }
  bool HoldForBlanks() const {
    return std::all_of(conditions_.begin(), conditions_.end(), [](const Condition& condition) {
      return condition.criterion.Holds(kBlank);
    });
  }

  std::vector<Condition> conditions_;
  std::size_t cells_held_ = 0;
};

enum class Statistic { kCount, kSum, kAverage, kLargest, kSmallest };

/// The numbers of the cells that were found.
class Tally {
 public:
  void Add(const Value& value) {
    if (value.error() != nullptr && !error_) error_ = *value.error();
    const double* number = value.number();
    if (number == nullptr) return;
    AddToSum(*number);
    largest_ = count_ > 0.0 ? std::max(largest_, *number) : *number;
    smallest_ = count_ > 0.0 ? std::min(smallest_, *number) : *number;
    count_ += 1.0;
  }

  Value Result(Statistic statistic) const {
    if (error_) return *error_;
    const double sum = sum_ + (std::isfinite(sum_) ? correction_ : 0.0);
    switch (statistic) {
      case Statistic::kAverage:
        return count_ > 0.0 ? NumberValue(sum / count_) : ErrorCode::kDiv0;
      case Statistic::kLargest:
        return largest_;
      case Statistic::kSmallest:
        return smallest_;
      default:
        return NumberValue(sum);
    }
  }

 private:
  /// Neumaier's compensated sum.
  void AddToSum(double number) {
    const double next = sum_ + number;
    correction_ +=
        std::fabs(sum_) >= std::fabs(number) ? (sum_ - next) + number : (number - next) + sum_;
    sum_ = next;
  }

  double count_ = 0.0;
  double sum_ = 0.0;
  double correction_ = 0.0;
  double largest_ = 0.0;
  double smallest_ = 0.0;
  std::optional<ErrorCode> error_;
};

template <Statistic kStatistic>
Operand Calculated(const Conditions& conditions, const Cells& values, ArgumentReader& read) {
  Tally tally;
  const double matches =
      conditions.VisitMatches(values, read, [&tally](const Value& value) { tally.Add(value); });
  if (read.failed()) return read.failure();
  return kStatistic == Statistic::kCount ? Value(matches) : tally.Result(kStatistic);
}

/// The area from the same top left that has the shape of another one, or what the sheet leaves of
/// it.
CellRange Reshaped(const CellRange& area, const CellRange& shape) {
  return {area.first_row, area.first_column,
          std::min(area.first_row + shape.rows(), formula::kSheetRows) - 1,
          std::min(area.first_column + shape.columns(), formula::kSheetColumns) - 1};
}

/// A range, a criterion and perhaps the range of the numbers.
template <Statistic kStatistic>
Operand If(const BuiltInCall& call) {
  ArgumentReader read(call);
  Conditions conditions;
  conditions.Read(call, 0, read);
  if (read.failed()) return read.failure();
  if (read.IsOmitted(2)) return Calculated<kStatistic>(conditions, conditions.first(), read);
  const CellRange numbers = Reshaped(ReadArea(2, read), conditions.first().area);
  const Cells values = ReadCells(call, 2, numbers, read);
  if (read.failed()) return read.failure();
  return Calculated<kStatistic>(conditions, values, read);
}

/// The range of the numbers, except for COUNTIFS, and pairs of a range and a criterion.
template <Statistic kStatistic>
Operand Ifs(const BuiltInCall& call) {
  constexpr bool kCounts = kStatistic == Statistic::kCount;
  constexpr std::size_t kFirst = kCounts ? 0 : 1;
  ArgumentReader read(call);
  if ((read.count() - kFirst) % 2 != 0) return Value(ErrorCode::kValue);
  Conditions conditions;
  for (std::size_t i = kFirst; i < read.count(); i += 2) conditions.Read(call, i, read);
  if (read.failed()) return read.failure();
  if (kCounts) return Calculated<kStatistic>(conditions, conditions.first(), read);
  const Cells values = ReadCells(call, 0, ReadArea(0, read), read);
  read.Require(conditions.HasShapeOf(values.area), ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return Calculated<kStatistic>(conditions, values, read);
}

/// Blanks and empty texts.
Operand CountBlank(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Cells cells = ReadCells(call, 0, ReadArea(0, read), read);
  if (read.failed()) return read.failure();
  double filled = 0.0;
  for (const Value& value : cells.stored->values) {
    const std::u16string* text = value.text();
    filled += value.IsBlank() || (text != nullptr && text->empty()) ? 0.0 : 1.0;
  }
  return Value(static_cast<double>(cells.area.rows()) * cells.area.columns() - filled);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"COUNTIF", 2, 2, "rs", If<Statistic::kCount>},
    {u"SUMIF", 2, 3, "rsr", If<Statistic::kSum>},
    {u"AVERAGEIF", 2, 3, "rsr", If<Statistic::kAverage>},
    {u"COUNTIFS", 2, 254, "(rs)", Ifs<Statistic::kCount>},
    {u"SUMIFS", 3, 255, "r(rs)", Ifs<Statistic::kSum>},
    {u"AVERAGEIFS", 3, 255, "r(rs)", Ifs<Statistic::kAverage>},
    {u"MAXIFS", 3, 255, "r(rs)", Ifs<Statistic::kLargest>},
    {u"MINIFS", 3, 255, "r(rs)", Ifs<Statistic::kSmallest>},
    {u"COUNTBLANK", 1, 1, "r", CountBlank},
};

}  // namespace

std::span<const BuiltInFunction> ConditionalFunctions() { return kFunctions; }

}  // namespace zavhost
