#pragma once
// The functions of the sibling product's library, as the add-in gets them.

#include <cstdint>

#include "random/rnd_gen.h"

namespace zavrel {

/// The entries that the add-in calls, each null where it is missing. Whole numbers of theirs have
/// 16 or 32 bits; each is passed at the full width of its slot with its sign, which is right for
/// either.
struct SiblingFunctions {
  using Whole = std::int64_t;

  std::int16_t (*calc_double_array_target)(Whole count, const double* sorted, Whole direction,
                                           double p_or_value, Whole discrete_setting, Whole method,
                                           double* result);
  std::int16_t (*double_is_error)(double value);
  /// Calls the generator back through its table of virtual functions.
  double (*rand)(RndGen* generator);
};

/// Looked for once; without the library all of them are null.
const SiblingFunctions& SiblingProduct();

}  // namespace zavrel
