// Descriptive statistics of one data set.

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/formula/builtin_groups.h"
#include "host/formula/compensated_sum.h"
#include "host/formula/data_values.h"
#include "host/formula/moments.h"
#include "host/formula/number_function.h"

namespace zavhost {
namespace {

using Numbers = std::span<const double>;

double CountOf(Numbers numbers) { return static_cast<double>(numbers.size()); }

Value Variance(Numbers numbers) {
  return numbers.size() < 2 ? ErrorCode::kDiv0 : NumberValue(SampleVariance(numbers));
}
Value PopulationVariance(Numbers numbers) {
  if (numbers.empty()) return ErrorCode::kDiv0;
  return NumberValue(SquaredDeviations(numbers) / CountOf(numbers));
}
/// The standard deviation.
template <Value (*kVariance)(Numbers)>
Value RootOf(Numbers numbers) {
  const Value variance = kVariance(numbers);
  return variance.error() != nullptr ? variance : Value(std::sqrt(*variance.number()));
}

Value DevSq(Numbers numbers) {
  return numbers.empty() ? ErrorCode::kNum : NumberValue(SquaredDeviations(numbers));
}

Value AveDev(Numbers numbers) {
  if (numbers.empty()) return ErrorCode::kNum;
  const double mean = MeanOf(numbers);
  const double sum = SumOf(numbers, [mean](double x) { return std::fabs(x - mean); });
  return NumberValue(sum / CountOf(numbers));
}

/// The mean of the powers of the deviations in units of the population's standard deviation.
double StandardMoment(Numbers numbers, int power) {
  const double mean = MeanOf(numbers);
  const double deviation = std::sqrt(SquaredDeviations(numbers) / CountOf(numbers));
  const double sum = SumOf(numbers, [=](double x) {
    const double z = (x - mean) / deviation;
    return power == 3 ? z * z * z : (z * z) * (z * z);
  });
  return sum / CountOf(numbers);
}

bool HasSpread(Numbers numbers, std::size_t at_least) {
  return numbers.size() >= at_least && SquaredDeviations(numbers) > 0.0;
}

Value PopulationSkewness(Numbers numbers) {
  return HasSpread(numbers, 3) ? NumberValue(StandardMoment(numbers, 3)) : ErrorCode::kDiv0;
}
Value Skewness(Numbers numbers) {
  if (!HasSpread(numbers, 3)) return ErrorCode::kDiv0;
  const double n = CountOf(numbers);
  return NumberValue(StandardMoment(numbers, 3) * std::sqrt(n * (n - 1.0)) / (n - 2.0));
}
Value Kurtosis(Numbers numbers) {
  if (!HasSpread(numbers, 4)) return ErrorCode::kDiv0;
  const double n = CountOf(numbers);
  const double excess = (n + 1.0) * StandardMoment(numbers, 4) - 3.0 * (n - 1.0);
  return NumberValue((n - 1.0) / ((n - 2.0) * (n - 3.0)) * excess);
}

bool AllPositive(Numbers numbers) {
  return !numbers.empty() &&
         std::all_of(numbers.begin(), numbers.end(), [](double x) { return x > 0.0; });
}

/// From the product, whose exponent is apart so that it cannot overflow.
double GeoMean(Numbers numbers) {
  if (!AllPositive(numbers)) return kNum;
  double product = 1.0;
  double exponent = 0.0;
  for (const double x : numbers) {
    int shift = 0;
    int carry = 0;
    product = std::frexp(product * std::frexp(x, &shift), &carry);
    exponent += shift + carry;
  }
  const double n = CountOf(numbers);
  const double whole = std::floor(exponent / n);
  const double rest = std::exp2((exponent - whole * n + std::log2(product)) / n);
  return std::ldexp(rest, static_cast<int>(whole));
}

double HarMean(Numbers numbers) {
  if (!AllPositive(numbers)) return kNum;
  return CountOf(numbers) / SumOf(numbers, [](double x) { return 1.0 / x; });
}

double Median(std::span<double> numbers) {
  if (numbers.empty()) return kNum;
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  if (numbers.size() % 2 == 1) return *middle;
  const double below = *std::max_element(numbers.begin(), middle);
  return below / 2.0 + *middle / 2.0;
}

/// The most frequent numbers, if they occur at least twice, in the order of their first places.
std::vector<double> ModesOf(Numbers numbers) {
  std::vector<std::pair<double, std::size_t>> sorted;
  sorted.reserve(numbers.size());
  for (const double x : numbers) sorted.emplace_back(x, sorted.size());
  std::sort(sorted.begin(), sorted.end());
  std::size_t most = 2;
  std::vector<std::pair<std::size_t, double>> modes;  // with their first places
  for (std::size_t first = 0, end = 0; first < sorted.size(); first = end) {
    while (end < sorted.size() && sorted[end].first == sorted[first].first) ++end;
    if (end - first < most) continue;
    if (end - first > most) modes.clear();
    most = end - first;
    modes.emplace_back(sorted[first].second, sorted[first].first);
  }
  std::sort(modes.begin(), modes.end());
  std::vector<double> in_order;
  in_order.reserve(modes.size());
  for (const auto& [place, mode] : modes) in_order.push_back(mode);
  return in_order;
}

Value Mode(Numbers numbers) {
  const std::vector<double> modes = ModesOf(numbers);
  return modes.empty() ? Value(ErrorCode::kNA) : NumberValue(modes.front());
}

Operand ModeMult(Numbers numbers) {
  const std::vector<double> modes = ModesOf(numbers);
  if (modes.empty()) return Value(ErrorCode::kNA);
  return ArrayResult(static_cast<std::int32_t>(modes.size()), 1,
                     std::vector<Value>(modes.begin(), modes.end()));
}

double Standardize(double x, double mean, double deviation) {
  return deviation > 0.0 ? (x - mean) / deviation : kNum;
}

/// The number of data up to each limit and beyond the one before; in the last row, of those above
/// all limits.
Operand Frequency(const BuiltInCall& call) {
  const DataValues data = NumbersOfArgument(call, 0);
  if (data.error) return Value(*data.error);
  const DataValues bins = NumbersOfArgument(call, 1);
  if (bins.error) return Value(*bins.error);
  const std::size_t count = bins.numbers.size();
  std::vector<std::size_t> order(count);
  for (std::size_t i = 0; i < count; ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return bins.numbers[a] < bins.numbers[b]; });
  std::vector<double> frequencies(count + 1);
  for (const double x : data.numbers) {
    const auto bin = std::lower_bound(order.begin(), order.end(), x,
                                      [&](std::size_t i, double y) { return bins.numbers[i] < y; });
    frequencies[bin == order.end() ? count : *bin] += 1.0;
  }
  return ArrayResult(static_cast<std::int32_t>(count + 1), 1,
                     std::vector<Value>(frequencies.begin(), frequencies.end()));
}

/// The probability of the values from a lower to an upper limit.
Operand Prob(const BuiltInCall& call) {
  const DataPairs pairs = PairsOf(call, 0, 1);
  ArgumentReader read(call);
  const double lower = read.Number(2);
  const double upper = read.Number(3, lower);
  if (pairs.error) read.Fail(*pairs.error);
  const auto is_probability = [](double p) { return p > 0.0 && p <= 1.0; };
  read.Require(std::all_of(pairs.y.begin(), pairs.y.end(), is_probability));
  const double total = SumOf(pairs.y, [](double p) { return p; });
  read.Require(std::fabs(total - 1.0) < 1e-7);
  if (read.failed()) return read.failure();
  CompensatedSum sum;
  for (std::size_t i = 0; i < pairs.x.size(); ++i) {
    if (pairs.x[i] >= lower && pairs.x[i] <= upper) sum.Add(pairs.y[i]);
  }
  return NumberValue(sum.value());
}

constexpr auto kCounted = NonNumbers::kCounted;
constexpr BuiltInFunction kFunctions[] = {
    {u"VAR", 1, kAnyNumberOfArguments, "r", OfData<Variance>},
    {u"VAR.S", 1, kAnyNumberOfArguments, "r", OfData<Variance>},
    {u"VARA", 1, kAnyNumberOfArguments, "r", OfData<Variance, kCounted>},
    {u"VARP", 1, kAnyNumberOfArguments, "r", OfData<PopulationVariance>},
    {u"VAR.P", 1, kAnyNumberOfArguments, "r", OfData<PopulationVariance>},
    {u"VARPA", 1, kAnyNumberOfArguments, "r", OfData<PopulationVariance, kCounted>},
    {u"STDEV", 1, kAnyNumberOfArguments, "r", OfData<RootOf<Variance>>},
    {u"STDEV.S", 1, kAnyNumberOfArguments, "r", OfData<RootOf<Variance>>},
    {u"STDEVA", 1, kAnyNumberOfArguments, "r", OfData<RootOf<Variance>, kCounted>},
    {u"STDEVP", 1, kAnyNumberOfArguments, "r", OfData<RootOf<PopulationVariance>>},
    {u"STDEV.P", 1, kAnyNumberOfArguments, "r", OfData<RootOf<PopulationVariance>>},
    {u"STDEVPA", 1, kAnyNumberOfArguments, "r", OfData<RootOf<PopulationVariance>, kCounted>},
    {u"DEVSQ", 1, kAnyNumberOfArguments, "r", OfData<DevSq>},
    {u"AVEDEV", 1, kAnyNumberOfArguments, "r", OfData<AveDev>},
    {u"SKEW", 1, kAnyNumberOfArguments, "r", OfData<Skewness>},
    {u"SKEW.P", 1, kAnyNumberOfArguments, "r", OfData<PopulationSkewness>},
    {u"KURT", 1, kAnyNumberOfArguments, "r", OfData<Kurtosis>},
    {u"GEOMEAN", 1, kAnyNumberOfArguments, "r", OfData<GeoMean>},
    {u"HARMEAN", 1, kAnyNumberOfArguments, "r", OfData<HarMean>},
    {u"MEDIAN", 1, kAnyNumberOfArguments, "r", OfData<Median>},
    {u"MODE", 1, kAnyNumberOfArguments, "a", OfData<Mode>},
    {u"MODE.SNGL", 1, kAnyNumberOfArguments, "a", OfData<Mode>},
    {u"MODE.MULT", 1, kAnyNumberOfArguments, "a", OfData<ModeMult>},
    {u"STANDARDIZE", 3, 3, "s", Of<Standardize>},
    {u"FREQUENCY", 2, 2, "a", Frequency},
    {u"PROB", 3, 4, "aas", Prob},
};

}  // namespace

std::span<const BuiltInFunction> StatisticsFunctions() { return kFunctions; }

}  // namespace zavhost
