#include "companions/eutility/arrangements.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "contracts/eutility.h"

namespace EUtility {
namespace {

constexpr double kMost = KW_EXACT_MOST_ARRANGEMENTS;

/// C(n, k); if it exceeds kMost, any number above kMost.
double Choose(double n, double k) {
  k = std::min(k, n - k);
  double ways = 1;
  for (double i = 1; i <= k && ways <= kMost; ++i) ways = ways * (n - k + i) / i;
  return ways;
}

/// Twice the ranks, which are whole numbers, in descending order.
std::vector<std::int64_t> DoubledRanks(std::span<const std::uint32_t> tied) {
  std::vector<std::int64_t> ranks;
  std::int64_t before = 0;
  for (const std::int64_t count : tied) {
    ranks.insert(ranks.end(), static_cast<std::size_t>(count), 2 * before + count + 1);
    before += count;
  }
  std::reverse(ranks.begin(), ranks.end());
  return ranks;
}

/// Enumerates the arrangements rank by rank. Arrangements that differ only by an exchange of groups
/// of equal size are equally probable and have the same statistic, so only one of them is counted.
///
/// The statistic is a whole number: the squares of sums of doubled ranks, each weighted with the
/// least common multiple of the sizes divided by the size. The limits on totals and arrangements
/// keep it below 2^53.
class Enumeration {
 public:
  Enumeration(std::span<const std::int32_t> sizes, std::vector<std::int64_t> ranks)
      : ranks_(std::move(ranks)), rest_(ranks_.size() + 1) {
    for (std::size_t i = ranks_.size(); i > 0; --i) rest_[i - 1] = rest_[i] + ranks_[i - 1];
    std::int64_t multiple = 1;
    for (const std::int64_t size : sizes) multiple = std::lcm(multiple, size);
    for (const std::int64_t size : sizes) groups_.push_back({size, size, 0, multiple / size});
  }

  double ShareAtLeast(std::span<const double> rank_sums) {
    bound_ = 0;
    for (std::size_t i = 0; i < groups_.size(); ++i) {
      const auto sum = static_cast<std::int64_t>(std::llround(2 * rank_sums[i]));
      bound_ += sum * sum * groups_[i].weight;
    }
    Place(0, groups_.size());
    return static_cast<double>(at_least_) / static_cast<double>(all_);
  }

 private:
  struct Group {
    std::int64_t size;
    std::int64_t open;  // free places
    std::int64_t sum;
    std::int64_t weight;
  };

  /// Assigns the ranks from this one on to the given number of groups with free places.
  void Place(std::size_t next, std::size_t open_groups) {
    if (open_groups == 1) {
      Finish(next);
      return;
    }
    for (std::size_t g = 0; g < groups_.size(); ++g) {
      Group& group = groups_[g];
      if (group.open == 0 || HasEmptyTwinBefore(g)) continue;
      --group.open;
      group.sum += ranks_[next];
      Place(next + 1, group.open == 0 ? open_groups - 1 : open_groups);
      group.sum -= ranks_[next];
      ++group.open;
    }
  }

  bool HasEmptyTwinBefore(std::size_t g) const {
    if (groups_[g].open < groups_[g].size) return false;
    for (std::size_t i = 0; i < g; ++i)
      if (groups_[i].size == groups_[g].size && groups_[i].open == groups_[i].size) return true;
    return false;
  }

  /// The only remaining group takes all remaining ranks.
  void Finish(std::size_t next) {
    std::int64_t statistic = 0;
    for (const Group& group : groups_) {
      const std::int64_t sum = group.open > 0 ? group.sum + rest_[next] : group.sum;
      statistic += sum * sum * group.weight;
    }
    ++all_;
    if (statistic >= bound_) ++at_least_;
  }

  std::vector<std::int64_t> ranks_;
  std::vector<std::int64_t> rest_;  // sum of the ranks from each rank on
  std::vector<Group> groups_;
  std::int64_t bound_ = 0;
  std::int64_t at_least_ = 0;
  std::int64_t all_ = 0;
};

}  // namespace

bool CanEnumerate(std::span<const std::int32_t> sizes) {
  std::int64_t total = 0;
  double ways = 1;
  for (const std::int32_t size : sizes) {
    total += size;
    if (total > KW_EXACT_LARGEST_TOTAL) return false;
    ways *= Choose(static_cast<double>(total), size);
    if (ways > kMost) return false;
  }
  return true;
}

double ShareAtLeast(std::span<const std::int32_t> sizes, std::span<const std::uint32_t> tied,
                    std::span<const double> rank_sums) {
  return Enumeration(sizes, DoubledRanks(tied)).ShareAtLeast(rank_sums);
}

}  // namespace EUtility
