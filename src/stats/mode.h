#pragma once

#include <span>

#include "stats/is_discrete.h"

namespace zavrel {

/// The mode of values in ascending order.
///
/// Discrete data: the most frequent value; of equally frequent values, the smallest. Continuous
/// data: the middle of the fullest of min(floor(n / 3), 100) bins of equal width from the minimum
/// to the maximum; of equally full bins, the lowest. A value on an edge belongs to the bin above
/// it, the maximum to the last bin. Up to 10 values are too few for bins and give the half-sample
/// mode (Robertson and Cryer, "An iterative procedure for estimating the mode", JASA 69 (1974)):
/// the half of the values, rounded up, that lies closest together is halved again until two values
/// or one remain; of equally close halves, the lowest is taken. Of three values, the closer pair is
/// taken, or the middle value if both pairs are equally close.
///
/// kUnknown leaves the choice to IsDiscrete::forMode. Without values, the result is the no-data
/// code; continuous data that include an infinity give the not-finite code.
double Mode(std::span<const double> sorted, DiscreteSetting setting);

}  // namespace zavrel
