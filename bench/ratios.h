#pragma once
// A benchmark's time says little by itself: what counts is how many times its floor it takes, the
// floor being the least that the same work could cost, measured in the same run.

#include <limits>
#include <string>
#include <vector>

namespace zavrel::bench {

/// The time of a benchmark of this run, some number of times.
struct Term {
  std::string benchmark;
  double times = 1;
};

/// States that the sum of some times is to be held against a floor, and how often the floor it may
/// be. Without a floor the sum stands in microseconds.
struct Ratio {
  Ratio(std::string meaning, std::vector<Term> sum, std::vector<Term> floor,
        double limit = std::numeric_limits<double>::infinity());
};

}  // namespace zavrel::bench
