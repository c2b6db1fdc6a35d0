#pragma once
// Two variables read as pairs, the n-th value of the one with the n-th of the other.
//
// A pair is complete when neither of its values is the missing-value marker. The variables need not
// be equally long: there are as many pairs as the shorter one has values. Incomplete pairs are
// skipped, never closed up.

#include <cstddef>
#include <span>

#include "numbers/error_double.h"
#include "numbers/numeric_range.h"

namespace zavrel {

using PairedValues = std::span<const double>;

std::size_t CountPairs(PairedValues x, PairedValues y);

/// The differences x - y of the complete pairs, in order, into `out`, which has room for as many as
/// the shorter variable has values. Gives their count.
std::size_t PairedDifferences(PairedValues x, PairedValues y, std::span<double> out);

/// Plain quotients x / y or their absolute values.
enum class Quotient : bool { kPlain, kAbsolute };

struct PairedQuotientsResult {
  std::size_t count = 0;
  /// 0, or the code of the pair that ended the run: the too-few code for a zero denominator, the
  /// not-finite code for a quotient that overflows.
  double failure = 0;
};
/// The quotients of the complete pairs, in order, into `out`.
PairedQuotientsResult PairedQuotients(PairedValues x, PairedValues y, Quotient quotient,
                                      std::span<double> out);

/// How many values lie in the range.
std::size_t CountInRange(std::span<const double> values, const NumericRange& range);
/// How many complete pairs have their difference x - y in the range. A difference that overflows
/// lies in none.
std::size_t CountPairsInRange(PairedValues x, PairedValues y, const NumericRange& range);

}  // namespace zavrel
