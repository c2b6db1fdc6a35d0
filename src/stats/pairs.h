#pragma once
// Pairs of two variables: the n-th value of one with the n-th value of the other.
//
// A pair is complete if neither of its values is the missing-value marker. The variables may differ
// in length; the number of pairs is that of the shorter one. Incomplete pairs are skipped, and the
// values after them keep their partners.

#include <cstddef>
#include <span>

#include "numbers/error_double.h"
#include "numbers/numeric_range.h"

namespace zavrel {

using PairedValues = std::span<const double>;

std::size_t CountPairs(PairedValues x, PairedValues y);

/// Writes the differences x - y of the complete pairs in order to `out`, which has room for as many
/// values as the shorter variable has. Returns their count.
std::size_t PairedDifferences(PairedValues x, PairedValues y, std::span<double> out);

/// Quotients x / y or their absolute values.
enum class Quotient : bool { kPlain, kAbsolute };

struct PairedQuotientsResult {
  std::size_t count = 0;
  /// 0, or the code of the pair that ended the run: the too-few code for a zero denominator, the
  /// not-finite code for a quotient that overflows.
  double failure = 0;
};
/// Writes the quotients of the complete pairs in order to `out`.
PairedQuotientsResult PairedQuotients(PairedValues x, PairedValues y, Quotient quotient,
                                      std::span<double> out);

/// The number of values in the range.
std::size_t CountInRange(std::span<const double> values, const NumericRange& range);
/// The number of complete pairs whose difference x - y lies in the range. A difference that
/// overflows lies in no range.
std::size_t CountPairsInRange(PairedValues x, PairedValues y, const NumericRange& range);

}  // namespace zavrel
