#pragma once
// How each distribution is fitted, as data.

#include <string_view>
#include <vector>

#include "fitting/likelihood.h"

namespace DistLib {

using Starts = std::vector<std::vector<double>>;

/// How the parameters of a distribution are found that are not just searched; each member is the
/// index of a parameter, or none.
struct Method {
  static constexpr int kNone = -1;

  std::string_view distribution;
  /// Values of all parameters, from moments or quantiles. Null: a grid.
  Starts (*starts)(const SampleFacts& facts) = nullptr;
  int smallest = kNone;  // is the sample's smallest value
  int largest = kNone;   // is the sample's largest value
  int kinked = kNone;    // the likelihood has its maximum at one of the sample's values
  int held = kNone;      // has its default: the sample cannot tell it from the others
  int counted = kNone;   // is searched over the whole numbers
};

/// The method of a distribution; that of one that the table does not have is the general one.
Method MethodFor(const Description& description);

/// The most likely values of a grid for the parameters without a given value, the best first. They
/// may be without likelihood if no better ones were found.
Starts GridStarts(const LogLikelihood& likelihood, std::span<const std::optional<double>> given);

}  // namespace DistLib
