// Order statistics: quantiles, ranks and trimmed means.

#include <algorithm>
#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/data_values.h"
#include "host/formula/moments.h"
#include "host/formula/number_function.h"
#include "host/formula/rounding.h"

namespace zavhost {
namespace {

using Sorted = std::span<const double>;  // ascending

double CountOf(Sorted numbers) { return static_cast<double>(numbers.size()); }

/// The number at a place, one-based; between two places, interpolated.
double AtPlace(Sorted numbers, double place) {
  const double below = std::floor(place);
  const double part = place - below;
  const double lower = numbers[static_cast<std::size_t>(below) - 1];
  if (part == 0.0) return lower;
  return lower + part * (numbers[static_cast<std::size_t>(below)] - lower);
}

Value PlaceOrNum(Sorted numbers, double place) {
  const bool is_inside = place >= 1.0 && place <= CountOf(numbers);
  return is_inside ? NumberValue(AtPlace(numbers, place)) : ErrorCode::kNum;
}

Value Small(Sorted numbers, double k) { return PlaceOrNum(numbers, std::floor(k)); }
Value Large(Sorted numbers, double k) {
  return PlaceOrNum(numbers, CountOf(numbers) + 1.0 - std::ceil(k));
}

Value PercentileInc(Sorted numbers, double k) {
  if (!(k >= 0.0 && k <= 1.0)) return ErrorCode::kNum;
  return PlaceOrNum(numbers, 1.0 + k * (CountOf(numbers) - 1.0));
}
Value PercentileExc(Sorted numbers, double k) {
  return PlaceOrNum(numbers, k * (CountOf(numbers) + 1.0));
}
Value QuartileInc(Sorted numbers, double quarter) {
  return PercentileInc(numbers, std::trunc(quarter) / 4.0);
}
Value QuartileExc(Sorted numbers, double quarter) {
  const double k = std::trunc(quarter) / 4.0;
  return k > 0.0 && k < 1.0 ? PercentileExc(numbers, k) : ErrorCode::kNum;
}

Value TrimMean(Sorted numbers, double share) {
  if (!(share >= 0.0 && share < 1.0) || numbers.empty()) return ErrorCode::kNum;
  const auto cut = static_cast<std::size_t>(AtFifteenDigits(share * CountOf(numbers) / 2.0));
  return NumberValue(MeanOf(numbers.subspan(cut, numbers.size() - 2 * cut)));
}

/// A function of data in the first argument, sorted once, and of a number in the second.
template <Value (*kFunction)(Sorted, double)>
Operand OfSorted(const BuiltInCall& call) {
  DataValues data = NumbersOfArgument(call, 0);
  if (data.error) return Value(*data.error);
  std::sort(data.numbers.begin(), data.numbers.end());
  return ForEachElement(
      call, {1}, [&](ArgumentReader& read) { return kFunction(data.numbers, read.Number(1)); });
}

/// The number of data below a number, interpolated between data; nothing outside their range.
std::optional<double> CountBelow(Sorted numbers, double x) {
  if (numbers.empty() || x < numbers.front() || x > numbers.back()) return std::nullopt;
  const auto at = std::lower_bound(numbers.begin(), numbers.end(), x);
  const auto below = static_cast<double>(at - numbers.begin());
  if (*at == x) return below;
  const double lower = *(at - 1);
  return below - 1.0 + (x - lower) / (*at - lower);
}

/// The share of the data below, cut off after some digits.
double CutOff(double share, double digits) {
  const double scale = std::pow(10.0, digits);
  const double scaled = AtFifteenDigits(share * scale);
  return digits > 15.0 ? share : std::floor(scaled) / scale;
}

template <bool kIsInclusive>
Operand PercentRank(const BuiltInCall& call) {
  DataValues data = NumbersOfArgument(call, 0);
  if (data.error) return Value(*data.error);
  if (data.numbers.empty()) return Value(ErrorCode::kNum);
  std::sort(data.numbers.begin(), data.numbers.end());
  const double count = CountOf(data.numbers);
  return ForEachElement(call, {1, 2}, [&](ArgumentReader& read) -> Value {
    const double x = read.Number(1);
    const double digits = read.IsOmitted(2) ? 3.0 : read.Whole(2);
    read.Require(digits >= 1.0);
    const std::optional<double> below = CountBelow(data.numbers, x);
    if (!below) return ErrorCode::kNA;
    if (!kIsInclusive) return CutOff((*below + 1.0) / (count + 1.0), digits);
    return count == 1.0 ? 1.0 : CutOff(*below / (count - 1.0), digits);
  });
}

/// The rank of a number among data; equal numbers have the same, the best or the mean of theirs.
template <bool kIsMean>
Operand Rank(const BuiltInCall& call) {
  DataValues data = NumbersOfArgument(call, 1);
  if (data.error) return Value(*data.error);
  std::sort(data.numbers.begin(), data.numbers.end());
  return ForEachElement(call, {0, 2}, [&](ArgumentReader& read) -> Value {
    const double x = read.Number(0);
    const bool is_ascending = read.Number(2, 0.0) != 0.0;
    const auto [first, last] = std::equal_range(data.numbers.begin(), data.numbers.end(), x);
    if (first == last) return ErrorCode::kNA;
    const auto before = is_ascending ? first - data.numbers.begin() : data.numbers.end() - last;
    const auto others = static_cast<double>(last - first - 1);
    return static_cast<double>(before) + 1.0 + (kIsMean ? others / 2.0 : 0.0);
  });
}

constexpr BuiltInFunction kFunctions[] = {
    {u"LARGE", 2, 2, "r", OfSorted<Large>},
    {u"SMALL", 2, 2, "r", OfSorted<Small>},
    {u"PERCENTILE", 2, 2, "r", OfSorted<PercentileInc>},
    {u"PERCENTILE.INC", 2, 2, "r", OfSorted<PercentileInc>},
    {u"PERCENTILE.EXC", 2, 2, "r", OfSorted<PercentileExc>},
    {u"QUARTILE", 2, 2, "r", OfSorted<QuartileInc>},
    {u"QUARTILE.INC", 2, 2, "r", OfSorted<QuartileInc>},
    {u"QUARTILE.EXC", 2, 2, "r", OfSorted<QuartileExc>},
    {u"TRIMMEAN", 2, 2, "r", OfSorted<TrimMean>},
    {u"PERCENTRANK", 2, 3, "r", PercentRank<true>},
    {u"PERCENTRANK.INC", 2, 3, "r", PercentRank<true>},
    {u"PERCENTRANK.EXC", 2, 3, "r", PercentRank<false>},
    {u"RANK", 2, 3, "r", Rank<false>},
    {u"RANK.EQ", 2, 3, "r", Rank<false>},
    {u"RANK.AVG", 2, 3, "r", Rank<true>},
};

}  // namespace

std::span<const BuiltInFunction> RankFunctions() { return kFunctions; }

}  // namespace zavhost
