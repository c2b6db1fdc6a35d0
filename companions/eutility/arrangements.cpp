#include "companions/eutility/arrangements.h"

#include <algorithm>
#include <bit>
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

/// Twice the ranks, which are whole numbers, in ascending order.
std::vector<std::uint64_t> DoubledRanks(std::span<const std::uint32_t> tied) {
  std::vector<std::uint64_t> ranks;
  std::uint64_t before = 0;
  for (const std::uint64_t count : tied) {
    ranks.insert(ranks.end(), count, 2 * before + count + 1);
    before += count;
  }
  return ranks;
}

/// What the groups hold of the ranks that are placed so far, and the number of ways to get there.
struct State {
  std::uint64_t key;  // a count and a sum for each group
  std::int64_t ways;
};
using States = std::vector<State>;

/// A group's part of a key.
struct Group {
  std::uint64_t size;
  std::int64_t weight;
  int count_bits, sum_bits;
  int first_bit;  // of the count; the sum follows

  std::uint64_t Count(std::uint64_t key) const { return key >> first_bit & Ones(count_bits); }
  std::int64_t Sum(std::uint64_t key) const {
    return static_cast<std::int64_t>(key >> (first_bit + count_bits) & Ones(sum_bits));
  }
  std::uint64_t KeyOf(std::uint64_t rank) const {
    return std::uint64_t{1} << first_bit | rank << (first_bit + count_bits);
  }
  static int BitsOf(std::uint64_t largest) { return static_cast<int>(std::bit_width(largest)); }
  static std::uint64_t Ones(int bits) { return (std::uint64_t{1} << bits) - 1; }
};

/// Counts the arrangements rank by rank; those with the same counts and sums so far are counted
/// together. Arrangements that differ only by an exchange of groups of equal size are equally
/// probable and have the same statistic, so only one of them is counted.
///
/// The statistic is a whole number: the squares of sums of doubled ranks, each weighted with the
/// least common multiple of the sizes divided by the size. The limits on totals and arrangements
/// keep it below 2^53, and a key within 62 bits (nine groups of one value and one of two).
class Enumeration {
 public:
  Enumeration(std::span<const std::int32_t> sizes, std::vector<std::uint64_t> ranks)
      : ranks_(std::move(ranks)) {
    std::int64_t multiple = 1;
    for (const std::int32_t size : sizes) multiple = std::lcm(multiple, std::int64_t{size});
    int bits = 0;
    for (const std::int32_t size : sizes) {
      const auto largest = std::accumulate(ranks_.end() - size, ranks_.end(), std::uint64_t{0});
      const auto count = static_cast<std::uint64_t>(size);
      groups_.push_back(
          {count, multiple / size, Group::BitsOf(count), Group::BitsOf(largest), bits});
      bits += groups_.back().count_bits + groups_.back().sum_bits;
    }
  }

  double ShareAtLeast(std::span<const double> rank_sums) const {
    std::int64_t bound = 0;
    for (std::size_t i = 0; i < groups_.size(); ++i) {
      const std::int64_t sum = std::llround(2 * rank_sums[i]);
      bound += sum * sum * groups_[i].weight;
    }
    States states{{0, 1}};
    for (const std::uint64_t rank : ranks_) states = WithRank(rank, states);
    std::int64_t at_least = 0;
    std::int64_t all = 0;
    for (const State& state : states) {
      all += state.ways;
      if (Statistic(state.key) >= bound) at_least += state.ways;
    }
    return static_cast<double>(at_least) / static_cast<double>(all);
  }

 private:
  /// The states, in ascending order, after one more rank is placed.
  States WithRank(std::uint64_t rank, const States& states) const {
    States all, placed, merged;
    for (std::size_t g = 0; g < groups_.size(); ++g) {
      placed.clear();
      for (const State& state : states) {
        if (Takes(g, state.key)) placed.push_back({state.key + groups_[g].KeyOf(rank), state.ways});
      }
      Merge(all, placed, merged);
      std::swap(all, merged);
    }
    return all;
  }

  static void Merge(const States& a, const States& b, States& merged) {
    merged.clear();
    auto from_a = a.begin();
    auto from_b = b.begin();
    while (from_a != a.end() && from_b != b.end()) {
      if (from_a->key == from_b->key) {
        merged.push_back({from_a->key, (from_a++)->ways + (from_b++)->ways});
      } else {
        merged.push_back(from_a->key < from_b->key ? *from_a++ : *from_b++);
      }
    }
    merged.insert(merged.end(), from_a, a.end());
    merged.insert(merged.end(), from_b, b.end());
  }

  /// Whether the next rank may go to this group. Of empty groups of equal size, the first is
  /// filled.
  bool Takes(std::size_t g, std::uint64_t key) const {
    const std::uint64_t count = groups_[g].Count(key);
    if (count > 0) return count < groups_[g].size;
    for (std::size_t i = 0; i < g; ++i)
      if (groups_[i].size == groups_[g].size && groups_[i].Count(key) == 0) return false;
    return true;
  }

  std::int64_t Statistic(std::uint64_t key) const {
    std::int64_t statistic = 0;
    for (const Group& group : groups_) statistic += group.Sum(key) * group.Sum(key) * group.weight;
    return statistic;
  }

  std::vector<std::uint64_t> ranks_;
  std::vector<Group> groups_;
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
