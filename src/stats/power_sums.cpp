#include "stats/power_sums.h"

#include <cmath>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stats/power_sums.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h, which sets what it defines.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace zavrel::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// Sums the deviations of `count` values, an even number: sums[k][0] is of the k+1st powers at even
/// places, sums[k][1] at odd ones.
void SumPairs(const double* values, std::size_t count, double center, double (&sums)[4][2]) {
  const hn::CappedTag<double, 2> d;
  constexpr std::size_t kWidth = hn::MaxLanes(d);
  constexpr std::size_t kParts = 2 / kWidth;
  using Vector = hn::Vec<decltype(d)>;
  Vector sum[4][kParts];
  for (auto& of_power : sum) {
    for (Vector& part : of_power) part = hn::Zero(d);
  }
  for (std::size_t i = 0; i < count; i += 2) {
    for (std::size_t part = 0; part < kParts; ++part) {
      const Vector x = hn::LoadU(d, values + i + part * kWidth);
      // What is not a number adds 0. No sum is ever -0, which that would change.
      const Vector deviation = hn::IfThenElseZero(hn::Eq(x, x), hn::Sub(x, hn::Set(d, center)));
      const Vector square = hn::Mul(deviation, deviation);
      const Vector powers[4] = {deviation, square, hn::Mul(square, deviation),
                                hn::Mul(square, square)};
      for (std::size_t k = 0; k < 4; ++k) sum[k][part] = hn::Add(sum[k][part], powers[k]);
    }
  }
  for (std::size_t k = 0; k < 4; ++k) {
    for (std::size_t part = 0; part < kParts; ++part)
      hn::StoreU(sum[k][part], d, sums[k] + part * kWidth);
  }
}

}  // namespace
}  // namespace zavrel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zavrel {
namespace {
HWY_EXPORT(SumPairs);
}

PowerSums<double> SumPowers(std::span<const double> values, double center) {
  double sums[4][2];
  HWY_DYNAMIC_DISPATCH(SumPairs)(values.data(), values.size() & ~std::size_t{1}, center, sums);
  PowerSums<double> even{sums[0][0], sums[1][0], sums[2][0], sums[3][0]};
  if (values.size() % 2 != 0 && !std::isnan(values.back())) even.Add(values.back() - center);
  return {even.s1 + sums[0][1], even.s2 + sums[1][1], even.s3 + sums[2][1], even.s4 + sums[3][1]};
}

PowerSums<long double> SumPowers(std::span<const double> values, long double center) {
  PowerSums<long double> sums[2];
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!std::isnan(values[i])) sums[i % 2].Add(static_cast<long double>(values[i]) - center);
  }
  const auto& [even, odd] = sums;
  return {even.s1 + odd.s1, even.s2 + odd.s2, even.s3 + odd.s3, even.s4 + odd.s4};
}

}  // namespace zavrel
#endif
