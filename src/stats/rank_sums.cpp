#include "stats/rank_sums.h"

#include <cstddef>

#include "stats/sort_ascending.h"

namespace zavrel {
namespace {

std::vector<double> Sorted(std::span<const double> values) {
  std::vector<double> sorted(values.begin(), values.end());
  SortAscending(sorted);
  return sorted;
}

/// A sorted sample and the number of its values that are already ranked.
struct RankedSample {
  std::vector<double> values;
  std::size_t next = 0;

  bool done() const { return next == values.size(); }
  /// The number of the next values that equal this one.
  std::size_t CountOf(double value) const {
    std::size_t end = next;
    while (end < values.size() && values[end] == value) ++end;
    return end - next;
  }
};

}  // namespace

RankSums RankTogether(std::span<const std::span<const double>> samples, bool list_groups) {
  std::vector<RankedSample> ranked;
  for (const auto& sample : samples) ranked.push_back({Sorted(sample)});
  std::vector<std::size_t> equal(samples.size());
  RankSums result;
  result.sums.resize(samples.size());
  while (true) {
    const double* smallest = nullptr;
    for (const RankedSample& sample : ranked) {
      if (!sample.done() && (smallest == nullptr || sample.values[sample.next] < *smallest))
        smallest = &sample.values[sample.next];
    }
    if (smallest == nullptr) return result;
    std::size_t tied = 0;
    for (std::size_t i = 0; i < ranked.size(); ++i) {
      equal[i] = ranked[i].CountOf(*smallest);
      tied += equal[i];
    }
    const auto t = static_cast<double>(tied);
    const double rank = result.count + (t + 1) / 2;
    for (std::size_t i = 0; i < ranked.size(); ++i) {
      result.sums[i] += static_cast<double>(equal[i]) * rank;
      ranked[i].next += equal[i];
    }
    if (tied > 1) {
      ++result.tied_groups;
      result.tie_correction += t * t * t - t;
    }
    if (list_groups) result.group_sizes.push_back(static_cast<std::uint32_t>(tied));
    result.count += t;
  }
}

}  // namespace zavrel
