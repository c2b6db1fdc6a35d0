#pragma once
// Two ranges read as pairs.

#include <algorithm>
#include <span>
#include <string_view>

#include "data/cell_layout.h"
#include "data/get_parameters.h"
#include "platform/block_pool.h"
#include "stats/pairs.h"

namespace zavrel {

/// The argument list of a function over pairs: two ranges, then what `kinds` adds. Row i of the
/// first range goes with row i of the second, as far as both have rows. Ranges whose cells cannot
/// be told to lie alike are #VALUE!.
class PairArguments {
 public:
  PairArguments(std::string_view kinds, std::span<const XLOPER12* const> arguments)
      : parameters_(GetParameters(kinds, MissingDataPolicy::kPositional, arguments)) {
    if (!parameters_.accepted()) return;
    const auto layout = [&](std::size_t i) { return parameters_.data(i).layout(); };
    aligned_ = CanPairShorter(layout(0), x().size(), layout(1), y().size());
  }

  bool accepted() const { return parameters_.accepted() && aligned_; }
  XXloper failure() const {
    return parameters_.accepted() ? XXloper::Error(ExcelError::kValue) : parameters_.failure();
  }
  const Parameters& parameters() const { return parameters_; }
  PairedValues x() const { return parameters_.numbers(0); }
  PairedValues y() const { return parameters_.numbers(1); }

  /// Room for one number per pair.
  BlockArray<double> Room() const {
    BlockArray<double> room;
    if (const std::size_t pairs = std::min(x().size(), y().size()); pairs > 0) room.Extend(pairs);
    return room;
  }

 private:
  Parameters parameters_;
  bool aligned_ = false;
};

inline std::span<double> Whole(BlockArray<double>& room) { return {room.data(), room.size()}; }

}  // namespace zavrel
