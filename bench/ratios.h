#pragma once
// The time of a benchmark says little by itself. What counts is its ratio to a floor, the least
// that the same work could cost, measured in the same run.

#include <limits>
#include <string>
#include <vector>

namespace zavrel::bench {

/// A multiple of the time of a benchmark in this run.
struct Term {
  std::string benchmark;
  double times = 1;
};

/// Declares that the sum of some times is compared with a floor, and the largest acceptable ratio.
/// Without a floor, the sum is in microseconds.
struct Ratio {
  Ratio(std::string meaning, std::vector<Term> sum, std::vector<Term> floor,
        double limit = std::numeric_limits<double>::infinity());
};

}  // namespace zavrel::bench
