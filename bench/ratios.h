#pragma once
// A benchmark's time says little by itself: what counts is how many times its floor it takes, the
// floor being the least that the same work could cost, measured in the same run.

#include <string>

namespace zavrel::bench {

/// States that `name` is to be held against `floor`; both are benchmarks of this run.
struct Ratio {
  Ratio(std::string name, std::string floor, std::string meaning);
};

}  // namespace zavrel::bench
