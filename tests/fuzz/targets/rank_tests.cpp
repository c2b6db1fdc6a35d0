// The C functions of the rank tests, with any counts, values and pointers: a code, results only
// with success and nothing beside them, probabilities, and the laws that ranks obey.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "nonparametric/library.h"

namespace zavrel::tests {
namespace {

using Sample = std::vector<double>;

constexpr double kUntouched = -4711;

Sample AnySample(Bytes& bytes, std::size_t most) {
  Sample sample(bytes.Below(most + 1));
  // Few values have ties, arbitrary ones not-a-numbers and infinities.
  const bool is_tied = bytes.Below(3) != 0;
  for (double& value : sample)
    value = is_tied ? static_cast<double>(bytes.Below(16)) / 4 : bytes.Take<double>();
  return sample;
}

bool HasNaN(const Sample& sample) {
  return std::ranges::any_of(sample, [](double value) { return std::isnan(value); });
}

/// The count as it is, or one that cannot be.
std::int32_t CountOf(const Sample& sample, Bytes& bytes) {
  static constexpr std::int32_t kWrong[] = {0, -1, INT32_MIN};
  const std::size_t choice = bytes.Below(20);
  return choice < std::size(kWrong) ? kWrong[choice] : static_cast<std::int32_t>(sample.size());
}

void CheckProbability(double p) { Require(p >= 0 && p <= 1, "a p-value outside 0 to 1"); }
void CheckOptionalProbability(double p) {
  if (!std::isnan(p)) CheckProbability(p);
}

NptRankSums Untouched() { return {kUntouched, kUntouched, kUntouched, kUntouched}; }
bool IsUntouched(const NptRankSums& sums) {
  return sums.ties == kUntouched && sums.tie_correction_term == kUntouched &&
         sums.rank_sum_1 == kUntouched && sums.rank_sum_2 == kUntouched;
}

/// Less and greater overlap in the statistic itself; two-sided is twice the smaller, at most 1.
void CheckSides(double less, double greater, double two_sided) {
  for (const double p : {less, greater, two_sided}) CheckProbability(p);
  Require(less + greater > 1 - 1e-9, "the two sides leave something out");
  Require(std::abs(two_sided - std::min(1.0, 2 * std::min(less, greater))) < 1e-9,
          "two-sided is not twice the smaller side");
}

void MannWhitney(Bytes& bytes) {
  const Sample a = AnySample(bytes, 60);
  const Sample b = AnySample(bytes, 60);
  const std::int32_t n = CountOf(a, bytes);
  const std::int32_t m = CountOf(b, bytes);
  NptRankSums sums = Untouched();
  const std::int16_t code = library.MWTiesAndSums(a.data(), n, b.data(), m, &sums);
  const bool is_good = n > 0 && m > 0 && !HasNaN(a) && !HasNaN(b);
  Require(code == (is_good ? NPT_OK : NPT_REFUSED), "another code than the samples deserve");
  Require(library.MWTiesAndSums(a.data(), n, b.data(), m, nullptr) == NPT_REFUSED,
          "results go nowhere");
  Require((library.MWUsingNormalApproximation(n, m) != 0) ==
              (n > 0 && m > 0 && std::int64_t{n} * m > MW_EXACT_LARGEST_PRODUCT),
          "the method changes at another size");
  if (!is_good) {
    Require(IsUntouched(sums), "a refused call writes");
    Require(std::isnan(library.MWpValue(std::min(n, 0), m, 1, NPT_LESS)), "a p-value of nothing");
    return;
  }
  const double all = n + m;
  Require(sums.rank_sum_1 + sums.rank_sum_2 == all * (all + 1) / 2, "ranks do not add up");
  NptRankSums swapped = Untouched();
  library.MWTiesAndSums(b.data(), m, a.data(), n, &swapped);
  Require(swapped.rank_sum_1 == sums.rank_sum_2 && swapped.ties == sums.ties &&
              swapped.tie_correction_term == sums.tie_correction_term,
          "the samples are not treated alike");
  const auto p = [&](std::int32_t side) { return library.MWpValue(n, m, sums.rank_sum_1, side); };
  CheckSides(p(NPT_LESS), p(NPT_GREATER), p(NPT_TWO_SIDED));
  CheckOptionalProbability(library.MWpValue(n, m, bytes.Take<double>(), NPT_TWO_SIDED));
  CheckOptionalProbability(library.MWpValue(n, m, sums.rank_sum_1, bytes.Take<std::int32_t>()));
}

void SignedRanks(Bytes& bytes) {
  const Sample values = AnySample(bytes, 90);
  const std::int32_t n = CountOf(values, bytes);
  const double median = bytes.Below(4) == 0 ? bytes.Take<double>() : 1.25;
  NptRankSums sums = Untouched();
  const std::int16_t code = library.WSRTiesAndSums(values.data(), n, median, &sums);
  if (code != NPT_OK) return Require(IsUntouched(sums), "a refused call writes");
  Require(n > 0 && !HasNaN(values) && !std::isnan(median), "a bad sample is taken");
  const double ranks = sums.rank_sum_1 + sums.rank_sum_2;
  const auto used = static_cast<std::int32_t>(std::lround((std::sqrt(8 * ranks + 1) - 1) / 2));
  Require(used * (used + 1.0) / 2 == ranks && used <= n, "ranks do not add up");
  if (used == 0) return;
  const auto p = [&](std::int32_t side) { return library.WSRpValue(used, sums.rank_sum_2, side); };
  CheckSides(p(NPT_LESS), p(NPT_GREATER), p(NPT_TWO_SIDED));
  CheckOptionalProbability(library.WSRpValue(n, bytes.Take<double>(), NPT_LESS));
}

void KruskalWallis(Bytes& bytes) {
  std::vector<Sample> samples(bytes.Below(5));
  // An exact p-value goes through all arrangements, which are millions of larger samples.
  for (Sample& sample : samples) sample = AnySample(bytes, samples.size() > 3 ? 2 : 4);
  std::vector<const double*> values;
  std::vector<std::int32_t> counts;
  for (const Sample& sample : samples) {
    values.push_back(bytes.Below(30) == 0 ? nullptr : sample.data());
    counts.push_back(CountOf(sample, bytes));
  }
  const auto groups = static_cast<std::int32_t>(samples.size());
  static constexpr std::int32_t kItems[] = {
      KW_STATISTIC, KW_STATISTIC_UNCORRECTED, KW_DEGREES_OF_FREEDOM, KW_TOTAL,
      KW_TIES,      KW_TIE_DIVISOR,           KW_RANK_SUM + 1,       KW_RANK_SUM + 2};
  const std::size_t choice = bytes.Below(std::size(kItems) + 1);
  const auto item = choice < std::size(kItems) ? kItems[choice] : bytes.Take<std::int32_t>();
  double result = kUntouched;
  const std::int16_t code = library.KWData(item, groups, values.data(), counts.data(), &result);
  Require(code == EUTILITY_OK ? std::isfinite(result) : result == kUntouched,
          "a code and its result do not fit");
  if (code == EUTILITY_OK) {
    double total = 0;
    library.KWData(KW_TOTAL, groups, values.data(), counts.data(), &total);
    double ranks = 0;
    for (std::int32_t i = 1; i <= groups; ++i) {
      double sum = kUntouched;
      library.KWData(KW_RANK_SUM + i, groups, values.data(), counts.data(), &sum);
      ranks += sum;
    }
    Require(ranks == total * (total + 1) / 2, "ranks do not add up");
    std::ranges::reverse(values);
    std::ranges::reverse(counts);
    double reversed = kUntouched;
    if (item < KW_RANK_SUM && item >= 0) {
      library.KWData(item, groups, values.data(), counts.data(), &reversed);
      Require(std::abs(reversed - result) <= 1e-9 * std::max(1.0, std::abs(result)),
              "the order of the groups matters");
    }
  }
  double p = kUntouched;
  const auto method = static_cast<std::int32_t>(bytes.Below(4));
  const std::int16_t p_code = library.KWpValue(method, groups, values.data(), counts.data(), &p);
  Require(p_code == EUTILITY_OK || p == kUntouched, "a failed call writes");
  if (p_code == EUTILITY_OK) CheckProbability(p);
  const std::int16_t chosen = library.KWpValueComputationMethod(groups, counts.data());
  Require(chosen == 0 || chosen == KW_CHI_SQUARE || chosen == KW_EXACT,
          "a method that there is not");
}

void Test(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  switch (bytes.Below(3)) {
    case 0:
      return MannWhitney(bytes);
    case 1:
      return SignedRanks(bytes);
    default:
      return KruskalWallis(bytes);
  }
}

const FuzzTarget target("rank_tests", Test);

}  // namespace
}  // namespace zavrel::tests
