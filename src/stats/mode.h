#pragma once

#include <span>

#include "stats/is_discrete.h"

namespace zavrel {

/// The mode of values in ascending order.
///
/// Discrete data: the most frequent value, the smallest of equally frequent ones. Continuous data:
/// the middle of the fullest of min(floor(n / 3), 100) bins of equal width from the minimum to the
/// maximum, the lowest of equally full ones (a value on an edge belongs to the bin above it, the
/// maximum to the last); up to 10 values are too few for bins and give the half-sample mode
/// (Robertson and Cryer, "An iterative procedure for estimating the mode", JASA 69 (1974)): the
/// half of the values, rounded up, that lies closest together, again halved until two or one
/// remain, the lowest of equally close ones; of three the closer pair, the middle one when both are
/// equally close.
///
/// kUnknown leaves the choice to IsDiscrete::forMode. No values: the no-data code. Continuous data
/// that reach infinity: the not-finite code.
double Mode(std::span<const double> sorted, DiscreteSetting setting);

}  // namespace zavrel
