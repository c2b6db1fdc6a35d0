#pragma once
// Fills the record that both tests share.

#include <cmath>
#include <cstdint>
#include <new>
#include <span>

#include "contracts/nonparametric_tests.h"
#include "stats/rank_sums.h"

namespace NonparametricTests {

inline bool IsSample(const double* values, std::int32_t count) {
  if (values == nullptr || count < 1) return false;
  for (std::int32_t i = 0; i < count; ++i)
    if (std::isnan(values[i])) return false;
  return true;
}

/// `make` returns the ranks of two samples.
template <class Make>
std::int16_t Record(NptRankSums* sums, Make make) noexcept {
  try {
    const zavrel::RankSums ranks = make();
    *sums = {ranks.tied_groups, ranks.tie_correction, ranks.sums[0], ranks.sums[1]};
    return NPT_OK;
  } catch (const std::bad_alloc&) {
    return NPT_NO_MEMORY;
  }
}

}  // namespace NonparametricTests
