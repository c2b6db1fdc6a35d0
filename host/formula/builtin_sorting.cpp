// FILTER, SORT, SORTBY and UNIQUE: arrays of the rows or columns of others.

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "host/formula/array_parts.h"
#include "host/formula/builtin_groups.h"

namespace zavhost {
namespace {

using Lines = std::vector<std::int32_t>;

Lines AllLines(std::int32_t count) {
  Lines lines(static_cast<std::size_t>(count));
  std::iota(lines.begin(), lines.end(), 0);
  return lines;
}

/// Whether a vector has an element for each row or, failing that, for each column of an array.
enum class Along { kRows, kColumns, kNeither };

Along DirectionOf(const Array& vector, const Array& array) {
  if (vector.columns == 1 && vector.rows == array.rows) return Along::kRows;
  if (vector.rows == 1 && vector.columns == array.columns) return Along::kColumns;
  return Along::kNeither;
}

Operand Filter(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const ArrayPtr include = read.Array(1);
  const Along along = DirectionOf(*include, *array);
  if (along == Along::kNeither) return Value(ErrorCode::kValue);
  Lines chosen;
  for (std::size_t i = 0; i < include->values.size(); ++i) {
    const Value& value = include->values[i];
    const Converted<bool> is_chosen =
        value.text() == nullptr ? ToBoolean(value) : Converted<bool>{false, ErrorCode::kValue};
    if (is_chosen.error) return Value(*is_chosen.error);
    if (is_chosen.value) chosen.push_back(static_cast<std::int32_t>(i));
  }
  if (chosen.empty() && !read.IsOmitted(2)) return call.arguments[2];
  return ByLines(array, along == Along::kColumns,
                 [&chosen](const ArrayPtr& rows) { return RowsOf(*rows, chosen); });
}

/// Values by which rows are sorted, one for each of them.
struct SortKey {
  ArrayPtr array;
  std::int32_t column;
  double order;  // 1 ascending, -1 descending
};

/// Blanks come last in both orders.
bool ComesBefore(const Value& left, const Value& right, double order) {
  if (left.IsBlank() || right.IsBlank()) return !left.IsBlank() && right.IsBlank();
  const int compared = CompareValues(left, right);
  return order > 0.0 ? compared < 0 : compared > 0;
}

Operand SortedRows(const Array& array, const std::vector<SortKey>& keys) {
  Lines rows = AllLines(array.rows);
  std::stable_sort(rows.begin(), rows.end(), [&keys](std::int32_t left, std::int32_t right) {
    for (const SortKey& key : keys) {
      const Value& of_left = key.array->At(left, key.column);
      const Value& of_right = key.array->At(right, key.column);
      if (ComesBefore(of_left, of_right, key.order)) return true;
      if (ComesBefore(of_right, of_left, key.order)) return false;
    }
    return false;
  });
  return RowsOf(array, rows);
}

/// An element of SORT's columns or orders; a single one counts for all.
double ReadElement(const Array& numbers, std::size_t index, ArgumentReader& read) {
  const Value& value = numbers.values[numbers.values.size() == 1 ? 0 : index];
  const Converted<double> number = ToNumber(value);
  if (number.error) read.Fail(*number.error);
  return std::trunc(number.value);
}

void RequireOrder(double order, ArgumentReader& read) {
  read.Require(order == 1.0 || order == -1.0, ErrorCode::kValue);
}

const ArrayPtr& ArrayOfOne() {
  static const ArrayPtr array = std::make_shared<const Array>(Array{1, 1, {Value(1.0)}});
  return array;
}

Operand Sort(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const ArrayPtr columns = read.IsOmitted(1) ? ArrayOfOne() : read.Array(1);
  const ArrayPtr orders = read.IsOmitted(2) ? ArrayOfOne() : read.Array(2);
  const bool is_by_columns = read.Boolean(3, false);
  const std::size_t count = columns->values.size();
  read.Require(orders->values.size() == 1 || orders->values.size() == count, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return ByLines(array, is_by_columns, [&](const ArrayPtr& rows) {
    std::vector<SortKey> keys;
    for (std::size_t i = 0; i < count && !read.failed(); ++i) {
      const double column = ReadElement(*columns, i, read);
      const double order = ReadElement(*orders, i, read);
      read.Require(column >= 1.0 && column <= rows->columns, ErrorCode::kValue);
      RequireOrder(order, read);
      if (!read.failed()) keys.push_back({rows, static_cast<std::int32_t>(column) - 1, order});
    }
    return read.failed() ? read.failure() : SortedRows(*rows, keys);
  });
}

Operand SortBy(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const Along along = DirectionOf(*read.Array(1), *array);
  read.Require(along != Along::kNeither, ErrorCode::kValue);
  std::vector<SortKey> keys;
  for (std::size_t i = 1; i < read.count(); i += 2) {
    const ArrayPtr by = read.Array(i);
    const double order = read.IsOmitted(i + 1) ? 1.0 : read.Whole(i + 1);
    read.Require(DirectionOf(*by, *array) == along, ErrorCode::kValue);
    RequireOrder(order, read);
    keys.push_back({along == Along::kColumns ? Transposed(by) : by, 0, order});
  }
  if (read.failed()) return read.failure();
  return ByLines(array, along == Along::kColumns,
                 [&keys](const ArrayPtr& rows) { return SortedRows(*rows, keys); });
}

/// An order in which only equal values are equal; different errors are different.
int CompareStrictly(const Value& left, const Value& right) {
  if (left.error() != nullptr && right.error() != nullptr)
    return static_cast<int>(*left.error()) - static_cast<int>(*right.error());
  return CompareValues(left, right);
}

int CompareRows(const Array& array, std::int32_t left, std::int32_t right) {
  for (std::int32_t column = 0; column < array.columns; ++column) {
    const int order = CompareStrictly(array.At(left, column), array.At(right, column));
    if (order != 0) return order;
  }
  return 0;
}

/// The first of each run of equal rows, or only the rows that have no equal.
Operand UniqueRows(const Array& array, bool is_single) {
  Lines sorted = AllLines(array.rows);
  std::stable_sort(sorted.begin(), sorted.end(), [&array](std::int32_t left, std::int32_t right) {
    return CompareRows(array, left, right) < 0;
  });
  Lines chosen;
  for (auto run = sorted.begin(); run != sorted.end();) {
    const auto next = std::find_if(run + 1, sorted.end(), [&array, run](std::int32_t row) {
      return CompareRows(array, *run, row) != 0;
    });
    if (!is_single || next - run == 1) chosen.push_back(*run);
    run = next;
  }
  std::sort(chosen.begin(), chosen.end());
  return RowsOf(array, chosen);
}

Operand Unique(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr array = read.Array(0);
  const bool is_by_columns = read.Boolean(1, false);
  const bool is_single = read.Boolean(2, false);
  if (read.failed()) return read.failure();
  return ByLines(array, is_by_columns,
                 [is_single](const ArrayPtr& rows) { return UniqueRows(*rows, is_single); });
}

constexpr BuiltInFunction kFunctions[] = {
    {u"FILTER", 2, 3, "aar", Filter},
    {u"SORT", 1, 4, "aaas", Sort},
    {u"SORTBY", 2, 254, "a", SortBy},
    {u"UNIQUE", 1, 3, "as", Unique},
};

}  // namespace

std::span<const BuiltInFunction> SortingFunctions() { return kFunctions; }

}  // namespace zavhost
