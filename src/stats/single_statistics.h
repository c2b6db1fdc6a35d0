#pragma once

#include <span>

#include "stats/statistic_id.h"

namespace zavrel {

/// The statistics that are computed separately (ids 7 to 14), over the values in the given order:
///
///   sum         sum of x                            no values: 0
///   product     product of x                        no values: the not-computed code
///   range       maximum - minimum                   no values: 0
///   count       number of values
///   ave dev     sum of |x - m| / n, m the mean      no values: the not-computed code
///   sum sq      sum of x^2                          no values: 0
///   sum dev sq  sum of (x - m)^2                    no values: 0
///   mean abs    sum of |x| / n                      no values: the not-computed code
///
/// A result that is not finite becomes the not-finite code. If an operation overflows or
/// underflows, sum, ave dev, sum dev sq and mean abs are computed again in 80-bit extended
/// precision, and the product as exp(sum of ln |x|) with the sign of the negative values, or 0 if a
/// value is 0.
///
/// Any other id gives the count.
double SingleStatistic(StatisticId id, std::span<const double> values);

}  // namespace zavrel
