#pragma once

#include <span>

namespace zavrel {

/// Sorts in place. The order is total and the same for every input order: -0 before +0, a
/// not-a-number by its sign before or after all numbers, so that hostile input is no danger.
///
/// Linear in the count: a radix sort on the ordered bit patterns, least significant digit first,
/// which skips bits that all values share; short series and ordered ones take shorter ways.
/// `scratch` has at least as many elements as `values`; what it holds does not matter.
void SortAscending(std::span<double> values, std::span<double> scratch);

}  // namespace zavrel
