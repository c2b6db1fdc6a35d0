#pragma once
// The statistics computed from a data set: one number per statistic and variant.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "stats/statistic_id.h"

namespace zavrel {

/// A table of numbers indexed by form, discrete selector (0 not given, 1 false, 2 true; only the
/// mode uses one other than 0) and statistic id. It is part of its data set.
class StatisticCache {
 public:
  static constexpr auto kStatistics = static_cast<std::size_t>(StatisticId::kEnd);
  /// The statistic that any other id stands for.
  static constexpr std::size_t kCount = 10;

  bool Has(Form form, std::size_t selector, std::size_t statistic) const {
    return computed_[Index(form, selector, statistic)] != 0;
  }
  double Get(Form form, std::size_t selector, std::size_t statistic) const {
    return values_[Index(form, selector, statistic)];
  }
  void Set(Form form, std::size_t selector, std::size_t statistic, double value) {
    values_[Index(form, selector, statistic)] = value;
    computed_[Index(form, selector, statistic)] = 1;
  }

 private:
  static constexpr std::size_t kSelectors = 3;

  static std::size_t Index(Form form, std::size_t selector, std::size_t statistic) {
    return ((form == Form::kSample ? kSelectors : 0) + std::min(selector, kSelectors - 1)) *
               kStatistics +
           (statistic < kStatistics ? statistic : kCount);
  }

  std::array<double, 2 * kSelectors * kStatistics> values_{};
  std::array<std::uint8_t, 2 * kSelectors * kStatistics> computed_{};
};

}  // namespace zavrel
