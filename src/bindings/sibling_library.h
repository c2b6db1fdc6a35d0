#pragma once
// The functions of the sibling product's library, as the add-in calls them.

#include <cstdint>

#include "random/rnd_gen.h"

namespace zavrel {

/// The functions that the add-in calls; a missing one is null. Their integer parameters have 16 or
/// 32 bits. Each is passed sign-extended to the full width of its slot, which is right for either.
struct SiblingFunctions {
  using Whole = std::int64_t;

  std::int16_t (*calc_double_array_target)(Whole count, const double* sorted, Whole direction,
                                           double p_or_value, Whole discrete_setting, Whole method,
                                           double* result);
  std::int16_t (*double_is_error)(double value);
  /// Calls back into the generator through its table of virtual functions.
  double (*rand)(RndGen* generator);
};

/// Looked for only once in a process; without the library all of them are null.
const SiblingFunctions& SiblingProduct();

}  // namespace zavrel
