// The Mann-Whitney test. U, the rank sum of sample 1 minus its smallest possible value, counts the
// pairs in which the value of sample 1 is the larger one.
#include <array>
#include <utility>
#include <vector>

#include "companions/nonparametric/p_value.h"
#include "companions/nonparametric/rank_records.h"
#include "numbers/floating_point_scope.h"

namespace NonparametricTests {
namespace {

/// Can hold every count: for all sizes with an exact p-value, there are at most C(100, 50) =
/// 1.01e29 arrangements.
__extension__ using Count = unsigned __int128;

bool IsExact(std::int32_t size_1, std::int32_t size_2) {
  return std::int64_t{size_1} * size_2 <= MW_EXACT_LARGEST_PRODUCT;
}

/// C(m + n, m).
Count Arrangements(int m, int n) {
  Count count = 1;
  for (int i = 1; i <= m; ++i)
    count = count * static_cast<unsigned>(n + i) / static_cast<unsigned>(i);
  return count;
}

/// The number of arrangements in which U is at most u, which lies between 0 and m n.
///
/// The generating function of the counts is the Gaussian binomial coefficient, the product over i =
/// 1 to m of (1 - q^(n+i)) / (1 - q^i); each step multiplies and divides one factor. Subtractions
/// that go below 0 do no harm, since the counts are exact modulo 2^128.
Count AtMost(int m, int n, int u) {
  if (m > n) std::swap(m, n);
  std::vector<Count> counts(static_cast<std::size_t>(u) + 1);
  counts[0] = 1;
  const auto at = [&](int index) -> Count& { return counts[static_cast<std::size_t>(index)]; };
  for (int i = 1; i <= m; ++i) {
    for (int k = u; k >= n + i; --k) at(k) -= at(k - n - i);
    for (int k = i; k <= u; ++k) at(k) += at(k - i);
  }
  Count sum = 0;
  for (const Count count : counts) sum += count;
  return sum;
}

/// The probability that U is at most u, for any number u.
double LowerTail(int m, int n, double u) {
  const int all = m * n;
  if (u < 0) return 0;
  if (u >= all) return 1;
  const int whole = static_cast<int>(u);
  const Count arrangements = Arrangements(m, n);
  const Count tail =
      whole <= all / 2 ? AtMost(m, n, whole) : arrangements - AtMost(m, n, all - whole - 1);
  return static_cast<double>(static_cast<long double>(tail) /
                             static_cast<long double>(arrangements));
}

double ExactPValue(int m, int n, double u, std::int32_t alternative) {
  return PValue(
      alternative, u - m * n / 2.0, [&] { return LowerTail(m, n, u); },
      [&] { return LowerTail(m, n, m * n - u); });
}

double AnyPValue(std::int32_t size_1, std::int32_t size_2, double rank_sum_1,
                 std::int32_t alternative) {
  const double m = size_1, n = size_2;
  const double u = Snapped(rank_sum_1) - m * (m + 1) / 2;
  if (!(u >= 0 && u <= m * n)) return kRefused;
  if (IsExact(size_1, size_2)) return ExactPValue(size_1, size_2, u, alternative);
  return NormalPValue(alternative, u - m * n / 2, m * n * (m + n + 1) / 12);
}

}  // namespace
}  // namespace NonparametricTests

using namespace NonparametricTests;

int16_t MWUsingNormalApproximation(int32_t size_1, int32_t size_2) {
  return size_1 >= 1 && size_2 >= 1 && !IsExact(size_1, size_2) ? 1 : 0;
}

int16_t MWTiesAndSums(const double* sample_1, int32_t count_1, const double* sample_2,
                      int32_t count_2, NptRankSums* sums) {
  const zavrel::FloatingPointScope scope;
  if (sums == nullptr || !IsSample(sample_1, count_1) || !IsSample(sample_2, count_2))
    return NPT_REFUSED;
  return Record(sums, [&] {
    const std::array<std::span<const double>, 2> samples = {
        std::span(sample_1, static_cast<std::size_t>(count_1)),
        std::span(sample_2, static_cast<std::size_t>(count_2))};
    return zavrel::RankTogether(samples);
  });
}

double MWpValue(int32_t size_1, int32_t size_2, double rank_sum_1, int32_t alternative) {
  if (size_1 < 1 || size_2 < 1 || !IsAlternative(alternative)) return kRefused;
  const zavrel::FloatingPointScope scope;
  try {
    return zavrel::Settled(AnyPValue(size_1, size_2, rank_sum_1, alternative));
  } catch (const std::bad_alloc&) {
    return kRefused;
  }
}
