#pragma once

#include <span>

namespace zavrel {

/// Sorts in place. The order is total and independent of the input order: -0 comes before +0, and a
/// not-a-number before or after all numbers by its sign, so hostile input does no harm.
/// By Highway's vectorised quicksort on the ordered bit patterns (Blacher et al., "Vectorized and
/// performance-portable quicksort", 2022), in place; ordered series take one pass.
void SortAscending(std::span<double> values);

/// Puts into place what stands in the middle in the same order: the values from place n / 2 - 2 to
/// n / 2 + 1 of n. What the other places then hold is unspecified. Compares each value with two of
/// a sample and sorts what lies between them.
void SortMiddle(std::span<double> values, std::span<double> scratch);

}  // namespace zavrel
