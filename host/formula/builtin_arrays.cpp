#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "host/formula/array_parts.h"
#include "host/formula/builtin_groups.h"
#include "host/formula/rectangle.h"

namespace zavhost {
namespace {

/// An array whose size is given, filled by f() row by row: #VALUE! for a size that no sheet has
/// or that is too large, #CALC! for an empty one.
template <typename Function>
Operand Made(double rows, double columns, const Function& f) {
  const bool is_valid = rows >= 0.0 && rows <= formula::kSheetRows && columns >= 0.0 &&
                        columns <= formula::kSheetColumns && rows * columns <= kLargestMadeArray;
  if (!is_valid) return Value(ErrorCode::kValue);
  if (rows * columns == 0.0) return Value(ErrorCode::kCalc);
  std::vector<Value> values(static_cast<std::size_t>(rows * columns));
  std::generate(values.begin(), values.end(), f);
  return ArrayResult(static_cast<std::int32_t>(rows), static_cast<std::int32_t>(columns),
                     std::move(values));
}

/// A number where an argument that is left empty takes the default, too.
double NumberOr(ArgumentReader& read, std::size_t index, double otherwise) {
  return read.IsOmitted(index) ? otherwise : read.Number(index);
}
double WholeOr(ArgumentReader& read, std::size_t index, double otherwise) {
  return std::trunc(NumberOr(read, index, otherwise));
}

Operand Sequence(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double rows = WholeOr(read, 0, 1.0);
  const double columns = WholeOr(read, 1, 1.0);
  const double start = NumberOr(read, 2, 1.0);
  const double step = NumberOr(read, 3, 1.0);
  if (read.failed()) return read.failure();
  double index = 0.0;
  return Made(rows, columns, [&] { return NumberValue(start + step * index++); });
}

Operand RandArray(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double rows = WholeOr(read, 0, 1.0);
  const double columns = WholeOr(read, 1, 1.0);
  const double least = NumberOr(read, 2, 0.0);
  const double most = NumberOr(read, 3, 1.0);
  const bool is_whole = read.Boolean(4, false);
  const auto is_fraction = [](double number) { return number != std::trunc(number); };
  read.Require(least <= most && !(is_whole && (is_fraction(least) || is_fraction(most))),
               ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return Made(rows, columns, [&] {
    const double random = call.context.Random();
    return NumberValue(is_whole ? least + std::floor(random * (most - least + 1.0))
                                : least + random * (most - least));
  });
}

/// Rows or columns that follow each other.
struct Run {
  std::int32_t first;
  std::int32_t count;
};

/// The first lines that TAKE takes, or the last ones for a negative number; all without a number.
Run Taken(ArgumentReader& read, std::size_t index, std::int32_t size) {
  const double number = WholeOr(read, index, size);
  const auto count = static_cast<std::int32_t>(std::min<double>(std::fabs(number), size));
  return {number < 0.0 ? size - count : 0, count};
}

/// What remains if DROP drops the first lines, or the last ones for a negative number.
Run Dropped(ArgumentReader& read, std::size_t index, std::int32_t size) {
  const double number = WholeOr(read, index, 0.0);
  const auto count = static_cast<std::int32_t>(std::min<double>(std::fabs(number), size));
  return {number > 0.0 ? count : 0, size - count};
}

template <Run (*kRemaining)(ArgumentReader&, std::size_t, std::int32_t)>
Operand PartOf(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Rectangle source = ReadRectangle(call, 0, read);
  const Run rows = kRemaining(read, 1, source.rows());
  const Run columns = kRemaining(read, 2, source.columns());
  if (read.failed()) return read.failure();
  if (rows.count == 0 || columns.count == 0) return Value(ErrorCode::kCalc);
  return source.Part(rows.first, columns.first, rows.count, columns.count);
}

/// CHOOSEROWS and CHOOSECOLS: lines by number, from the end for negative ones.
template <bool kOfColumns>
Operand Choose(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const std::int32_t size = kOfColumns ? array->columns : array->rows;
  std::vector<std::int32_t> chosen;
  for (std::size_t i = 1; i < read.count(); ++i) {
    const ArrayPtr lines = read.Array(i);
    for (const Value& value : lines->values) {
      const Converted<double> number = ToNumber(value);
      const double line = std::trunc(number.value);
      if (number.error) return Value(*number.error);
      if (line == 0.0 || std::fabs(line) > size) return Value(ErrorCode::kValue);
      chosen.push_back(static_cast<std::int32_t>(line > 0.0 ? line - 1.0 : size + line));
    }
  }
  return ByLines(array, kOfColumns,
                 [&chosen](const ArrayPtr& rows) { return RowsOf(*rows, chosen); });
}

/// The arrays one below the other, with #N/A where one is narrower than the others.
Operand Stacked(const std::vector<ArrayPtr>& arrays) {
  Array stacked{0, 1, {}};
  double rows = 0.0;
  for (const ArrayPtr& array : arrays) {
    rows += array->rows;
    stacked.columns = std::max(stacked.columns, array->columns);
  }
  if (rows * stacked.columns > kLargestMadeArray) return Value(ErrorCode::kValue);
  stacked.rows = static_cast<std::int32_t>(rows);
  for (const ArrayPtr& array : arrays) {
    for (std::int32_t row = 0; row < array->rows; ++row) {
      for (std::int32_t column = 0; column < stacked.columns; ++column) {
        stacked.values.push_back(column < array->columns ? array->At(row, column)
                                                         : Value(ErrorCode::kNA));
      }
    }
  }
  return ArrayResult(stacked.rows, stacked.columns, std::move(stacked.values));
}

template <bool kBeside>
Operand Stack(const BuiltInCall& call) {
  ArgumentReader read(call);
  std::vector<ArrayPtr> arrays;
  for (std::size_t i = 0; i < read.count(); ++i) {
    const ArrayPtr array = read.Array(i);
    arrays.push_back(kBeside ? Transposed(array) : array);
  }
  Operand stacked = Stacked(arrays);
  const ArrayPtr* made = kBeside ? std::get_if<ArrayPtr>(&stacked) : nullptr;
  return made != nullptr ? Transposed(*made) : stacked;
}

/// The elements one after the other, without blanks (1), errors (2) or both (3).
template <bool kAsRow>
Operand Flatten(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double ignored = WholeOr(read, 1, 0.0);
  const bool is_by_columns = read.Boolean(2, false);
  read.Require(ignored >= 0.0 && ignored <= 3.0, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const bool without_blanks = ignored == 1.0 || ignored == 3.0;
  const bool without_errors = ignored >= 2.0;
  ArrayPtr array = read.Array(0, without_blanks ? RangeExtent::kUsed : RangeExtent::kWhole);
  if (is_by_columns) array = Transposed(array);
  std::vector<Value> values;
  std::copy_if(array->values.begin(), array->values.end(), std::back_inserter(values),
               [=](const Value& value) {
                 return !(without_blanks && value.IsBlank()) &&
                        !(without_errors && value.error() != nullptr);
               });
  if (values.empty()) return Value(ErrorCode::kCalc);
  if (static_cast<double>(values.size()) > kLargestMadeArray) return Value(ErrorCode::kNum);
  const auto count = static_cast<std::int32_t>(values.size());
  return ArrayResult(kAsRow ? 1 : count, kAsRow ? count : 1, std::move(values));
}

/// What fills the places that are left.
Value Padding(const ArgumentReader& read, std::size_t index) {
  return read.IsOmitted(index) ? Value(ErrorCode::kNA) : read.Any(index);
}

/// A row or column, in order, as rows of a length, or as columns.
template <bool kAsColumns>
Operand Wrap(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const double length = read.Whole(1);
  read.Require(array->rows == 1 || array->columns == 1, ErrorCode::kValue);
  read.Require(length >= 1.0);
  if (read.failed()) return read.failure();
  std::vector<Value> values = array->values;
  const auto columns =
      static_cast<std::size_t>(std::min(length, static_cast<double>(values.size())));
  const std::size_t rows = (values.size() + columns - 1) / columns;
  values.resize(rows * columns, Padding(read, 2));
  Operand wrapped = ArrayResult(static_cast<std::int32_t>(rows), static_cast<std::int32_t>(columns),
                                std::move(values));
  const ArrayPtr* made = kAsColumns ? std::get_if<ArrayPtr>(&wrapped) : nullptr;
  return made != nullptr ? Transposed(*made) : wrapped;
}

Operand Expand(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const double rows = WholeOr(read, 1, array->rows);
  const double columns = WholeOr(read, 2, array->columns);
  read.Require(rows >= array->rows && columns >= array->columns, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const Value padding = Padding(read, 3);
  std::int32_t row = 0;
  std::int32_t column = -1;
  return Made(rows, columns, [&] {
    if (++column == static_cast<std::int32_t>(columns)) {
      column = 0;
      ++row;
    }
    return row < array->rows && column < array->columns ? array->At(row, column) : padding;
  });
}

constexpr BuiltInFunction kFunctions[] = {
    {u"SEQUENCE", 1, 4, "s", Sequence},
    {u"RANDARRAY", 0, 5, "s", RandArray},
    {u"TAKE", 2, 3, "rs", PartOf<Taken>},
    {u"DROP", 2, 3, "rs", PartOf<Dropped>},
    {u"CHOOSEROWS", 2, 254, "a", Choose<false>},
    {u"CHOOSECOLS", 2, 254, "a", Choose<true>},
    {u"VSTACK", 1, 254, "a", Stack<false>},
    {u"HSTACK", 1, 254, "a", Stack<true>},
    {u"TOCOL", 1, 3, "rs", Flatten<false>},
    {u"TOROW", 1, 3, "rs", Flatten<true>},
    {u"WRAPROWS", 2, 3, "as", Wrap<false>},
    {u"WRAPCOLS", 2, 3, "as", Wrap<true>},
    {u"EXPAND", 2, 4, "as", Expand},
};

}  // namespace

std::span<const BuiltInFunction> ArrayFunctions() { return kFunctions; }

}  // namespace zavhost
