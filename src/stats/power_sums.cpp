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
  Vector s1[kParts], s2[kParts], s3[kParts], s4[kParts];
  for (std::size_t part = 0; part < kParts; ++part)
    s1[part] = s2[part] = s3[part] = s4[part] = hn::Zero(d);
  for (std::size_t i = 0; i < count; i += 2) {
    for (std::size_t part = 0; part < kParts; ++part) {
      const Vector x = hn::LoadU(d, values + i + part * kWidth);
      // What is not a number adds 0. No sum is ever -0, which that would change.
      const Vector deviation = hn::IfThenElseZero(hn::Eq(x, x), hn::Sub(x, hn::Set(d, center)));
      const Vector square = hn::Mul(deviation, deviation);
      s1[part] = hn::Add(s1[part], deviation);
      s2[part] = hn::Add(s2[part], square);
      s3[part] = hn::Add(s3[part], hn::Mul(square, deviation));
      s4[part] = hn::Add(s4[part], hn::Mul(square, square));
    }
  }
  for (std::size_t part = 0; part < kParts; ++part) {
    hn::StoreU(s1[part], d, sums[0] + part * kWidth);
    hn::StoreU(s2[part], d, sums[1] + part * kWidth);
    hn::StoreU(s3[part], d, sums[2] + part * kWidth);
    hn::StoreU(s4[part], d, sums[3] + part * kWidth);
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
