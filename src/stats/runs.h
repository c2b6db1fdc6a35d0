#pragma once

#include <span>

namespace zavrel {

/// The number of runs about a cut-off: unbroken stretches of values on the same side of it. A value
/// equal to the cut-off is on the high side. F. S. Swed and C. Eisenhart, "Tables for testing
/// randomness of grouping in a sequence of alternatives", Annals of Mathematical Statistics 14
/// (1943). Without values, the result is the not-computed code.
double CountRuns(std::span<const double> values, double cutoff);

}  // namespace zavrel
