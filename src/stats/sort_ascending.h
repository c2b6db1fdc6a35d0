#pragma once

#include <span>

namespace zavrel {

/// Sorts in place. The order is total and independent of the input order: -0 comes before +0, and a
/// not-a-number before or after all numbers by its sign, so hostile input does no harm.
///
/// Linear in the count: a radix sort on the ordered bit patterns, least significant digit first,
/// which skips bits that all values share. Short and ordered series are sorted in simpler ways.
/// `scratch` has at least as many elements as `values`; its contents do not matter.
void SortAscending(std::span<double> values, std::span<double> scratch);

}  // namespace zavrel
