#pragma once
// Which distributions fit a sample best.

#include <string>

#include "fitting/fit.h"

namespace DistLib {

struct RankedFit {
  const Description* description = nullptr;
  std::optional<Fit> fit;
  std::string why_not;  // what FitDistribution says if there is no fit
};

/// Fits all distributions of the list, the best Akaike criterion first; those without a fit are the
/// last, by name. A sample with fractions has continuous distributions only, one of whole numbers
/// both kinds: a density over classes of width 1 compares with a probability. Throws FitError if
/// the sample itself is at fault.
std::vector<RankedFit> RankFits(std::span<const double> values, const Cancelled& cancelled = {});

}  // namespace DistLib
