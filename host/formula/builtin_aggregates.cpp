// Sums, counts, means and extremes.

#include <algorithm>
#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/compensated_sum.h"
#include "host/formula/data_values.h"
#include "host/formula/moments.h"

namespace zavhost {
namespace {

double Sum(std::span<const double> numbers) {
  return SumOf(numbers, [](double x) { return x; });
}

double SumSq(std::span<const double> numbers) {
  return SumOf(numbers, [](double x) { return x * x; });
}

double Product(std::span<const double> numbers) {
  if (numbers.empty()) return 0.0;
  double product = 1.0;
  for (const double x : numbers) product *= x;
  return product;
}

Value Average(std::span<const double> numbers) {
  if (numbers.empty()) return ErrorCode::kDiv0;
  return NumberValue(MeanOf(numbers));
}

double Min(std::span<const double> numbers) {
  return numbers.empty() ? 0.0 : *std::min_element(numbers.begin(), numbers.end());
}

double Max(std::span<const double> numbers) {
  return numbers.empty() ? 0.0 : *std::max_element(numbers.begin(), numbers.end());
}

Operand Count(const BuiltInCall& call) {
  double count = 0;
  VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
    const bool counts = is_direct ? !ToNumber(value).error : value.number() != nullptr;
    if (counts) count += 1;
    return std::nullopt;
  });
  return Value(count);
}

Operand CountA(const BuiltInCall& call) {
  double count = 0;
  VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
    if (is_direct || !value.IsBlank()) count += 1;
    return std::nullopt;
  });
  return Value(count);
}

/// Arrays of one shape; an element of any of them that is not a number counts as 0.
Operand SumProduct(const BuiltInCall& call) {
  ArgumentReader read(call);
  std::vector<ArrayPtr> factors;
  factors.reserve(read.count());
  for (std::size_t i = 0; i < read.count(); ++i) factors.push_back(read.Array(i));
  for (const ArrayPtr& factor : factors) {
    const bool has_shape =
        factor->rows == factors[0]->rows && factor->columns == factors[0]->columns;
    read.Require(has_shape, ErrorCode::kValue);
  }
  if (read.failed()) return read.failure();
  for (const ArrayPtr& factor : factors) {
    for (const Value& value : factor->values) {
      if (value.error() != nullptr) return value;
    }
  }
  CompensatedSum sum;
  for (std::size_t i = 0; i < factors[0]->values.size(); ++i) {
    double product = 1.0;
    for (const ArrayPtr& factor : factors) {
      const double* number = factor->values[i].number();
      product *= number != nullptr ? *number : 0.0;
    }
    sum.Add(product);
  }
  return NumberValue(sum.value());
}

/// The sum of term(x, y) of all pairs.
template <double (*kTerm)(double, double)>
Value SumOfPairs(const DataPairs& pairs) {
  CompensatedSum sum;
  for (std::size_t i = 0; i < pairs.x.size(); ++i) sum.Add(kTerm(pairs.x[i], pairs.y[i]));
  return NumberValue(sum.value());
}

double SquareMinusSquare(double x, double y) { return (x - y) * (x + y); }
double SquarePlusSquare(double x, double y) { return x * x + y * y; }
double SquareOfDifference(double x, double y) { return (x - y) * (x - y); }

constexpr auto kCounted = NonNumbers::kCounted;
constexpr BuiltInFunction kFunctions[] = {
    {u"SUM", 1, kAnyNumberOfArguments, "r", OfData<Sum>},
    {u"SUMSQ", 1, kAnyNumberOfArguments, "r", OfData<SumSq>},
    {u"PRODUCT", 1, kAnyNumberOfArguments, "r", OfData<Product>},
    {u"AVERAGE", 1, kAnyNumberOfArguments, "r", OfData<Average>},
    {u"AVERAGEA", 1, kAnyNumberOfArguments, "r", OfData<Average, kCounted>},
    {u"MIN", 1, kAnyNumberOfArguments, "r", OfData<Min>},
    {u"MINA", 1, kAnyNumberOfArguments, "r", OfData<Min, kCounted>},
    {u"MAX", 1, kAnyNumberOfArguments, "r", OfData<Max>},
    {u"MAXA", 1, kAnyNumberOfArguments, "r", OfData<Max, kCounted>},
    {u"COUNT", 1, kAnyNumberOfArguments, "r", Count},
    {u"COUNTA", 1, kAnyNumberOfArguments, "r", CountA},
    {u"SUMPRODUCT", 1, kAnyNumberOfArguments, "a", SumProduct},
    {u"SUMX2MY2", 2, 2, "a", OfPairs<SumOfPairs<SquareMinusSquare>>},
    {u"SUMX2PY2", 2, 2, "a", OfPairs<SumOfPairs<SquarePlusSquare>>},
    {u"SUMXMY2", 2, 2, "a", OfPairs<SumOfPairs<SquareOfDifference>>},
};

}  // namespace

std::span<const BuiltInFunction> AggregateFunctions() { return kFunctions; }

}  // namespace zavhost
