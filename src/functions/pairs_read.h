#pragma once
// Two ranges read as pairs: row i of the first is paired with row i of the second.

#include <algorithm>
#include <span>

#include "frame/reading.h"
#include "platform/block_pool.h"

namespace zavrel {

inline constexpr Reading kPairs = Reading("RR", MissingDataPolicy::kPositional).Paired();
inline constexpr Reading kPairsAndNumber = Reading("RRD", MissingDataPolicy::kPositional).Paired();
inline constexpr Reading kPairsAndMethod = Reading("RRl", MissingDataPolicy::kPositional).Paired();
inline constexpr Reading kPairsAndRange =
    Reading("RRddbb", MissingDataPolicy::kPositional).Paired();

/// Room for one number per pair.
class RoomForPairs {
 public:
  explicit RoomForPairs(const Parameters& read) {
    const std::size_t pairs = std::min(read.numbers(0).size(), read.numbers(1).size());
    if (pairs > 0) room_.Extend(pairs);
  }
  std::span<double> all() { return {room_.data(), room_.size()}; }

 private:
  BlockArray<double> room_;
};

}  // namespace zavrel
