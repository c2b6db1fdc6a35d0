// The Wilcoxon signed-rank test. The statistic V is the rank sum of the positive differences.
#include <array>
#include <vector>

#include "companions/nonparametric/p_value.h"
#include "companions/nonparametric/rank_records.h"
#include "numbers/floating_point_scope.h"

namespace NonparametricTests {
namespace {

/// Ranks the absolute differences: the negative differences are one sample, the positive ones
/// another.
zavrel::RankSums RankDifferences(std::span<const double> values, double median) {
  std::vector<double> negative;
  std::vector<double> positive;
  for (const double value : values) {
    const double difference = value - median;
    if (difference < 0) negative.push_back(-difference);
    if (difference > 0) positive.push_back(difference);
  }
  const std::array<std::span<const double>, 2> samples = {negative, positive};
  return zavrel::RankTogether(samples);
}

/// The probability that V is at most v, 0 <= v <= n (n + 1) / 4.
///
/// Each rank i is in the sum with probability 1/2, so the distribution function of the ranks up to
/// i is F_i(v) = (F_(i-1)(v) + F_(i-1)(v - i)) / 2. Halving is exact and nothing is subtracted, so
/// each of the n steps adds at most one rounding of the value.
double LowerHalf(std::size_t n, std::size_t v) {
  // below[k] is F(v - k); beyond v it is 0. With ascending k, a step reads only values that it has
  // not changed yet.
  std::vector<double> below(v + 1 + n, 0.0);
  std::fill_n(below.begin(), v + 1, 1.0);
  double* const f = below.data();
  for (std::size_t i = 1; i <= n; ++i) {
    // F is 1 at the sum of the ranks and above.
    const std::size_t sum = i * (i + 1) / 2;
#pragma GCC ivdep
    for (std::size_t k = v < sum ? 0 : v - sum + 1; k <= v; ++k) f[k] = (f[k] + f[k + i]) * 0.5;
  }
  return f[0];
}

/// The probability that V is at most v, for any number v.
double LowerTail(std::int32_t n, double v) {
  const std::int64_t all = std::int64_t{n} * (n + 1) / 2;
  if (v < 0) return 0;
  if (v >= static_cast<double>(all)) return 1;
  const auto whole = static_cast<std::int64_t>(v);
  const auto size = static_cast<std::size_t>(n);
  if (whole <= all / 2) return LowerHalf(size, static_cast<std::size_t>(whole));
  return 1 - LowerHalf(size, static_cast<std::size_t>(all - whole - 1));
}

double AnyPValue(std::int32_t n, double positive_rank_sum, std::int32_t alternative) {
  const double count = n;
  const double v = Snapped(positive_rank_sum);
  const double all = count * (count + 1) / 2;
  if (!(v >= 0 && v <= all)) return kRefused;
  if (n > WSR_EXACT_LARGEST)
    return NormalPValue(alternative, v - all / 2, count * (count + 1) * (2 * count + 1) / 24);
  return PValue(
      alternative, v - all / 2, [&] { return LowerTail(n, v); },
      [&] { return LowerTail(n, all - v); });
}

}  // namespace
}  // namespace NonparametricTests

using namespace NonparametricTests;

int32_t WSRExactPValMaxSample(void) { return WSR_EXACT_LARGEST; }

int16_t WSRTiesAndSums(const double* values, int32_t count, double hypothesized_median,
                       NptRankSums* sums) {
  const zavrel::FloatingPointScope scope;
  if (sums == nullptr || !IsSample(values, count) || !std::isfinite(hypothesized_median))
    return NPT_REFUSED;
  return Record(sums, [&] {
    return RankDifferences({values, static_cast<std::size_t>(count)}, hypothesized_median);
  });
}

double WSRpValue(int32_t n, double positive_rank_sum, int32_t alternative) {
  if (n < 1 || !IsAlternative(alternative)) return kRefused;
  const zavrel::FloatingPointScope scope;
  try {
    return zavrel::Settled(AnyPValue(n, positive_rank_sum, alternative));
  } catch (const std::bad_alloc&) {
    return kRefused;
  }
}
